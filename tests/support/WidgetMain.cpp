// The main function of the widget tests: an application object on the offscreen platform.
#include <QApplication>

#include "support/TestMain.h"

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    QApplication application(argc, argv);
    return KivoraTestMain(argc, argv);
}
