// What the style draws.
#include <QAbstractSpinBox>
#include <QComboBox>
#include <QPainter>
#include <QStyleOption>

#include "ui/parts/InstrumentColors.h"
#include "ui/parts/InstrumentLegend.h"
#include "ui/parts/InstrumentMetrics.h"
#include "ui/parts/InstrumentParts.h"
#include "ui/parts/InstrumentStyle.h"

using namespace InstrumentColors;
using namespace InstrumentMetrics;
using InstrumentParts::CapState;

namespace {

bool Has(const QStyleOption& option, QStyle::StateFlag flag) {
    return option.state.testFlag(flag);
}

QRect SocketOf(const QRect& key) {
    return key.adjusted(kSocketMargin, kSocketMargin, -kSocketMargin, -kSocketMargin);
}

CapState StateOf(const QStyleOption& option) {
    if (!Has(option, QStyle::State_Enabled)) {
        return CapState::kDisabled;
    }
    if (Has(option, QStyle::State_Sunken) || Has(option, QStyle::State_On)) {
        return CapState::kDown;
    }
    return Has(option, QStyle::State_MouseOver) ? CapState::kHovered : CapState::kUp;
}

QColor MarkColor(const QStyleOption& option) {
    return Has(option, QStyle::State_Enabled) ? kFigures : kDimFigures;
}

/// A field is edged in green while it has the keyboard.
void DrawField(QPainter& painter, const QStyleOption& option) {
    const bool focus = Has(option, QStyle::State_HasFocus) && Has(option, QStyle::State_Enabled);
    InstrumentParts::DrawGlass(painter, option.rect, focus ? kFigures : kEdge, focus ? 2.0 : 1.0);
}

/// Drawn by its box.
bool IsInsideField(const QWidget* widget) {
    const QWidget* const parent = widget != nullptr ? widget->parentWidget() : nullptr;
    return qobject_cast<const QAbstractSpinBox*>(parent) != nullptr ||
           qobject_cast<const QComboBox*>(parent) != nullptr;
}

void DrawIndicator(QPainter& painter, const QStyleOption& option, bool exclusive) {
    const QRectF box = option.rect;
    if (exclusive) {
        painter.save();
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(QPen(kEdge, 1.0));
        painter.setBrush(kGlass);
        painter.drawEllipse(box.adjusted(0.5, 0.5, -0.5, -0.5));
        painter.restore();
    } else {
        InstrumentParts::DrawGlass(painter, box, Has(option, QStyle::State_MouseOver) ? kText : kEdge);
    }
    if (Has(option, QStyle::State_On)) {
        exclusive ? InstrumentParts::DrawDot(painter, box, MarkColor(option))
                  : InstrumentParts::DrawTick(painter, box, MarkColor(option));
    } else if (Has(option, QStyle::State_NoChange)) {
        painter.fillRect(box.adjusted(4, box.height() / 2 - 1, -4, 1 - box.height() / 2), MarkColor(option));
    }
}

void DrawFrame(QPainter& painter, const QRect& area, const QColor& color) {
    painter.save();
    painter.setPen(color);
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(area.adjusted(0, 0, -1, -1));
    painter.restore();
}

}  // namespace

void InstrumentStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                                    const QWidget* widget) const {
    switch (element) {
        case PE_PanelButtonCommand:
            InstrumentParts::DrawCap(*painter, SocketOf(option->rect), StateOf(*option));
            return;
        case PE_PanelButtonTool:
            if (Has(*option, State_Sunken) || Has(*option, State_On) || Has(*option, State_MouseOver)) {
                InstrumentParts::DrawCap(*painter, option->rect, StateOf(*option));
            }
            return;
        case PE_FrameFocusRect:
            if (!Has(*option, State_Selected)) {  // else it is filled
                InstrumentParts::DrawRing(*painter, option->rect, 3.0);
            }
            return;
        case PE_PanelLineEdit:
            if (const auto* const frame = qstyleoption_cast<const QStyleOptionFrame*>(option);
                frame != nullptr && frame->lineWidth <= 0) {
                if (!IsInsideField(widget)) {
                    painter->fillRect(option->rect, option->palette.brush(QPalette::Base));
                }
                return;
            }
            DrawField(*painter, *option);
            return;
        case PE_FrameLineEdit:
            return;  // the panel has its edge
        case PE_IndicatorCheckBox:
        case PE_IndicatorItemViewItemCheck:
            DrawIndicator(*painter, *option, false);
            return;
        case PE_IndicatorRadioButton:
            DrawIndicator(*painter, *option, true);
            return;
        case PE_Frame:
        case PE_FrameStatusBarItem:
            DrawFrame(*painter, option->rect, Has(*option, State_HasFocus) ? kFigures : kEdge);
            return;
        case PE_PanelMenu:
            painter->fillRect(option->rect, kMenu);
            DrawFrame(*painter, option->rect, kEdge);
            return;
        case PE_FrameMenu:
            DrawFrame(*painter, option->rect, kEdge);
            return;
        case PE_PanelTipLabel:
            painter->fillRect(option->rect, kMenu);
            DrawFrame(*painter, option->rect, kEdge);
            return;
        default:
            QProxyStyle::drawPrimitive(element, option, painter, widget);
    }
}

void InstrumentStyle::drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                                  const QWidget* widget) const {
    switch (element) {
        case CE_PushButtonBevel:
            proxy()->drawPrimitive(PE_PanelButtonCommand, option, painter, widget);
            if (const auto* const button = qstyleoption_cast<const QStyleOptionButton*>(option);
                button != nullptr && button->features.testFlag(QStyleOptionButton::DefaultButton) &&
                Has(*option, State_Enabled)) {
                InstrumentParts::DrawCapLamp(*painter, SocketOf(option->rect));
            }
            return;
        case CE_PushButton:
            proxy()->drawControl(CE_PushButtonBevel, option, painter, widget);
            drawKeyCaption(*option, *painter, widget);
            if (Has(*option, State_HasFocus) && Has(*option, State_KeyboardFocusChange)) {
                InstrumentParts::DrawRing(*painter, option->rect, 7.0);
            }
            return;
        case CE_ComboBoxLabel:
            if (const auto* const box = qstyleoption_cast<const QStyleOptionComboBox*>(option)) {
                drawComboLabel(*box, *painter);
            }
            return;
        case CE_MenuItem:
            if (const auto* const item = qstyleoption_cast<const QStyleOptionMenuItem*>(option)) {
                drawMenuItem(*item, *painter);
            }
            return;
        case CE_MenuEmptyArea:
            return;
        default:
            QProxyStyle::drawControl(element, option, painter, widget);
    }
}

void InstrumentStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option, QPainter* painter,
                                         const QWidget* widget) const {
    if (const auto* const combo = qstyleoption_cast<const QStyleOptionComboBox*>(option);
        control == CC_ComboBox && combo) {
        drawCombo(*combo, *painter, widget);
    } else if (const auto* const spin = qstyleoption_cast<const QStyleOptionSpinBox*>(option);
               control == CC_SpinBox && spin) {
        drawSpinBox(*spin, *painter, widget);
    } else if (const auto* const group = qstyleoption_cast<const QStyleOptionGroupBox*>(option);
               control == CC_GroupBox && group) {
        drawGroupBox(*group, *painter, widget);
    } else if (const auto* const slider = qstyleoption_cast<const QStyleOptionSlider*>(option);
               control == CC_Slider && slider && slider->orientation == Qt::Horizontal) {
        drawFader(*slider, *painter, widget);
    } else if (control == CC_ScrollBar && slider != nullptr) {
        drawScrollBar(*slider, *painter, widget);
    } else {
        QProxyStyle::drawComplexControl(control, option, painter, widget);
    }
}

