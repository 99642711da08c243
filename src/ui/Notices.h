// What the user is to be told once the window is there.
#pragma once

#include <deque>
#include <memory>
#include <QMessageBox>
#include <QPointer>
#include <QString>

class QWidget;

/// Keeps what comes up before the window is shown, and tells it, and what comes later, from Begin() on: one box after
/// the other, the next when the former was answered, while the panel goes on. See UnaskedBox. [gui]
class Notices {
public:
    /// The panel outlives it.
    explicit Notices(QWidget* panel) : panel_(panel) {}

    /// `details` as in MessageBoxes::Make().
    void Tell(QMessageBox::Icon icon, const QString& title, const QString& text, const QString& details = {});
    /// The window is shown. Calls after the first do nothing.
    void Begin();
    /// The program ends: what was not shown yet is told now, and what comes later at once, in boxes that it waits for.
    void End();
    /// The panel goes and another takes its place, which tells what was not shown yet.
    void HandOver(Notices& successor);

private:
    struct Notice {
        QMessageBox::Icon icon;
        QString title;
        QString text;
        QString details;
    };

    void Show();
    void Withdraw();
    void TellAndWait();
    std::unique_ptr<QMessageBox> MakeBox(const Notice& notice) const;

    QWidget* panel_;
    bool begun_ = false;
    bool ended_ = false;
    std::deque<Notice> waiting_;  ///< the first one is in the box, if there is one
    QPointer<QMessageBox> box_;   ///< not answered yet
};
