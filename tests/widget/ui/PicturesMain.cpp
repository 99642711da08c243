// The main function of the pictures: an application object in the instrument's look, at the scale KIVORA_SCALE,
// whatever the screen's.
#include <QApplication>
#include <QStyleFactory>

#include "support/QtTestMain.h"
#include "ui/parts/EmbeddedFonts.h"
#include "ui/parts/InstrumentStyle.h"

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_SCALE_FACTOR", KIVORA_SCALE);
    return KivoraTest::QtTestMain<QApplication>(argc, argv, [] {
        Kivora::RegisterEmbeddedFonts();
        InstrumentStyle::Dress(QStyleFactory::create("Fusion"));
    });
}
