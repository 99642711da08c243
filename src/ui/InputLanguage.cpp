#include "ui/InputLanguage.h"

#include <qpa/qplatformnativeinterface.h>
#include <QGuiApplication>
#include <QInputMethod>

#include "nk/nk_wayland_keyboard.h"

namespace Kivora {
namespace {

bool IsOnWayland() {
    return QGuiApplication::platformName().startsWith("wayland");
}

NK::CWaylandKeyboard& GetWaylandKeyboard() {
    static std::unique_ptr<NK::CWaylandKeyboard> keyboard;
    if (!keyboard) {
        void* const display = QGuiApplication::platformNativeInterface()->nativeResourceForIntegration("wl_display");
        keyboard = std::make_unique<NK::CWaylandKeyboard>(static_cast<wl_display*>(display));
        qAddPostRoutine([] { keyboard.reset(); });  // the connection goes with the application
    }
    return *keyboard;
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
