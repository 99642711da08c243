// The main function of tests that need an application object and no window.
#include <QCoreApplication>

#include "support/TestMain.h"

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    return KivoraTestMain(argc, argv);
}
