#include <QCoreApplication>

#include <string_view>

#include "support/TestMain.h"
#include "unit/engine/RecordUntilKilled.h"

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    if (argc == 3 && argv[1] == std::string_view("--record")) {
        return KivoraTest::RecordUntilKilled(argv[2]);
    }
    return KivoraTestMain(argc, argv);
}
