#include "app/WindowDisplay.h"

#include <QRegularExpression>
#include <QtGlobal>

namespace Kivora {
namespace {

/// The value that an option of the toolkit's was given last; empty for none.
QString FindOption(const QStringList& arguments, const QString& name) {
    QString value;
    for (qsizetype i = 1; i + 1 < arguments.size() && arguments[i] != "--"; ++i) {
        if (arguments[i] == "-" + name || arguments[i] == "--" + name) {
            value = arguments[++i];
        }
    }
    return value;
}

/// Without the number of the screen, whose windows are on the same display.
QString FindXDisplay(const QStringList& arguments) {
    static const QRegularExpression kScreen(R"((:\d+)\.\d+$)");
    QString display = FindOption(arguments, "display");
    if (display.isEmpty()) {
        display = qEnvironmentVariable("DISPLAY");
    }
    return display.replace(kScreen, R"(\1)");
}

/// The compositor's socket, without the runtime folder where it stands there.
QString FindWaylandDisplay() {
    const QString socket = qEnvironmentVariable("WAYLAND_DISPLAY");
    const QString folder = qEnvironmentVariable("XDG_RUNTIME_DIR") + "/";
    return socket.startsWith(folder) ? socket.mid(folder.size()) : socket;
}

}  // namespace

QString FindWindowDisplay(const QStringList& arguments) {
    const QString variable = qEnvironmentVariable("QT_QPA_PLATFORM");
    const QString option = FindOption(arguments, "platform");
    const QString platforms = !option.isEmpty() ? option : !variable.isEmpty() ? variable : "wayland;xcb";
    QStringList displays;
    for (const QString& platform : platforms.split(';')) {
        const QString name = platform.section(':', 0, 0);
        const QString display = name == "xcb"                ? FindXDisplay(arguments)
                                : name.startsWith("wayland") ? FindWaylandDisplay()
                                                             : QString();
        if (!display.isEmpty()) {
            displays << display;
        }
    }
    return displays.join('+');
}

}  // namespace Kivora