void InstrumentStyle::drawKeyCaption(const QStyleOption& option, QPainter& painter, const QWidget* widget) const {
    const auto* const button = qstyleoption_cast<const QStyleOptionButton*>(&option);
    if (button == nullptr) {
        return;
    }
    QStyleOptionButton caption = *button;
    if (caption.features.testFlag(QStyleOptionButton::DefaultButton)) {
        caption.rect.translate(0, kLampRoom);
    }
    proxy()->drawControl(CE_PushButtonLabel, &caption, &painter, widget);
}

void InstrumentStyle::drawComboLabel(const QStyleOptionComboBox& option, QPainter& painter) const {
    QRect area = subControlRect(CC_ComboBox, &option, SC_ComboBoxEditField, nullptr);
    painter.save();
    painter.setClipRect(area);
    if (!option.currentIcon.isNull()) {
        const QRect icon(area.topLeft(), QSize(option.iconSize.width(), area.height()));
        option.currentIcon.paint(&painter, icon);
        area.setLeft(icon.right() + 6);
    }
    painter.setPen(option.palette.color(QPalette::ButtonText));
    painter.drawText(area, Qt::AlignLeft | Qt::AlignVCenter,
                     option.fontMetrics.elidedText(option.currentText, Qt::ElideRight, area.width()));
    painter.restore();
}

void InstrumentStyle::drawCombo(const QStyleOptionComboBox& option, QPainter& painter, const QWidget* widget) const {
    DrawField(painter, option);
    const QRect arrow = subControlRect(CC_ComboBox, &option, SC_ComboBoxArrow, widget);
    painter.fillRect(QRect(arrow.left(), arrow.top() + 4, 1, arrow.height() - 8), QColor(255, 255, 255, 36));
    InstrumentParts::DrawChevron(painter, arrow, Qt::DownArrow,
                                 Has(option, State_Enabled) ? kText : option.palette.color(QPalette::ButtonText));
}

void InstrumentStyle::drawSpinBox(const QStyleOptionSpinBox& option, QPainter& painter, const QWidget* widget) const {
    DrawField(painter, option);
    const auto arrow = [&](SubControl part, QAbstractSpinBox::StepEnabledFlag step, Qt::ArrowType direction) {
        const bool enabled = Has(option, State_Enabled) && option.stepEnabled.testFlag(step);
        const bool pressed = option.activeSubControls.testFlag(part) && Has(option, State_Sunken);
        InstrumentParts::DrawChevron(painter, subControlRect(CC_SpinBox, &option, part, widget), direction,
                                     pressed   ? kFigures
                                     : enabled ? kText
                                               : kDimFigures);
    };
    arrow(SC_SpinBoxUp, QAbstractSpinBox::StepUpEnabled, Qt::UpArrow);
    arrow(SC_SpinBoxDown, QAbstractSpinBox::StepDownEnabled, Qt::DownArrow);
}

void InstrumentStyle::drawGroupBox(const QStyleOptionGroupBox& option, QPainter& painter, const QWidget* widget) const {
    InstrumentParts::DrawPlate(painter, option.rect);
    InstrumentLegend::Draw(painter, subControlRect(CC_GroupBox, &option, SC_GroupBoxLabel, widget), option.text,
                           option.palette.color(QPalette::WindowText));
}

