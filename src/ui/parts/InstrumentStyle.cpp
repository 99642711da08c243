// The metrics and hints, and where each part of a control lies.
#include "ui/parts/InstrumentStyle.h"

#include <algorithm>
#include <array>
#include <QApplication>
#include <QFileDialog>
#include <QStyleOption>
#include <QToolTip>

#include "ui/parts/InstrumentLegend.h"
#include "ui/parts/InstrumentMarks.h"
#include "ui/parts/InstrumentMetrics.h"
#include "ui/parts/InstrumentPalette.h"

using namespace InstrumentMetrics;

namespace {

/// For the classes whose contents are figures on glass.
constexpr std::array<const char*, 3> kFieldClasses{"QLineEdit", "QComboBox", "QAbstractSpinBox"};

QRect HandleOfScrollBar(const QStyleOptionSlider& bar) {
    const bool horizontal = bar.orientation == Qt::Horizontal;
    const int length = horizontal ? bar.rect.width() : bar.rect.height();
    const qint64 range = static_cast<qint64>(bar.maximum) - bar.minimum;
    const auto share =
        range > 0 ? static_cast<int>(static_cast<qint64>(length) * bar.pageStep / (range + bar.pageStep)) : length;
    const int handle = std::clamp(share, std::min(kShortestScrollHandle, length), length);
    const int start =
        QStyle::sliderPositionFromValue(bar.minimum, bar.maximum, bar.sliderPosition, length - handle, bar.upsideDown);
    return horizontal ? QRect(bar.rect.left() + start, bar.rect.top(), handle, bar.rect.height())
                      : QRect(bar.rect.left(), bar.rect.top() + start, bar.rect.width(), handle);
}

QRect PartOfScrollBar(const QStyleOptionSlider& bar, QStyle::SubControl part) {
    const QRect handle = HandleOfScrollBar(bar);
    const bool horizontal = bar.orientation == Qt::Horizontal;
    QRect before = bar.rect;
    QRect after = bar.rect;
    if (horizontal) {
        before.setRight(handle.left() - 1);
        after.setLeft(handle.right() + 1);
    } else {
        before.setBottom(handle.top() - 1);
        after.setTop(handle.bottom() + 1);
    }
    switch (part) {
        case QStyle::SC_ScrollBarSlider:
            return handle;
        case QStyle::SC_ScrollBarGroove:
            return bar.rect;
        case QStyle::SC_ScrollBarSubPage:
            return before;
        case QStyle::SC_ScrollBarAddPage:
            return after;
        default:
            return {};  // there are no arrows
    }
}

QRect PartOfSpinBox(const QRect& box, QStyle::SubControl part) {
    const QRect arrows = box.adjusted(box.width() - kChevronZone, 1, -1, -1);
    switch (part) {
        case QStyle::SC_SpinBoxUp:
            return arrows.adjusted(0, 0, 0, -(arrows.height() + 1) / 2);
        case QStyle::SC_SpinBoxDown:
            return arrows.adjusted(0, arrows.height() / 2, 0, 0);
        case QStyle::SC_SpinBoxEditField:
            return box.adjusted(kFieldPadding - 2, 2, -kChevronZone - 1, -2);
        default:
            return box;
    }
}

QRect PartOfCombo(const QRect& box, QStyle::SubControl part) {
    switch (part) {
        case QStyle::SC_ComboBoxArrow:
            return box.adjusted(box.width() - kChevronZone, 0, 0, 0);
        case QStyle::SC_ComboBoxEditField:
            return box.adjusted(kFieldPadding, 2, -kChevronZone - 2, -2);
        default:
            return box;
    }
}

bool DesktopWantsHighContrast() {
    return InstrumentPalette::IsHighContrast(QApplication::palette()) ||
           QIcon::themeName().startsWith("HighContrast", Qt::CaseInsensitive);
}

QPalette PaletteFor(bool highContrast) {
    return highContrast ? InstrumentPalette::MakeHighContrast() : InstrumentPalette::Make();
}

}  // namespace

InstrumentStyle::InstrumentStyle(QStyle* base, const QPalette& palette) : QProxyStyle(base), palette_(palette) {
}

