// The main function of the tests of the program's window: the offscreen platform with four screens, a large one, one
// that is smaller than the panel, one of two device pixels a logical pixel and one of one and a half.
#include <QApplication>
#include <QFile>

#include "support/FilePath.h"
#include "support/QtTestMain.h"

int main(int argc, char** argv) {
    const KivoraTest::CTemporaryFolder folder;
    QFile screens(KivoraTest::FilePath(folder, "screens.json"));
    if (!screens.open(QIODevice::WriteOnly)) {
        return 1;
    }
    screens.write(R"({"screens": [
        {"name": "large", "x": 0, "y": 0, "width": 1600, "height": 1000,
         "logicalDpi": 96, "logicalBaseDpi": 96, "dpr": 1},
        {"name": "small", "x": 1600, "y": 0, "width": 1024, "height": 600,
         "logicalDpi": 96, "logicalBaseDpi": 96, "dpr": 1},
        {"name": "fine", "x": 2624, "y": 0, "width": 3200, "height": 2000,
         "logicalDpi": 192, "logicalBaseDpi": 96, "dpr": 1},
        {"name": "between", "x": 5824, "y": 0, "width": 1366, "height": 768,
         "logicalDpi": 144, "logicalBaseDpi": 96, "dpr": 1}]})");
    screens.close();
    // Where whoever starts the program has none, Qt would say so in the middle of what a test reads.
    if (qEnvironmentVariableIsEmpty("XDG_RUNTIME_DIR")) {
        qputenv("XDG_RUNTIME_DIR", folder.GetPath().c_str());
    }
    qputenv("QT_QPA_PLATFORM", "offscreen:configfile=" + QFile::encodeName(screens.fileName()));
    return KivoraTest::QtTestMain<QApplication>(argc, argv);
}
