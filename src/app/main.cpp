#include <optional>
#include <QApplication>
#include <QStyleFactory>
#include <QTimer>

#include "app/CommandLine.h"
#include "app/Demonstration.h"
#include "app/MainWindow.h"
#include "locale/Locale.h"
#include "nk/nk_thread_role.h"
#include "ui/EmbeddedFonts.h"

namespace {

/// The style that the panel is designed for, or its successor where it is not installed.
void SetStyle() {
    if (QStyle* style = QStyleFactory::create("Cleanlooks")) {
        QApplication::setStyle(style);
    } else {
        QApplication::setStyle("Fusion");
    }
}

}  // namespace

int main(int argc, char** argv) {
    NK_REGISTER_THREAD_ROLE(gui);
    QApplication application(argc, argv);
    QApplication::setApplicationName("Kivora LX");
    QApplication::setApplicationVersion(KIVORA_VERSION);
    QGuiApplication::setDesktopFileName("kivora");
    const Kivora::CommandLine commandLine = Kivora::CommandLine::Parse(QApplication::arguments());
    SetStyle();
    Kivora::RegisterEmbeddedFonts();
    Kivora::InitLocale();

    std::optional<Kivora::Demonstration> demonstration;
    if (!commandLine.demonstrationDir.isEmpty()) {
        demonstration.emplace(commandLine.demonstrationDir);
    }
    Kivora::MainWindow window;
    window.show();
    if (demonstration) {
        demonstration->Start(window);
    }
    return QApplication::exec();
}
