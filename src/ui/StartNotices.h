// What the user is to be told once the window is there.
#pragma once

#include <QMessageBox>
#include <QString>
#include <vector>

class QWidget;

/// Keeps what comes up before the window is shown, and tells it in boxes, one after the other, from Begin() on; what
/// comes later is told at once. [gui]
class StartNotices {
public:
    explicit StartNotices(QWidget* window) : window_(window) {}

    /// `details` as in Dialogs::MakeBox().
    void Tell(QMessageBox::Icon icon, const QString& title, const QString& text, const QString& details = {});
    /// The window is shown. Calls after the first do nothing.
    void Begin();

private:
    struct Notice {
        QMessageBox::Icon icon;
        QString title;
        QString text;
        QString details;
    };

    void Show(const Notice& notice);

    QWidget* window_;
    bool begun_ = false;
    std::vector<Notice> waiting_;
};
