// A Wayland compositor without a screen whose fingers are lines on its input:
//
//     down <finger> <x> <y>       in pixels of the window that came first
//     move <finger> <x> <y>
//     up <finger>
//
// It prints "window <width> <height>" when that window has another size, and ends when its input does.
#include <unistd.h>

#include <cstdio>
#include <QByteArray>
#include <QGuiApplication>
#include <QPointer>
#include <QSocketNotifier>
#include <QWaylandCompositor>
#include <QWaylandOutput>
#include <QWaylandOutputMode>
#include <QWaylandSeat>
#include <QWaylandSurface>
#include <QWaylandXdgShell>

namespace {

class TouchScreen : public QObject {
public:
    explicit TouchScreen(const QByteArray& socket) : output_(&compositor_, nullptr), shell_(&compositor_) {
        const QWaylandOutputMode mode(QSize(1366, 768), 60000);
        output_.addMode(mode, true);
        compositor_.setSocketName(socket);
        compositor_.create();
        output_.setCurrentMode(mode);
        connect(&compositor_, &QWaylandCompositor::surfaceCreated, this, &TouchScreen::ShowFrames);
        connect(&shell_, &QWaylandXdgShell::toplevelCreated, this, &TouchScreen::TakeWindow);
        connect(&input_, &QSocketNotifier::activated, this, &TouchScreen::Read);
    }

private:
    /// Programs wait with their next picture until they are told that the last one is on the screen.
    void ShowFrames(QWaylandSurface* surface) {
        connect(
            surface, &QWaylandSurface::redraw, this,
            [surface] {
                surface->frameStarted();
                surface->sendFrameCallbacks();
            },
            Qt::QueuedConnection);
    }

    void TakeWindow(QWaylandXdgToplevel*, QWaylandXdgSurface* window) {
        if (window_ != nullptr) {
            return;
        }
        window_ = window->surface();
        connect(window_, &QWaylandSurface::destinationSizeChanged, this, [this] {
            const QSize size = window_->destinationSize();
            std::printf("window %d %d\n", size.width(), size.height());
            std::fflush(stdout);
        });
        compositor_.defaultSeat()->setKeyboardFocus(window_);
    }

    void Read() {
        char bytes[256];
        const ssize_t count = read(STDIN_FILENO, bytes, sizeof bytes);
        if (count <= 0) {
            QCoreApplication::quit();
            return;
        }
        text_.append(bytes, count);
        for (qsizetype end = text_.indexOf('\n'); end >= 0; end = text_.indexOf('\n')) {
            Obey(text_.left(end).split(' '));
            text_.remove(0, end + 1);
        }
    }

    void Obey(const QList<QByteArray>& words) {
        if (window_ == nullptr) {
            return;
        }
        QWaylandSeat& seat = *compositor_.defaultSeat();
        const int finger = words.value(1).toInt();
        const QPointF place(words.value(2).toDouble(), words.value(3).toDouble());
        if (words.first() == "down") {
            seat.sendTouchPointPressed(window_, finger, place);
        } else if (words.first() == "move") {
            seat.sendTouchPointMoved(window_, finger, place);
        } else if (words.first() == "up") {
            seat.sendTouchPointReleased(window_, finger, place);
        }
        seat.sendTouchFrameEvent(window_->client());
    }

    QWaylandCompositor compositor_;
    QWaylandOutput output_;
    QWaylandXdgShell shell_;
    QPointer<QWaylandSurface> window_;
    QSocketNotifier input_{STDIN_FILENO, QSocketNotifier::Read};
    QByteArray text_;
};

}  // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication application(argc, argv);
    const TouchScreen screen(argc > 1 ? argv[1] : "");
    return QGuiApplication::exec();
}
