#include "app/HeldInput.h"

#include <QGuiApplication>

#include "ui/KivoraWidget.h"

namespace Kivora {

HeldInput::HeldInput(KivoraWidget& panel) {
    const auto* const x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    if (x11 == nullptr || x11->connection() == nullptr) {
        return;
    }
    query_.emplace(x11->connection());
    watch_.emplace(PressedInputWatch::Source{[this] { query_->Ask(); }, [this] { return query_->TakeAnswer(); }});
    connect(&*watch_, &PressedInputWatch::pressed, &panel, &KivoraWidget::releaseAllBut);
    connect(&*watch_, &PressedInputWatch::pressed, &carried_, &CarriedInput::keepOnly);
    QCoreApplication::instance()->installNativeEventFilter(this);
}

bool HeldInput::nativeEventFilter(const QByteArray& eventType, void* message, qintptr*) {
    if (eventType != "xcb_generic_event_t") {
        return false;
    }
    if (NK::IsFocusIn(message)) {
        watch_->askNow();
    } else if (const auto release = NK::AsKeyRelease(message)) {
        carried_.noteRelease(release->scanCode, release->atMs);
    }
    return false;
}

}  // namespace Kivora
