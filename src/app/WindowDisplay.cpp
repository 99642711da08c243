#include "app/WindowDisplay.h"

#include <algorithm>
#include <QFileInfo>
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

/// The names of what the toolkit tries, in that order.
QStringList FindPlatforms(const QStringList& arguments) {
    const QString variable = qEnvironmentVariable("QT_QPA_PLATFORM");
    const QString option = FindOption(arguments, "platform");
    QStringList names = (!option.isEmpty() ? option : !variable.isEmpty() ? variable : "wayland;xcb").split(';');
    for (QString& name : names) {
        name = name.section(':', 0, 0);
    }
    return names;
}

/// Named, handed down as a socket that is open, or the one that is looked for where nothing is said.
bool HasWaylandDisplay() {
    return !FindWaylandDisplay().isEmpty() || qEnvironmentVariableIsSet("WAYLAND_SOCKET") ||
           QFileInfo::exists(qEnvironmentVariable("XDG_RUNTIME_DIR") + "/wayland-0");
}

bool IsOfX(const QString& platform) {
    return platform == "xcb";
}

bool IsOfWayland(const QString& platform) {
    return platform.startsWith("wayland");
}

}  // namespace

bool HasWindowDisplay(const QStringList& arguments) {
    const QStringList platforms = FindPlatforms(arguments);
    return std::any_of(platforms.begin(), platforms.end(), [&](const QString& platform) {
        return IsOfX(platform)         ? !FindXDisplay(arguments).isEmpty()
               : IsOfWayland(platform) ? HasWaylandDisplay()
                                       : true;
    });
}

QString FindWindowDisplay(const QStringList& arguments) {
    QStringList displays;
    for (const QString& platform : FindPlatforms(arguments)) {
        const QString display = IsOfX(platform)         ? FindXDisplay(arguments)
                                : IsOfWayland(platform) ? FindWaylandDisplay()
                                                        : QString();
        if (!display.isEmpty()) {
            displays << display;
        }
    }
    return displays.join('+');
}

}  // namespace Kivora
