#include <QCoreApplication>

#include "support/TestMain.h"

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    return KivoraTestMain(argc, argv);
}
