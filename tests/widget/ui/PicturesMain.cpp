// The main function of the pictures: an application object at the scale KIVORA_SCALE, whatever the screen's.
#include <QApplication>

#include "support/TestMain.h"

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_SCALE_FACTOR", KIVORA_SCALE);
    QApplication application(argc, argv);
    return KivoraTestMain(argc, argv);
}
