#include "ui/parts/InstrumentPalette.h"

#include "ui/parts/InstrumentColors.h"
#include "ui/parts/SkinColors.h"

namespace InstrumentPalette {

namespace {

using namespace InstrumentColors;

/// Of 21 at most, between black and white. Usual desktops have a grey window.
constexpr double kHighContrast = 20.0;

double Contrast(const QColor& one, const QColor& other) {
    constexpr double kFlare = 0.05;  // of WCAG 2.x
    const double a = RelativeLuminance(one) + kFlare;
    const double b = RelativeLuminance(other) + kFlare;
    return a > b ? a / b : b / a;
}

QPalette MakeWithFigures(const QColor& figures, const QColor& dimFigures) {
    QPalette palette;
    const auto set = [&palette](QPalette::ColorRole role, const QColor& color, const QColor& disabled) {
        palette.setColor(QPalette::Active, role, color);
        palette.setColor(QPalette::Inactive, role, color);
        palette.setColor(QPalette::Disabled, role, disabled);
    };
    set(QPalette::Window, kBody, kBody);
    set(QPalette::WindowText, kText, kDimText);
    set(QPalette::Base, kGlass, kGlass);
    set(QPalette::AlternateBase, kGlassBetween, kGlassBetween);
    set(QPalette::Text, figures, dimFigures);
    set(QPalette::PlaceholderText, kHint, kHint);
    set(QPalette::Button, kCap, kCap);
    set(QPalette::ButtonText, figures == kText ? kCapText : figures, figures == kText ? kDimCapText : dimFigures);
    set(QPalette::BrightText, kFailure, kFailure);
    set(QPalette::Highlight, kFigures, kDimLit);
    set(QPalette::HighlightedText, kLitInk, kDimLitInk);
    set(QPalette::Link, kLink, kLink);
    set(QPalette::LinkVisited, kVisitedLink, kVisitedLink);
    set(QPalette::ToolTipBase, kMenu, kMenu);
    set(QPalette::ToolTipText, kText, kText);
    set(QPalette::Light, kCapTop, kCapTop);
    set(QPalette::Midlight, kCap, kCap);
    set(QPalette::Mid, kCapBottom, kCapBottom);
    set(QPalette::Dark, kMenu, kMenu);
    set(QPalette::Shadow, Qt::black, Qt::black);
    set(QPalette::NoRole, kBody, kBody);
    return palette;
}

}  // namespace

QPalette Make() {
    return MakeWithFigures(kText, kDimText);
}

QPalette MakeForFields() {
    return MakeWithFigures(kFigures, kDimFigures);
}

QPalette MakeHighContrast() {
    constexpr QColor kDisabled(0xC8, 0xC8, 0xC8);
    QPalette palette(Qt::white, Qt::black, Qt::white, Qt::darkGray, Qt::gray, Qt::white, Qt::white, Qt::black,
                     Qt::black);
    for (const QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
        palette.setColor(QPalette::Disabled, role, kDisabled);
    }
    const auto set = [&palette](QPalette::ColorRole role, const QColor& color) { palette.setColor(role, color); };
    set(QPalette::AlternateBase, Qt::black);
    set(QPalette::ToolTipBase, Qt::black);
    set(QPalette::ToolTipText, Qt::white);
    set(QPalette::PlaceholderText, kDisabled);
    set(QPalette::Highlight, Qt::yellow);
    set(QPalette::HighlightedText, Qt::black);
    set(QPalette::Link, Qt::yellow);
    set(QPalette::LinkVisited, Qt::yellow);
    set(QPalette::Shadow, Qt::black);
    set(QPalette::NoRole, Qt::black);
    return palette;
}

bool IsHighContrast(const QPalette& palette) {
    const auto contrast = [&palette](QPalette::ColorRole front, QPalette::ColorRole back) {
        return Contrast(palette.color(QPalette::Active, front), palette.color(QPalette::Active, back));
    };
    return contrast(QPalette::WindowText, QPalette::Window) >= kHighContrast &&
           contrast(QPalette::Text, QPalette::Base) >= kHighContrast;
}

}  // namespace InstrumentPalette
