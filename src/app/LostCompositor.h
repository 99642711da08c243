// The end of a program whose Wayland compositor is gone. [gui]
#pragma once

#include <QObject>
#include <QtGlobal>

struct wl_display;

namespace Kivora {

/// Qt ends the process by _exit() when the connection to the compositor has failed, on a thread of its own mostly,
/// which calls nothing of the program; but it prints a warning right before. While this lives, a warning on a
/// connection that has failed ends the process by exit() on the thread that made this, so that EmergencyEnd acts; the
/// thread that warned waits for it, some seconds at most. On other displays than Wayland's it does nothing. At most one
/// at a time in a process; after the application object.
class LostCompositor : public QObject {
    Q_OBJECT

public:
    LostCompositor();
    ~LostCompositor() override;

private slots:
    void end();

private:
    static void OnMessage(QtMsgType type, const QMessageLogContext& context, const QString& text);

    static LostCompositor* current_;
    wl_display* display_;  ///< null on other displays
    QtMessageHandler before_ = nullptr;
};

}  // namespace Kivora
