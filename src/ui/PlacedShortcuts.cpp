#include "ui/PlacedShortcuts.h"

#include <algorithm>
#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QMenu>
#include <QScopedValueRollback>
#include <utility>

#include "nk/nk_translate.h"
#include "piano/PCKeyPlaces.h"
#include "piano/PCKeyTexts.h"
#include "ui/parts/UnaskedBox.h"

namespace {

bool isShownIn(const QWidget& window, const QObject* object) {
    const auto* const widget = qobject_cast<const QWidget*>(object);
    return widget != nullptr && widget->window() == &window && widget->isVisible();
}

bool triggersAction(const QWidget& window, const QKeySequence& keys) {
    for (QAction* const action : window.findChildren<QAction*>() + window.actions()) {
        const QList<QObject*> places = action->associatedObjects();
        const bool isShown = std::any_of(places.begin(), places.end(),
                                         [&window](const QObject* place) { return isShownIn(window, place); });
        if (isShown && action->isEnabled() && action->shortcuts().contains(keys)) {
            action->trigger();
            return true;
        }
    }
    return false;
}

bool reachesControl(const QWidget& window, const QKeySequence& keys) {
    for (QAbstractButton* const button : window.findChildren<QAbstractButton*>()) {
        if (isShownIn(window, button) && button->isEnabled() && button->shortcut() == keys) {
            button->animateClick();
            return true;
        }
    }
    for (const QLabel* const label : window.findChildren<QLabel*>()) {
        QWidget* const buddy = label->buddy();
        if (isShownIn(window, label) && buddy != nullptr && buddy->isEnabled() &&
            QKeySequence::mnemonic(label->text()) == keys) {
            buddy->setFocus(Qt::ShortcutFocusReason);
            return true;
        }
    }
    return false;
}

bool hasMnemonic(const QMenu& menu, int letter) {
    const QKeySequence keys(QKeyCombination(Qt::ALT, static_cast<Qt::Key>(letter)));
    const QList<QAction*> entries = menu.actions();
    return std::any_of(entries.begin(), entries.end(), [&keys](const QAction* entry) {
        return entry->isEnabled() && QKeySequence::mnemonic(entry->text()) == keys;
    });
}

bool isTextField(const QObject* object) {
    const auto* const widget = qobject_cast<const QWidget*>(object);
    return widget != nullptr && widget->testAttribute(Qt::WA_InputMethodEnabled);
}

}  // namespace

PlacedShortcuts::PlacedShortcuts(ComputerKeys::Source source) : source_(std::move(source)) {
    QCoreApplication::instance()->installEventFilter(this);
}

QList<int> PlacedShortcuts::lettersAt(quint32 scanCode, const NK::TKeyboardLayout& layout) {
    const char place = NK::Piano::FindPCKeyPlace(scanCode).value_or(NK::Piano::kExtraPlace);
    const char latin = layout.HasLatinLettersBeside() ? layout[scanCode].latin : place;
    QList<int> letters;
    if (latin >= 'a' && latin <= 'z') {
        letters << latin - 'a' + Qt::Key_A;
    }
    const char text[] = {place, '\0'};
    const NK::CString local = NK::Translate(NK::Piano::kLocalizedKeyboardContext, text);
    const auto letter = static_cast<char32_t>(local.IsEmpty() ? L'\0' : local[0]);
    if (QChar::isLetter(letter) && letter != static_cast<char32_t>(place)) {
        letters << static_cast<int>(QChar::toUpper(letter));
    }
    return letters;
}

bool PlacedShortcuts::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::KeyRelease) {
        repeats_.noteRelease(static_cast<const QKeyEvent&>(*event));
    } else if (event->type() == QEvent::KeyPress && watched->isWindowType() && !sending_) {
        return takesPress(static_cast<const QKeyEvent&>(*event));
    }
    return false;
}

bool PlacedShortcuts::takesPress(const QKeyEvent& press) {
    constexpr Qt::KeyboardModifiers kChoosing = Qt::ShiftModifier | Qt::ControlModifier | Qt::AltModifier;
    const Qt::KeyboardModifiers modifiers = press.modifiers() & kChoosing;
    const ComputerKeys::Layout layout = source_();
    if (!layout || layout->TypesLatinLetters() || UnaskedBox::isActive()) {
        return false;
    }
    const auto send = [&](QWidget& receiver, int letter) {
        const QScopedValueRollback<bool> sending(sending_, true);
        QKeyEvent placed(QEvent::KeyPress, letter, press.modifiers(), press.nativeScanCode(), press.nativeVirtualKey(),
                         press.nativeModifiers(), QString(QChar(letter)).toLower(), press.isAutoRepeat());
        placed.setTimestamp(press.timestamp());
        QCoreApplication::sendEvent(&receiver, &placed);
    };
    const QList<int> letters = lettersAt(press.nativeScanCode(), *layout);
    if (QWidget* const popUp = QApplication::activePopupWidget(); popUp != nullptr) {
        auto* const menu = qobject_cast<QMenu*>(popUp);
        if (menu == nullptr || modifiers.testFlag(Qt::ControlModifier) || hasMnemonic(*menu, press.key())) {
            return false;
        }
        const auto letter =
            std::find_if(letters.begin(), letters.end(), [&](int each) { return hasMnemonic(*menu, each); });
        if (letter == letters.end() || repeats_.isRepeat(press)) {
            return false;
        }
        send(*menu, *letter);
        return true;
    }
    QWidget* const window = QApplication::activeWindow();
    if (window == nullptr || letters.isEmpty()) {
        return false;
    }
    if (modifiers.testFlag(Qt::ControlModifier)) {
        const bool isLatin = letters.first() <= Qt::Key_Z;
        // The toolkit has found one already where another layout of the keyboard types it there.
        const bool isFound = press.key() >= Qt::Key_A && press.key() <= Qt::Key_Z;
        if (!isLatin || isFound || !isTextField(QApplication::focusWidget())) {
            return false;
        }
        send(*QApplication::focusWidget(), letters.first());
        return true;
    }
    if (!modifiers.testFlag(Qt::AltModifier) || repeats_.isRepeat(press)) {
        return false;
    }
    return std::any_of(letters.begin(), letters.end(), [&](int letter) {
        const QKeySequence keys(QKeyCombination(modifiers, static_cast<Qt::Key>(letter)));
        return triggersAction(*window, keys) || reachesControl(*window, keys);
    });
}
