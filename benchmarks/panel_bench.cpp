// What a move of the pointer over the colour dialog costs, at two device pixels a logical pixel where QT_SCALE_FACTOR
// says nothing else: the panel in another colour, composed and painted. Beside it a floor: as many pixels filled with
// the colour and covered once.
#include <benchmark/benchmark.h>
#include <QApplication>
#include <QImage>
#include <QMainWindow>
#include <QPainter>

#include "engine/EngineControls.h"
#include "ui/KivoraWidget.h"
#include "ui/parts/EmbeddedFonts.h"
#include "unit/engine/EngineRig.h"

namespace {

constexpr QSize kDesign(1180, 520);
constexpr const char* kScale = "QT_SCALE_FACTOR";

class Panel {
public:
    Panel() {
        Kivora::RegisterEmbeddedFonts();
        rig_.backend.defaultOutput = KivoraTest::kSynth;
        rig_.Create();
        controls_ = std::make_unique<Kivora::EngineControls>(*rig_.engine);
        window_ = std::make_unique<QMainWindow>();
        auto* const panel = new KivoraWidget(controls_.get(), window_.get());
        window_->setCentralWidget(panel);
        window_->setFixedSize(panel->sizeHint());
        window_->show();
        QCoreApplication::processEvents();
    }
    ~Panel() {
        window_.reset();
        controls_->Close();
    }
    Kivora::CKivora& Engine() { return *rig_.engine; }

private:
    KivoraTest::EngineRig rig_;
    std::unique_ptr<Kivora::EngineControls> controls_;
    std::unique_ptr<QMainWindow> window_;
};

QColor Next(int& step) {
    return QColor::fromHsv(step++ * 7 % 360, 120, 120);
}

void BM_FillAndCoverThePanel(benchmark::State& state) {
    const QSize pixels = kDesign * qEnvironmentVariable(kScale).toDouble();
    QImage screen(pixels, QImage::Format_RGB32);
    QImage cover(pixels, QImage::Format_ARGB32_Premultiplied);
    cover.fill(QColor(0, 0, 0, 100));
    int step = 0;
    for (auto _ : state) {
        QPainter painter(&screen);
        painter.fillRect(screen.rect(), Next(step));
        painter.drawImage(0, 0, cover);
    }
}
BENCHMARK(BM_FillAndCoverThePanel)->Unit(benchmark::kMillisecond);

void TryColors(benchmark::State& state, void (Kivora::CKivora::*set)(const QColor&)) {
    Panel panel;
    int step = 0;
    for (auto _ : state) {
        (panel.Engine().*set)(Next(step));
        QCoreApplication::processEvents();
    }
}
void BM_ColourOfTheBody(benchmark::State& state) {
    TryColors(state, &Kivora::CKivora::SetUIColor);
}
void BM_ColourOfTheDisplay(benchmark::State& state) {
    TryColors(state, &Kivora::CKivora::SetUIDisplayColor);
}
void BM_ColourOfTheSmallDisplays(benchmark::State& state) {
    TryColors(state, &Kivora::CKivora::SetUIDisplay2Color);
}
BENCHMARK(BM_ColourOfTheBody)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ColourOfTheDisplay)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ColourOfTheSmallDisplays)->Unit(benchmark::kMillisecond);

}  // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    if (!qEnvironmentVariableIsSet(kScale)) {
        qputenv(kScale, "2");
    }
    const QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