void InstrumentStyle::Dress(QStyle* base) {
    // Also the file dialog: one of the desktop would speak the desktop's language and have its look.
    QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    const bool highContrast = DesktopWantsHighContrast();
    const QPalette palette = PaletteFor(highContrast);
    auto* const style = new InstrumentStyle(base, palette);
    style->isHighContrast_ = highContrast;
    QApplication::setStyle(style);
    Spread(palette, highContrast);
    QApplication::setFont(InstrumentLegend::TextFont(QApplication::font()));
    QApplication::setFont(InstrumentLegend::KeyFont(QApplication::font()), "QPushButton");
}

void InstrumentStyle::Spread(const QPalette& palette, bool highContrast) {
    QApplication::setPalette(palette);
    for (const char* name : kFieldClasses) {
        QApplication::setPalette(highContrast ? palette : InstrumentPalette::MakeForFields(), name);
    }
    QToolTip::setPalette(palette);
}

void InstrumentStyle::ChooseContrast(EContrast contrast) {
    auto* const style = dynamic_cast<InstrumentStyle*>(QApplication::style());
    if (style == nullptr) {
        return;
    }
    bool highContrast = contrast == EContrast::kHigh;
    if (contrast == EContrast::kAsDesktop) {
        style->palette_ = InstrumentPalette::Make();
        QApplication::setPalette(QPalette());  // so that the desktop's shows through, or that one where it has none
        highContrast = DesktopWantsHighContrast();
    }
    style->isHighContrast_ = highContrast;
    style->palette_ = PaletteFor(highContrast);
    Spread(style->palette_, highContrast);
}

bool InstrumentStyle::IsHighContrast() {
    const auto* const style = dynamic_cast<InstrumentStyle*>(QApplication::style());
    return style != nullptr && style->isHighContrast_;
}

void InstrumentStyle::polish(QWidget* widget) {
    QProxyStyle::polish(widget);
    if (widget->inherits("QTipLabel")) {
        widget->setPalette(palette_);  // Qt gives it the desktop's when that changes
    } else if (auto* const files = qobject_cast<QFileDialog*>(widget)) {
        files->setIconProvider(&fileMarks_);
    }
}

QPalette InstrumentStyle::standardPalette() const {
    return palette_;
}

int InstrumentStyle::pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const {
    switch (metric) {
        case PM_LayoutLeftMargin:
        case PM_LayoutTopMargin:
        case PM_LayoutRightMargin:
        case PM_LayoutBottomMargin:
            return widget != nullptr && !widget->isWindow() ? kPlateMargin : kWindowMargin;
        case PM_LayoutHorizontalSpacing:
        case PM_LayoutVerticalSpacing:
            return kSpacing;
        case PM_ButtonMargin:
        case PM_ButtonShiftHorizontal:
        case PM_ButtonDefaultIndicator:
            return 0;
        case PM_ButtonShiftVertical:
        case PM_MenuPanelWidth:
            return 1;
        case PM_MenuVMargin:
        case PM_MenuHMargin:
            return 4;
        case PM_IndicatorWidth:
        case PM_IndicatorHeight:
        case PM_ExclusiveIndicatorWidth:
        case PM_ExclusiveIndicatorHeight:
            return kIndicator;
        case PM_CheckBoxLabelSpacing:
        case PM_RadioButtonLabelSpacing:
            return kSpacing;
        case PM_ScrollBarExtent:
            return kScrollBar;
        case PM_ScrollBarSliderMin:
            return kShortestScrollHandle;
        case PM_SliderLength:
            return 15;
        case PM_SliderThickness:
        case PM_SliderControlThickness:
            return 20;
        case PM_MessageBoxIconSize:
            return kMark;
        default:
            return QProxyStyle::pixelMetric(metric, option, widget);
    }
}

int InstrumentStyle::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                               QStyleHintReturn* returned) const {
    switch (hint) {
        case SH_DialogButtonBox_ButtonsHaveIcons:
        case SH_ComboBox_Popup:
        case SH_EtchDisabledText:
        case SH_DitherDisabledText:
            return 0;
        case SH_Menu_Scrollable:
        case SH_ItemView_ShowDecorationSelected:
            return 1;
        default:
            return QProxyStyle::styleHint(hint, option, widget, returned);
    }
}

