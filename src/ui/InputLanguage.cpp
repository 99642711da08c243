#include "ui/InputLanguage.h"

#include <QGuiApplication>
#include <QInputMethod>

namespace Kivora {

NK::LanguageNumber GetInputLanguage() {
    if (QGuiApplication::platformName().startsWith("wayland")) {
        return GetLanguageOfLocale(QGuiApplication::inputMethod()->locale());
    }
    return NK::GetKeyboardLanguage();
}

std::shared_ptr<const NK::TKeyboardLayout> GetInputLayout() {
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
