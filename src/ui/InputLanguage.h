// The language of the keyboard layout that the user types with.
#pragma once

#include <memory>
#include <QAbstractNativeEventFilter>
#include <QLocale>
#include <QObject>

#include "nk/desktop/nk_keyboard_layout.h"

namespace Kivora {

/// As X names it; where there is no X display, as on Wayland, the input method's language; kLanguageUnknown where that
/// names none. [gui]
NK::LanguageNumber GetInputLanguage();

/// The layout that the keyboard types with; null where the window system does not tell. Waits for nothing as long as it
/// stays the same. [gui]
std::shared_ptr<const NK::TKeyboardLayout> GetInputLayout();

/// Tells of changes of GetInputLayout(), on X11 by the events of the toolkit's own connection: so each key comes after
/// the change that was before it. [gui]
class InputLayoutWatch : public QObject, QAbstractNativeEventFilter {
    Q_OBJECT

public:
    /// The application's one, which ends with it.
    static InputLayoutWatch& Get();

    /// Whether a change is told as soon as the window system tells of it; otherwise when somebody calls
    /// GetInputLayout().
    static bool TellsAtOnce();
    /// GetInputLayout().
    std::shared_ptr<const NK::TKeyboardLayout> GetLayout();

signals:
    /// Comes from the event loop.
    void Changed();

private:
    InputLayoutWatch();
    bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override;
    void ReadAnew();

    bool isToRead_ = false;  ///< when the event loop comes to it
    bool isKnown_ = false;   ///< it is the one told until another is told of
    std::shared_ptr<const NK::TKeyboardLayout> told_;
};

/// That of an English or a Russian keyboard by the locale's language, else that of its country's usual keyboard;
/// kLanguageUnknown for the "C" locale. [any]
NK::LanguageNumber GetLanguageOfLocale(const QLocale& locale);

}  // namespace Kivora