QSize InstrumentStyle::sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& contents,
                                        const QWidget* widget) const {
    switch (type) {
        case CT_PushButton:
            return {std::max(kKeyWidth, contents.width() + 2 * (kKeyPadding + kSocketMargin)),
                    std::max(kKeyHeight, contents.height() + 12 + 2 * kSocketMargin)};
        case CT_LineEdit:
            return {contents.width() + 2 * kFieldPadding, std::max(kFieldHeight, contents.height() + 8)};
        case CT_ComboBox:
            return {contents.width() + kFieldPadding + kChevronZone + 6, std::max(kFieldHeight, contents.height() + 8)};
        case CT_SpinBox:
            return {contents.width() + kFieldPadding + kChevronZone + 4, std::max(kFieldHeight, contents.height())};
        case CT_GroupBox: {
            const auto* const box = qstyleoption_cast<const QStyleOptionGroupBox*>(option);
            const int title = box != nullptr ? InstrumentLegend::Width(box->text, box->fontMetrics) : 0;
            return {std::max(contents.width(), title + 4 * kPlateMargin), contents.height() + kPlateMargin};
        }
        case CT_MenuItem: {
            const auto* const item = qstyleoption_cast<const QStyleOptionMenuItem*>(option);
            if (item != nullptr && item->menuItemType == QStyleOptionMenuItem::Separator) {
                return {contents.width(), 9};
            }
            const bool hasShortcut = item != nullptr && item->text.contains('\t');
            return {contents.width() + kMenuCheck + kMenuRight + (hasShortcut ? kMenuGap : 0),
                    std::max(contents.height(), option->fontMetrics.height()) + 8};
        }
        case CT_ItemViewItem: {
            const QSize base = QProxyStyle::sizeFromContents(type, option, contents, widget);
            return {base.width(), std::max(base.height(), option->fontMetrics.height() + 8)};
        }
        default:
            return QProxyStyle::sizeFromContents(type, option, contents, widget);
    }
}

QRect InstrumentStyle::subElementRect(SubElement element, const QStyleOption* option, const QWidget* widget) const {
    switch (element) {
        case SE_PushButtonContents:
        case SE_PushButtonFocusRect:
        case SE_PushButtonBevel:
            return option->rect;
        case SE_LineEditContents: {
            const auto* const frame = qstyleoption_cast<const QStyleOptionFrame*>(option);
            const int padding = frame != nullptr && frame->lineWidth > 0 ? kFieldPadding - 2 : 0;
            return option->rect.adjusted(padding, 0, -padding, 0);
        }
        default:
            return QProxyStyle::subElementRect(element, option, widget);
    }
}

QRect InstrumentStyle::subControlRect(ComplexControl control, const QStyleOptionComplex* option, SubControl part,
                                      const QWidget* widget) const {
    if (control == CC_ComboBox) {
        return visualRect(option->direction, option->rect, PartOfCombo(option->rect, part));
    }
    if (control == CC_SpinBox) {
        return visualRect(option->direction, option->rect, PartOfSpinBox(option->rect, part));
    }
    if (control == CC_GroupBox) {
        const int title = InstrumentLegend::Height(option->fontMetrics);
        if (part == SC_GroupBoxLabel) {
            return option->rect.adjusted(kPlateMargin + 2, kPlateMargin, -kPlateMargin, 0);
        }
        return part == SC_GroupBoxContents ? option->rect.adjusted(2, kPlateMargin + title, -2, -2) : option->rect;
    }
    if (const auto* const bar = qstyleoption_cast<const QStyleOptionSlider*>(option);
        control == CC_ScrollBar && bar != nullptr) {
        return PartOfScrollBar(*bar, part);
    }
    return QProxyStyle::subControlRect(control, option, part, widget);
}

QIcon InstrumentStyle::standardIcon(StandardPixmap icon, const QStyleOption* option, const QWidget* widget) const {
    const QIcon mark = InstrumentMarks::Find(icon);
    return mark.isNull() ? QProxyStyle::standardIcon(icon, option, widget) : mark;
}

QPixmap InstrumentStyle::generatedIconPixmap(QIcon::Mode mode, const QPixmap& pixmap,
                                             const QStyleOption* option) const {
    return mode == QIcon::Selected ? pixmap : QProxyStyle::generatedIconPixmap(mode, pixmap, option);
}
