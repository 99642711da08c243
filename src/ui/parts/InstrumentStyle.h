// The look of dialogs, menus and message boxes: the panel's, over one of Qt's styles.
#pragma once

#include <QProxyStyle>

#include "ui/parts/FileMarks.h"
#include "ui/parts/ViewSettings.h"

class QStyleOptionButton;
class QStyleOptionComboBox;
class QStyleOptionGroupBox;
class QStyleOptionMenuItem;
class QStyleOptionSlider;
class QStyleOptionSpinBox;

/// Draws keys, fields, plates, faders, menus and marks as the panel has them; what it does not know is the base
/// style's, in the same palette. [gui]
class InstrumentStyle : public QProxyStyle {
public:
    /// Owns the base.
    InstrumentStyle(QStyle* base, const QPalette& palette);

    /// Makes the style, the palette and the typeface those of the whole application, in place of the desktop's; sizes
    /// of type stay the desktop's. White on black where the desktop asks for high contrast, by its palette or by its
    /// icons' theme. Owns the base.
    static void Dress(QStyle* base);
    /// High contrast or not, for an application that is dressed; what is shown already follows. The desktop is asked
    /// anew.
    static void ChooseContrast(EContrast contrast);
    /// Of an application that is dressed.
    static bool IsHighContrast();

    using QProxyStyle::polish;
    void polish(QWidget* widget) override;
    QPalette standardPalette() const override;

    int pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const override;
    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* returned) const override;
    QSize sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& contents,
                           const QWidget* widget) const override;
    QRect subElementRect(SubElement element, const QStyleOption* option, const QWidget* widget) const override;
    QRect subControlRect(ComplexControl control, const QStyleOptionComplex* option, SubControl part,
                         const QWidget* widget) const override;
    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget) const override;
    void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;
    void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option, QPainter* painter,
                            const QWidget* widget) const override;
    QIcon standardIcon(StandardPixmap icon, const QStyleOption* option, const QWidget* widget) const override;
    QPixmap generatedIconPixmap(QIcon::Mode mode, const QPixmap& pixmap, const QStyleOption* option) const override;

private:
    void drawKeyCaption(const QStyleOption& option, QPainter& painter, const QWidget* widget) const;
    void drawComboLabel(const QStyleOptionComboBox& option, QPainter& painter) const;
    void drawCombo(const QStyleOptionComboBox& option, QPainter& painter, const QWidget* widget) const;
    void drawSpinBox(const QStyleOptionSpinBox& option, QPainter& painter, const QWidget* widget) const;
    void drawGroupBox(const QStyleOptionGroupBox& option, QPainter& painter, const QWidget* widget) const;
    void drawFader(const QStyleOptionSlider& option, QPainter& painter, const QWidget* widget) const;
    void drawScrollBar(const QStyleOptionSlider& option, QPainter& painter, const QWidget* widget) const;
    void drawMenuItem(const QStyleOptionMenuItem& option, QPainter& painter) const;

    static void Spread(const QPalette& palette, bool highContrast);

    QPalette palette_;
    FileMarks fileMarks_;
    bool isHighContrast_ = false;
};
