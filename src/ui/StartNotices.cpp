#include "ui/StartNotices.h"

#include <utility>

#include "ui/Dialogs.h"

void StartNotices::Tell(QMessageBox::Icon icon, const QString& title, const QString& text, const QString& details) {
    const Notice notice{icon, title, text, details};
    if (begun_) {
        Show(notice);
    } else {
        waiting_.push_back(notice);
    }
}

void StartNotices::Begin() {
    if (std::exchange(begun_, true)) {
        return;
    }
    for (const Notice& notice : std::exchange(waiting_, {})) {
        Show(notice);
    }
}

void StartNotices::Show(const Notice& notice) {
    Dialogs::ShowFailure(window_, notice.icon, notice.title, notice.text, notice.details);
}
