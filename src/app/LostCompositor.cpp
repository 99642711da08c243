#include "app/LostCompositor.h"

#include <qpa/qplatformnativeinterface.h>

#include <cstdlib>
#include <QGuiApplication>
#include <QThread>

#include "nk/desktop/nk_wayland_connection.h"

namespace Kivora {
namespace {

/// What the end of the program takes where a device waits, and more.
constexpr int kLongestEndS = 5;

wl_display* GetCompositor() {
    if (!QGuiApplication::platformName().startsWith("wayland")) {
        return nullptr;
    }
    return static_cast<wl_display*>(
        QGuiApplication::platformNativeInterface()->nativeResourceForIntegration("wl_display"));
}

}  // namespace

LostCompositor* LostCompositor::current_ = nullptr;

LostCompositor::LostCompositor() : display_(GetCompositor()) {
    if (display_ != nullptr) {
        current_ = this;
        before_ = qInstallMessageHandler(&LostCompositor::OnMessage);
    }
}

LostCompositor::~LostCompositor() {
    if (display_ != nullptr) {
        qInstallMessageHandler(before_);
        current_ = nullptr;
    }
}

void LostCompositor::end() {
    std::exit(EXIT_FAILURE);
}

void LostCompositor::OnMessage(QtMsgType type, const QMessageLogContext& context, const QString& text) {
    LostCompositor& self = *current_;
    self.before_(type, context, text);
    if (type != QtWarningMsg || !NK::HasWaylandFailed(self.display_)) {
        return;
    }
    if (self.thread() == QThread::currentThread()) {
        self.end();
    }
    QMetaObject::invokeMethod(&self, "end", Qt::QueuedConnection);
    QThread::sleep(kLongestEndS);
}

}  // namespace Kivora
