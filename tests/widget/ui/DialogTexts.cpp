#include "widget/ui/DialogTexts.h"

#include <QAbstractButton>
#include <QAbstractScrollArea>
#include <QAbstractSpinBox>
#include <QAccessible>
#include <QComboBox>
#include <QGroupBox>
#include <QKeySequence>
#include <QLabel>
#include <QLineEdit>
#include <QMap>
#include <QRegularExpression>
#include <QScrollBar>
#include <QStringList>
#include <QStyle>
#include <QStyleOptionComboBox>

namespace {

constexpr int kEditMargins = 12;  // logical pixels of a line edit's frame and margins, both sides

/// Whether the widget has less room than the style wants for the whole text.
bool IsClipped(QWidget& widget) {
    if (auto* const label = qobject_cast<QLabel*>(&widget)) {
        return label->width() < label->minimumSizeHint().width() ||
               label->height() < label->heightForWidth(label->width());
    }
    if (auto* const combo = qobject_cast<QComboBox*>(&widget)) {
        QStyleOptionComboBox option;
        option.initFrom(combo);
        const QRect room =
            combo->style()->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxEditField, combo);
        for (int item = 0; item < combo->count(); ++item) {
            if (combo->fontMetrics().horizontalAdvance(combo->itemText(item)) > room.width()) {
                return true;
            }
        }
        return false;
    }
    if (auto* const area = qobject_cast<QAbstractScrollArea*>(&widget)) {
        return area->horizontalScrollBar()->maximum() > 0;
    }
    if (auto* const edit = qobject_cast<QLineEdit*>(&widget)) {
        // A path may be longer than its place; what is said in words may not.
        const QString words = edit->placeholderText().contains('/') ? QString() : edit->placeholderText();
        return edit->fontMetrics().horizontalAdvance(words) > edit->width() - kEditMargins;
    }
    if (auto* const group = qobject_cast<QGroupBox*>(&widget)) {
        return group->fontMetrics().horizontalAdvance(group->title()) > group->width();
    }
    if (qobject_cast<QAbstractButton*>(&widget) != nullptr || qobject_cast<QAbstractSpinBox*>(&widget) != nullptr) {
        return widget.width() < widget.sizeHint().width() || widget.height() < widget.sizeHint().height();
    }
    return false;
}

QString TextOf(const QWidget& widget) {
    const QVariant text = widget.property("text");
    return text.isValid() ? text.toString() : widget.property("title").toString();
}

}  // namespace

std::string ClippedTexts(QWidget& window) {
    QStringList clipped;
    for (QWidget* const widget : window.findChildren<QWidget*>(QRegularExpression("^[^q]"))) {
        if (widget->isVisible() &&
            (IsClipped(*widget) || !window.rect().contains(QRect(widget->mapTo(&window, QPoint()), widget->size())))) {
            clipped << widget->objectName() + ": " + TextOf(*widget);
        }
    }
    return clipped.join(", ").toStdString();
}

std::string NamelessControls(QWidget& window) {
    QStringList nameless;
    for (QWidget* const widget : window.findChildren<QWidget*>()) {
        const QAccessibleInterface* const accessible = QAccessible::queryAccessibleInterface(widget);
        if (widget->window() == &window && widget->focusPolicy() != Qt::NoFocus &&
            !widget->objectName().startsWith("qt_") && widget->focusProxy() == nullptr &&
            (accessible == nullptr || accessible->text(QAccessible::Name).isEmpty())) {
            nameless << widget->objectName();
        }
    }
    return nameless.join(", ").toStdString();
}

std::string SharedMnemonics(QWidget& window) {
    QMap<QString, QString> owners;
    QStringList shared;
    for (QWidget* const widget : window.findChildren<QWidget*>()) {
        const QString text = TextOf(*widget);
        const QString mnemonic = QKeySequence::mnemonic(text).toString();
        if (mnemonic.isEmpty()) {
            continue;
        }
        if (owners.contains(mnemonic)) {
            shared << text + " / " + owners[mnemonic];
        }
        owners[mnemonic] = text;
    }
    return shared.join(", ").toStdString();
}
