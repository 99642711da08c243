#include "ui/Notices.h"

#include <QTimer>
#include <utility>

#include "ui/parts/MessageBoxes.h"
#include "ui/parts/UnaskedBox.h"

void Notices::Tell(QMessageBox::Icon icon, const QString& title, const QString& text, const QString& details) {
    waiting_.push_back({icon, title, text, details});
    if (ended_) {
        TellAndWait();
    } else {
        Show();
    }
}

void Notices::Begin() {
    if (!std::exchange(begun_, true)) {
        Show();
    }
}

void Notices::End() {
    ended_ = true;
    Withdraw();
    TellAndWait();
}

void Notices::HandOver(Notices& successor) {
    ended_ = true;
    Withdraw();
    for (const Notice& notice : std::exchange(waiting_, {})) {
        successor.Tell(notice.icon, notice.title, notice.text, notice.details);
    }
}

void Notices::Show() {
    if (!begun_ || ended_ || box_ || waiting_.empty()) {
        return;
    }
    box_ = UnaskedBox::show(MakeBox(waiting_.front()), *panel_, [this](QMessageBox::StandardButton) {
        box_.clear();
        waiting_.pop_front();
        // Not at once: who closes all windows would close the next one unread.
        QTimer::singleShot(0, panel_, [this] { Show(); });
    });
}

void Notices::Withdraw() {
    if (box_) {
        if (UnaskedBox::hasCome(*box_)) {
            waiting_.pop_front();
        }
        UnaskedBox::withdraw(*box_);
        box_.clear();
    }
}

void Notices::TellAndWait() {
    while (!waiting_.empty()) {
        const std::unique_ptr<QMessageBox> box = MakeBox(waiting_.front());
        waiting_.pop_front();
        UnaskedBox::exec(*box);
    }
}

std::unique_ptr<QMessageBox> Notices::MakeBox(const Notice& notice) const {
    return MessageBoxes::Make(panel_, notice.icon, notice.title, notice.text, QMessageBox::Ok, notice.details);
}
