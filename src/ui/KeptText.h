// A text in a small file, which a later run reads again.
#pragma once

#include <QString>
#include <utility>

/// [gui]
class KeptText {
public:
    explicit KeptText(QString path) : path_(std::move(path)) {}

    /// Empty where nothing is kept, or it cannot be read.
    QString Get() const;
    /// In place of what was kept; an empty text keeps nothing. Creates the folder. False when the file could not be
    /// written, with the reason in NK::GetFileFailure(): then it is as it was.
    bool Keep(const QString& text) const;
    /// Keeps the text; whether it is another one than before.
    bool Change(const QString& text) const;

private:
    QString path_;
};
