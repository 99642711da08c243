// The main function of tests that need an application object and no window.
#include <QCoreApplication>

#include "support/QtTestMain.h"

int main(int argc, char** argv) {
    return KivoraTest::QtTestMain<QCoreApplication>(argc, argv);
}
