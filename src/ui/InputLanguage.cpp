#include "ui/InputLanguage.h"

#include <QGuiApplication>
#include <QInputMethod>
#include <QKeyEvent>

#include "nk/nk_wayland_keyboard.h"

namespace Kivora {
namespace {

bool IsOnWayland() {
    return QGuiApplication::platformName().startsWith("wayland");
}

NK::CWaylandKeyboard& GetWaylandKeyboard() {
    static NK::CWaylandKeyboard keyboard;
    return keyboard;
}

}  // namespace

NK::LanguageNumber GetInputLanguage() {
    if (IsOnWayland()) {
        const std::shared_ptr<const NK::TKeyboardLayout> layout = GetWaylandKeyboard().GetLayout();
        if (layout && layout->language != NK::kLanguageUnknown) {
            return layout->language;
        }
        return GetLanguageOfLocale(QGuiApplication::inputMethod()->locale());
    }
    return NK::GetKeyboardLanguage();
}

std::shared_ptr<const NK::TKeyboardLayout> GetInputLayout() {
    if (IsOnWayland()) {
        return GetWaylandKeyboard().GetLayout();
    }
    return QGuiApplication::platformName() == "xcb" ? NK::GetKeyboardLayout() : nullptr;
}

void NoteTypedKey(const QKeyEvent& press) {
    if (IsOnWayland()) {
        GetWaylandKeyboard().NoteKey(press.nativeScanCode(), press.nativeVirtualKey());
    }
}

NK::LanguageNumber GetLanguageOfLocale(const QLocale& locale) {
    if (locale.language() == QLocale::C) {
        return NK::kLanguageUnknown;
    }
    if (locale.language() == QLocale::English) {
        return NK::kLanguageEnglishUs;
    }
    if (locale.language() == QLocale::Russian) {
        return NK::kLanguageRussian;
    }
    // The rules name a country's layout by its ISO 3166 code.
    const QString country = locale.name().section('_', 1, 1).toLower();
    return NK::GetLanguageOfLayout(country.toStdString(), "");
}

}  // namespace Kivora
