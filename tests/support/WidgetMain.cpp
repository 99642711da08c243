// The main function of the widget tests: an application object on the offscreen platform.
#include <QApplication>

#include "support/QtTestMain.h"

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    return KivoraTest::QtTestMain<QApplication>(argc, argv);
}
