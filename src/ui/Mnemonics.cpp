#include "ui/Mnemonics.h"

#include <QAbstractButton>
#include <QLabel>
#include <QSet>
#include <QWidget>

namespace {

/// The place of the letter to underline; -1 when every letter is taken.
qsizetype FindFreeLetter(const QString& text, const QSet<QChar>& taken) {
    const auto isFree = [&](qsizetype place) {
        return text[place].isLetterOrNumber() && !taken.contains(text[place].toLower());
    };
    for (qsizetype place = 0; place < text.size(); ++place) {
        if (isFree(place) && (place == 0 || text[place - 1].isSpace())) {
            return place;
        }
    }
    for (qsizetype place = 0; place < text.size(); ++place) {
        if (isFree(place)) {
            return place;
        }
    }
    return -1;
}

QString WithMnemonic(QString text, QSet<QChar>& taken) {
    text.remove('&');
    if (const qsizetype place = FindFreeLetter(text, taken); place >= 0) {
        taken.insert(text[place].toLower());
        text.insert(place, '&');
    }
    return text;
}

}  // namespace

void AssignMnemonics(QWidget& dialog) {
    QSet<QChar> taken;
    for (QWidget* widget : dialog.findChildren<QWidget*>()) {
        if (auto* const label = qobject_cast<QLabel*>(widget); label != nullptr && label->buddy() != nullptr) {
            label->setText(WithMnemonic(label->text(), taken));
        } else if (auto* const button = qobject_cast<QAbstractButton*>(widget);
                   button != nullptr && !button->text().isEmpty()) {
            button->setText(WithMnemonic(button->text(), taken));
        }
    }
}
