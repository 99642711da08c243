#include "QtWidgets/piano/QPianoAccessible.h"

#include <QPointer>

#include <algorithm>

#include "QtWidgets/piano/NoteNamesQt.h"
#include "QtWidgets/piano/QPiano.h"

namespace {

bool isQuiet = false;

int visibleKeyCount(const QPiano& piano) {
    return std::max(0, std::min<int>(piano.GetLastNote(), NK::Piano::kNoteCount - 1) - piano.GetFirstNote() + 1);
}

bool isVisibleKey(const QPiano& piano, BYTE note) {
    return note >= piano.GetFirstNote() && note - piano.GetFirstNote() < visibleKeyCount(piano);
}

/// One visible key: its name is the note's, it can be pressed, and it is in the state "pressed" while it is lit. It
/// becomes invalid when the piano shows other keys or is gone.
class KeyAccessible : public QAccessibleInterface, public QAccessibleActionInterface {
public:
    KeyAccessible(QPiano* piano, BYTE note) : piano_(piano), note_(note) {}

    BYTE note() const { return note_; }

    bool isValid() const override { return shownOn() != nullptr; }
    QObject* object() const override { return nullptr; }
    QWindow* window() const override {
        const QAccessibleInterface* piano = parent();
        return piano != nullptr ? piano->window() : nullptr;
    }
    QAccessibleInterface* parent() const override { return QAccessible::queryAccessibleInterface(piano_.data()); }
    QAccessibleInterface* child(int) const override { return nullptr; }
    QAccessibleInterface* childAt(int, int) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface*) const override { return -1; }
    QAccessible::Role role() const override { return QAccessible::Button; }

    QRect rect() const override {
        const QPiano* piano = shownOn();
        if (piano == nullptr) {
            return {};
        }
        const QRect area = piano->keyRect(note_).toAlignedRect();
        return {piano->mapToGlobal(area.topLeft()), area.size()};
    }

    QString text(QAccessible::Text kind) const override {
        const QPiano* piano = shownOn();
        if (kind != QAccessible::Name || piano == nullptr) {
            return {};
        }
        return NoteNameWithOctave(note_, false, piano->octaves_0_11() ? 0 : -1, false);
    }
    void setText(QAccessible::Text, const QString&) override {}

    QAccessible::State state() const override {
        QAccessible::State state;
        const QPiano* piano = shownOn();
        if (piano == nullptr) {
            state.invalid = true;
            return state;
        }
        state.pressed = piano->IsPressed(note_);
        state.disabled = !piano->isEnabled();
        state.invisible = !piano->isVisible();
        state.focusable = piano->isCursorEnabled() && piano->focusPolicy() != Qt::NoFocus;
        state.focused = piano->isCursorShown() && piano->cursorNote() == note_;
        return state;
    }

    void* interface_cast(QAccessible::InterfaceType type) override {
        return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface*>(this) : nullptr;
    }
    QStringList actionNames() const override { return {pressAction()}; }
    void doAction(const QString& name) override {
        QPiano* piano = shownOn();
        if (name == pressAction() && piano != nullptr) {
            piano->playBriefly(note_);
        }
    }
    QStringList keyBindingsForAction(const QString&) const override { return {}; }

private:
    QPiano* shownOn() const {
        QPiano* piano = piano_.data();
        return piano != nullptr && isVisibleKey(*piano, note_) ? piano : nullptr;
    }

    QPointer<QPiano> piano_;
    BYTE note_;
};

QAccessibleInterface* makeInterface(const QString&, QObject* object) {
    auto* piano = qobject_cast<QPiano*>(object);
    return piano != nullptr ? new QPianoAccessible(piano) : nullptr;
}

}  // namespace

QPianoAccessible::QPianoAccessible(QPiano* piano) : QAccessibleWidget(piano, QAccessible::Grouping) {
}

QPianoAccessible::~QPianoAccessible() {
    for (const auto& [note, id] : keys_) {
        QAccessible::deleteAccessibleInterface(id);
    }
}

void QPianoAccessible::installFactory() {
    [[maybe_unused]] static const bool installed = [] {
        QAccessible::installFactory(makeInterface);
        return true;
    }();
}

void QPianoAccessible::setQuiet(bool quiet) {
    isQuiet = quiet;
}

void QPianoAccessible::keyChanged(QPiano& piano, std::uint8_t note) {
    if (isQuiet || !QAccessible::isActive()) {
        return;
    }
    QAccessible::State changed;
    changed.pressed = true;
    QAccessibleStateChangeEvent event(&piano, changed);
    event.setChild(note - piano.GetFirstNote());
    QAccessible::updateAccessibility(&event);
}

void QPianoAccessible::focusMoved(QPiano& piano) {
    if (!QAccessible::isActive() || piano.cursorNote() == QPiano::kNoKey) {
        return;
    }
    QAccessibleEvent event(&piano, QAccessible::Focus);
    event.setChild(piano.cursorNote() - piano.GetFirstNote());
    QAccessible::updateAccessibility(&event);
}

void QPianoAccessible::rangeChanged(QPiano& piano) {
    if (QAccessible::isActive()) {
        QAccessibleEvent event(&piano, QAccessible::ObjectReorder);
        QAccessible::updateAccessibility(&event);
    }
}

QPiano* QPianoAccessible::piano() const {
    return qobject_cast<QPiano*>(object());
}

int QPianoAccessible::childCount() const {
    const QPiano* keyboard = piano();
    return keyboard != nullptr ? visibleKeyCount(*keyboard) : 0;
}

QAccessibleInterface* QPianoAccessible::keyOf(std::uint8_t note) const {
    QPiano* keyboard = piano();
    if (keyboard == nullptr || !isVisibleKey(*keyboard, note)) {
        return nullptr;
    }
    const auto known = keys_.find(note);
    if (known != keys_.end()) {
        return QAccessible::accessibleInterface(known->second);
    }
    auto* key = new KeyAccessible(keyboard, note);
    keys_[note] = QAccessible::registerAccessibleInterface(key);
    return key;
}

QAccessibleInterface* QPianoAccessible::child(int index) const {
    const QPiano* keyboard = piano();
    if (keyboard == nullptr || index < 0 || index >= visibleKeyCount(*keyboard)) {
        return nullptr;
    }
    return keyOf(static_cast<std::uint8_t>(keyboard->GetFirstNote() + index));
}

int QPianoAccessible::indexOfChild(const QAccessibleInterface* child) const {
    const auto* key = dynamic_cast<const KeyAccessible*>(child);
    const QPiano* keyboard = piano();
    if (key == nullptr || keyboard == nullptr || !key->isValid() || key->parent() != this) {
        return -1;
    }
    return key->note() - keyboard->GetFirstNote();
}

QAccessibleInterface* QPianoAccessible::childAt(int x, int y) const {
    const QPiano* keyboard = piano();
    return keyboard != nullptr ? keyOf(keyboard->keyAt(keyboard->mapFromGlobal(QPoint(x, y)))) : nullptr;
}

QAccessibleInterface* QPianoAccessible::focusChild() const {
    const QPiano* keyboard = piano();
    return keyboard != nullptr && keyboard->isCursorShown() ? keyOf(keyboard->cursorNote())
                                                            : QAccessibleWidget::focusChild();
}

QString QPianoAccessible::text(QAccessible::Text kind) const {
    const QString text = QAccessibleWidget::text(kind);
    return kind == QAccessible::Name && text.isEmpty() ? QPiano::tr("Piano keyboard") : text;
}
