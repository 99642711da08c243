#include <QCoreApplication>

#include <string_view>

#include "support/QtTestMain.h"
#include "unit/engine/RecordUntilKilled.h"

int main(int argc, char** argv) {
    if (argc == 3 && argv[1] == std::string_view("--record")) {
        const QCoreApplication application(argc, argv);
        return KivoraTest::RecordUntilKilled(argv[2]);
    }
    return KivoraTest::QtTestMain<QCoreApplication>(argc, argv);
}