void InstrumentStyle::drawFader(const QStyleOptionSlider& option, QPainter& painter, const QWidget* widget) const {
    const QRectF handle = subControlRect(CC_Slider, &option, SC_SliderHandle, widget);
    const double middle = handle.center().y();
    const QRectF track = QRectF(option.rect).adjusted(handle.width() / 2, 0, -handle.width() / 2, 0);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(kEdge, 1.0));
    if (option.tickPosition != QSlider::NoTicks && option.tickInterval > 0) {
        const int steps = (option.maximum - option.minimum) / option.tickInterval;
        for (int step = 0; step <= steps; ++step) {
            const double x = track.left() + track.width() * step / steps;
            painter.drawLine(QPointF(x, handle.bottom() + 2), QPointF(x, handle.bottom() + 5));
        }
    }
    painter.setBrush(kGlass);
    painter.drawRoundedRect(QRectF(track.left(), middle - 2, track.width(), 4), 2, 2);
    painter.restore();
    InstrumentParts::DrawCap(painter, handle,
                             !Has(option, State_Enabled)                          ? CapState::kDisabled
                             : option.activeSubControls.testFlag(SC_SliderHandle) ? CapState::kHovered
                                                                                  : CapState::kUp);
    painter.fillRect(QRectF(handle.center().x() - 1, handle.top() + 4, 2, handle.height() - 8),
                     Has(option, State_Enabled) ? kCapText : kEdge);
    if (Has(option, State_HasFocus) && Has(option, State_KeyboardFocusChange)) {
        InstrumentParts::DrawRing(painter, handle.adjusted(-2, -2, 2, 2), 6.0);
    }
}

void InstrumentStyle::drawScrollBar(const QStyleOptionSlider& option, QPainter& painter, const QWidget* widget) const {
    painter.fillRect(option.rect, kGlassBetween);
    if (option.minimum >= option.maximum) {
        return;
    }
    const bool held = option.activeSubControls.testFlag(SC_ScrollBarSlider) && Has(option, State_MouseOver);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(held ? kText : kEdge);
    painter.drawRoundedRect(
        QRectF(subControlRect(CC_ScrollBar, &option, SC_ScrollBarSlider, widget)).adjusted(3, 3, -3, -3), 3.5, 3.5);
    painter.restore();
}

void InstrumentStyle::drawMenuItem(const QStyleOptionMenuItem& option, QPainter& painter) const {
    if (option.menuItemType == QStyleOptionMenuItem::Separator) {
        painter.fillRect(QRect(option.rect.left() + 6, option.rect.center().y(), option.rect.width() - 12, 1),
                         QColor(255, 255, 255, 46));
        return;
    }
    const bool enabled = Has(option, State_Enabled);
    const bool current = Has(option, State_Selected) && enabled;
    if (current) {
        painter.fillRect(option.rect, kFigures);
    }
    const QColor ink = current ? kLitInk : enabled ? kText : kDimText;
    if (option.checked) {
        const QRectF mark(option.rect.left() + 6, option.rect.center().y() - 7, 15, 15);
        const QColor color = current ? kLitInk : enabled ? kFigures : kDimFigures;
        option.checkType == QStyleOptionMenuItem::Exclusive ? InstrumentParts::DrawDot(painter, mark, color)
                                                            : InstrumentParts::DrawTick(painter, mark, color);
    }
    painter.save();
    painter.setFont(option.font);
    painter.setPen(ink);
    const QRect text = option.rect.adjusted(kMenuCheck, 0, -kMenuRight, 0);
    const qsizetype tab = option.text.indexOf('\t');
    const bool underlined = styleHint(SH_UnderlineShortcut, &option, nullptr, nullptr) != 0;
    const int line = Qt::AlignVCenter | Qt::TextSingleLine;
    painter.drawText(text, line | (underlined ? Qt::TextShowMnemonic : Qt::TextHideMnemonic), option.text.left(tab));
    if (tab >= 0) {
        painter.setPen(current ? kLitInk : kDimText);
        painter.drawText(text, line | Qt::AlignRight, option.text.mid(tab + 1));
    }
    painter.restore();
    if (option.menuItemType == QStyleOptionMenuItem::SubMenu) {
        InstrumentParts::DrawChevron(
            painter,
            QRectF(option.rect.right() - kMenuRight + 2, option.rect.top(), kMenuRight - 4, option.rect.height()),
            Qt::RightArrow, ink);
    }
}
