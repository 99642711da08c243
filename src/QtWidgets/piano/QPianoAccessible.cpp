#include "QtWidgets/piano/QPianoAccessible.h"

#include <QPointer>

#include <algorithm>

#include "QtWidgets/piano/NoteNamesQt.h"
#include "QtWidgets/piano/QPiano.h"

namespace {

int visibleKeyCount(const QPiano& piano) {
    return std::max(0, std::min<int>(piano.GetLastNote(), NK::Piano::kNoteCount - 1) - piano.GetFirstNote() + 1);
}

/// One visible key: its name is the note's, it can be pressed, and it is in the state "pressed" while it is lit.
class KeyAccessible : public QAccessibleInterface, public QAccessibleActionInterface {
public:
    KeyAccessible(QPiano* piano, BYTE note) : piano_(piano), note_(note) {}

    BYTE note() const { return note_; }

    bool isValid() const override {
        return piano_ && note_ >= piano_->GetFirstNote() && note_ - piano_->GetFirstNote() < visibleKeyCount(*piano_);
    }
    QObject* object() const override { return nullptr; }
    QWindow* window() const override { return isValid() ? parent()->window() : nullptr; }
    QAccessibleInterface* parent() const override { return QAccessible::queryAccessibleInterface(piano_.data()); }
    QAccessibleInterface* child(int) const override { return nullptr; }
    QAccessibleInterface* childAt(int, int) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface*) const override { return -1; }
    QAccessible::Role role() const override { return QAccessible::Button; }

    QRect rect() const override {
        if (!isValid()) {
            return {};
        }
        const QRect area = piano_->keyRect(note_).toAlignedRect();
        return {piano_->mapToGlobal(area.topLeft()), area.size()};
    }

    QString text(QAccessible::Text kind) const override {
        if (kind != QAccessible::Name || !isValid()) {
            return {};
        }
        return NoteNameWithOctave(note_, false, piano_->octaves_0_11() ? 0 : -1, false);
    }
    void setText(QAccessible::Text, const QString&) override {}

    QAccessible::State state() const override {
        QAccessible::State state;
        if (!isValid()) {
            state.invalid = true;
            return state;
        }
        const bool cursorCanCome = piano_->isCursorEnabled() && piano_->focusPolicy() != Qt::NoFocus;
        state.pressed = piano_->IsPressed(note_);
        state.disabled = !piano_->isEnabled();
        state.invisible = !piano_->isVisible();
        state.focusable = cursorCanCome;
        state.focused = piano_->isCursorShown() && piano_->cursorNote() == note_;
        return state;
    }

    void* interface_cast(QAccessible::InterfaceType type) override {
        return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface*>(this) : nullptr;
    }
    QStringList actionNames() const override { return {pressAction()}; }
    void doAction(const QString& name) override {
        if (name == pressAction() && isValid()) {
            piano_->playBriefly(note_);
        }
    }
    QStringList keyBindingsForAction(const QString&) const override { return {}; }

private:
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

void QPianoAccessible::keyChanged(QPiano& piano, std::uint8_t note) {
    if (!QAccessible::isActive()) {
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

QPiano* QPianoAccessible::piano() const {
    return qobject_cast<QPiano*>(object());
}

int QPianoAccessible::childCount() const {
    return visibleKeyCount(*piano());
}

QAccessibleInterface* QPianoAccessible::child(int index) const {
    if (index < 0 || index >= childCount()) {
        return nullptr;
    }
    const auto note = static_cast<std::uint8_t>(piano()->GetFirstNote() + index);
    const auto known = keys_.find(note);
    if (known != keys_.end()) {
        return QAccessible::accessibleInterface(known->second);
    }
    auto* key = new KeyAccessible(piano(), note);
    keys_[note] = QAccessible::registerAccessibleInterface(key);
    return key;
}

int QPianoAccessible::indexOfChild(const QAccessibleInterface* child) const {
    const auto* key = dynamic_cast<const KeyAccessible*>(child);
    return key != nullptr && key->isValid() && key->parent() == this ? key->note() - piano()->GetFirstNote() : -1;
}

QAccessibleInterface* QPianoAccessible::childAt(int x, int y) const {
    const BYTE note = piano()->keyAt(piano()->mapFromGlobal(QPoint(x, y)));
    return note == QPiano::kNoKey ? nullptr : child(note - piano()->GetFirstNote());
}

QAccessibleInterface* QPianoAccessible::focusChild() const {
    return piano()->isCursorShown() && piano()->cursorNote() != QPiano::kNoKey
               ? child(piano()->cursorNote() - piano()->GetFirstNote())
               : QAccessibleWidget::focusChild();
}

QString QPianoAccessible::text(QAccessible::Text kind) const {
    const QString text = QAccessibleWidget::text(kind);
    return kind == QAccessible::Name && text.isEmpty() ? QPiano::tr("Piano keyboard") : text;
}
