#include "ui/InputLanguage.h"

#include <qpa/qplatformnativeinterface.h>
#include <QGuiApplication>
#include <QInputMethod>
#include <utility>

#include "nk/desktop/nk_wayland_keyboard.h"

namespace Kivora {
namespace {

bool IsOnWayland() {
    return QGuiApplication::platformName().startsWith("wayland");
}

bool IsOnX11() {
    return QGuiApplication::platformName() == "xcb";
}

/// One for the whole program, which ends with the application: so does the connection to the window system.
template <class T, class Creator>
T& GetOfApplication(Creator create) {
    static std::unique_ptr<T> object;
    if (!object) {
        object.reset(create());
        qAddPostRoutine([] { object.reset(); });
    }
    return *object;
}

NK::CWaylandKeyboard& GetWaylandKeyboard() {
    return GetOfApplication<NK::CWaylandKeyboard>([] {
        void* const display = QGuiApplication::platformNativeInterface()->nativeResourceForIntegration("wl_display");
        return new NK::CWaylandKeyboard(static_cast<wl_display*>(display));
    });
}

}  // namespace

NK::LanguageNumber GetInputLanguage() {
    if (!IsOnWayland() && !IsOnX11()) {
        return NK::GetKeyboardLanguage();
    }
    const std::shared_ptr<const NK::TKeyboardLayout> layout = GetInputLayout();
    if (layout && layout->language != NK::kLanguageUnknown) {
        return layout->language;
    }
    return IsOnWayland() ? GetLanguageOfLocale(QGuiApplication::inputMethod()->locale()) : NK::kLanguageUnknown;
}

std::shared_ptr<const NK::TKeyboardLayout> GetInputLayout() {
    return InputLayoutWatch::Get().GetLayout();
}

InputLayoutWatch& InputLayoutWatch::Get() {
    return GetOfApplication<InputLayoutWatch>([] { return new InputLayoutWatch; });
}

InputLayoutWatch::InputLayoutWatch() {
    if (TellsAtOnce()) {
        QCoreApplication::instance()->installNativeEventFilter(this);
    }
}

bool InputLayoutWatch::TellsAtOnce() {
    return IsOnX11();
}

bool InputLayoutWatch::nativeEventFilter(const QByteArray& eventType, void* message, qintptr*) {
    if (eventType != "xcb_generic_event_t") {
        return false;
    }
    switch (NK::GetKeyboardLayoutEvent(message)) {
        case NK::EKeyboardLayoutEvent::kOtherActive:
            ReadAnew();
            break;
        case NK::EKeyboardLayoutEvent::kOtherLayouts:  // told in many parts
            isKnown_ = false;
            if (!std::exchange(isToRead_, true)) {
                QMetaObject::invokeMethod(this, &InputLayoutWatch::ReadAnew, Qt::QueuedConnection);
            }
            break;
        case NK::EKeyboardLayoutEvent::kNone:
            break;
    }
    return false;
}

void InputLayoutWatch::ReadAnew() {
    isToRead_ = false;
    isKnown_ = false;
    NK::SyncKeyboardLayout();
    GetLayout();
}

std::shared_ptr<const NK::TKeyboardLayout> InputLayoutWatch::GetLayout() {
    if (isKnown_) {
        return told_;
    }
    std::shared_ptr<const NK::TKeyboardLayout> layout;
    if (IsOnWayland()) {
        layout = GetWaylandKeyboard().GetLayout();
    } else if (IsOnX11()) {
        layout = NK::GetKeyboardLayout();
        isKnown_ = layout != nullptr;
    }
    if (layout != told_) {
        told_ = layout;
        QMetaObject::invokeMethod(this, &InputLayoutWatch::Changed, Qt::QueuedConnection);
    }
    return layout;
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
