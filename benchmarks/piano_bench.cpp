// What drawing and hit-testing the piano cost: one key must stay below 5 % of the whole keyboard, a hit test below 1
// us.
#include <benchmark/benchmark.h>
#include <QApplication>
#include <QImage>

#include "QtWidgets/piano/QPiano.h"

namespace {

constexpr BYTE kWhite = 64;
constexpr BYTE kBlack = 66;

QImage Screen(int ratio) {
    QImage screen(QSize(1152, 176) * ratio, QImage::Format_RGB32);
    screen.setDevicePixelRatio(ratio);
    return screen;
}

void Prepare(QPiano& piano, QImage& screen) {
    piano.resize(1152, 176);
    piano.SetKeys(36, 61);
    piano.render(&screen);
}

void Paint(QWidget& widget, QImage& screen, const QRect& area) {
    widget.render(&screen, area.topLeft(), area);
}

// The floor: a widget of the same size that paints nothing.
void BM_EmptyPaint(benchmark::State& state) {
    QImage screen = Screen(static_cast<int>(state.range(0)));
    QWidget widget;
    widget.resize(1152, 176);
    widget.setAttribute(Qt::WA_OpaquePaintEvent);
    for (auto _ : state) {
        Paint(widget, screen, widget.rect());
    }
}
BENCHMARK(BM_EmptyPaint)->Arg(1)->Arg(2);

// Every key drawn, as after a change of colour.
void BM_WholeKeyboard(benchmark::State& state) {
    QImage screen = Screen(static_cast<int>(state.range(0)));
    QPiano piano;
    Prepare(piano, screen);
    const QColor colors[] = {piano.whiteColor(), QColor(0xF6, 0xF5, 0xF0)};
    std::size_t next = 0;
    for (auto _ : state) {
        piano.setWhiteColor(colors[++next % 2]);
        Paint(piano, screen, piano.rect());
    }
}
BENCHMARK(BM_WholeKeyboard)->Arg(1)->Arg(2);

// What is drawn already, put on the screen again.
void BM_WholeKeyboardFromItsPicture(benchmark::State& state) {
    QImage screen = Screen(static_cast<int>(state.range(0)));
    QPiano piano;
    Prepare(piano, screen);
    for (auto _ : state) {
        Paint(piano, screen, piano.rect());
    }
}
BENCHMARK(BM_WholeKeyboardFromItsPicture)->Arg(1)->Arg(2);

void LightOneKey(benchmark::State& state, BYTE note) {
    QImage screen = Screen(static_cast<int>(state.range(0)));
    QPiano piano;
    Prepare(piano, screen);
    const QRect area = piano.keyRect(note).toAlignedRect();
    for (auto _ : state) {
        piano.IsPressed(note) ? piano.ReleaseKey(note) : piano.PressKey(note);
        Paint(piano, screen, area);
    }
}
void BM_OneWhiteKey(benchmark::State& state) {
    LightOneKey(state, kWhite);
}
void BM_OneBlackKey(benchmark::State& state) {
    LightOneKey(state, kBlack);
}
BENCHMARK(BM_OneWhiteKey)->Arg(1)->Arg(2);
BENCHMARK(BM_OneBlackKey)->Arg(1)->Arg(2);

void BM_HitTest(benchmark::State& state) {
    QImage screen = Screen(1);
    QPiano piano;
    Prepare(piano, screen);
    double x = 0.0;
    for (auto _ : state) {
        x = x < 1150.0 ? x + 13.7 : 0.0;
        benchmark::DoNotOptimize(piano.keyAt({x, 60.0}));
    }
}
BENCHMARK(BM_HitTest);

}  // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
