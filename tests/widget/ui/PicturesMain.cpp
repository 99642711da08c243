// The main function of the pictures: an application object in the instrument's look, at the scale KIVORA_SCALE,
// whatever the screen's, on one that has room for every dialog at any scale.
#include <QApplication>
#include <QFile>
#include <QStyleFactory>

#include "support/FilePath.h"
#include "support/QtTestMain.h"
#include "ui/parts/EmbeddedFonts.h"
#include "ui/parts/InstrumentStyle.h"

int main(int argc, char** argv) {
    const KivoraTest::CTemporaryFolder folder;
    QFile screens(KivoraTest::FilePath(folder, "screens.json"));
    if (!screens.open(QIODevice::WriteOnly)) {
        return 1;
    }
    screens.write(R"({"screens": [{"name": "large", "x": 0, "y": 0, "width": 3840, "height": 2160,
         "logicalDpi": 96, "logicalBaseDpi": 96, "dpr": 1}]})");
    screens.close();
    qputenv("QT_QPA_PLATFORM", "offscreen:configfile=" + QFile::encodeName(screens.fileName()));
    qputenv("QT_SCALE_FACTOR", KIVORA_SCALE);
    return KivoraTest::QtTestMain<QApplication>(argc, argv, [] {
        Kivora::RegisterEmbeddedFonts();
        InstrumentStyle::Dress(QStyleFactory::create("Fusion"));
    });
}
