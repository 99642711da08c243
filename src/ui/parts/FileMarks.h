// What stands before the names in a file dialog.
#pragma once

#include <QFileIconProvider>

/// The instrument's marks of files, folders and drives: a desktop has pictures of its own for each kind of file. [any]
class FileMarks : public QFileIconProvider {
public:
    /// [gui]
    FileMarks();

    QIcon icon(IconType type) const override;
    QIcon icon(const QFileInfo& file) const override;

private:
    // Made here, as a file dialog asks for them on a thread of its own.
    const QIcon file_;
    const QIcon folder_;
    const QIcon drive_;
    const QIcon computer_;
};
