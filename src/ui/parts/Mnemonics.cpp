#include "ui/parts/Mnemonics.h"

#include <QAbstractButton>
#include <QAction>
#include <QLabel>
#include <QMap>
#include <QSet>
#include <QWidget>

#include "nk/nk_translate.h"
#include "nk/qt/nk_qt_string.h"
#include "piano/PCKeyTexts.h"

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

/// A label's or a button's, without its mnemonic.
QString TextOf(const QWidget& widget) {
    return widget.property("text").toString().remove('&');
}

QString WithMnemonic(QString text, QSet<QChar>& taken) {
    if (const qsizetype place = FindFreeLetter(text, taken); place >= 0) {
        taken.insert(text[place].toLower());
        text.insert(place, '&');
    }
    return text;
}

QSet<QChar> LettersOfActions(const QWidget& dialog) {
    QSet<QChar> letters;
    for (const QAction* action : dialog.actions()) {
        const QKeySequence keys = action->shortcut();
        if (keys.count() == 1 && keys[0].keyboardModifiers() == Qt::AltModifier) {
            const QChar letter = QChar(static_cast<char16_t>(keys[0].key())).toLower();
            letters.insert(letter);
            // And what the key types in the language in force, since there the actions go by the key's place.
            const char place[] = {letter.toLatin1(), '\0'};
            const QString local = NK::ToQt(NK::Translate(NK::Piano::kLocalizedKeyboardContext, place));
            if (!local.isEmpty()) {
                letters.insert(local[0].toLower());
            }
        }
    }
    return letters;
}

}  // namespace

void AssignMnemonics(QWidget& dialog) {
    QList<QWidget*> named;
    QMap<QString, int> uses;
    for (QWidget* widget : dialog.findChildren<QWidget*>()) {
        const auto* const label = qobject_cast<QLabel*>(widget);
        const bool leads =
            label != nullptr ? label->buddy() != nullptr : qobject_cast<QAbstractButton*>(widget) != nullptr;
        if (leads && !TextOf(*widget).isEmpty()) {
            named << widget;
            ++uses[TextOf(*widget)];
        }
    }
    QSet<QChar> taken = LettersOfActions(dialog);
    for (QWidget* widget : named) {
        const QString text = TextOf(*widget);
        widget->setProperty("text", uses[text] == 1 ? WithMnemonic(text, taken) : text);
    }
}
