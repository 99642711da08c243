#include "ui/PanelLegends.h"

#include <algorithm>
#include <array>
#include <QCoreApplication>
#include <QPainter>

#include "midi/MIDINotes.h"
#include "piano/CKeyboardPosCalc.h"
#include "ui/PanelSkin.h"
#include "ui/parts/PanelGeometry.h"
#include "ui/parts/PanelText.h"

namespace {

QString Text(const char* source) {
    return QCoreApplication::translate("PanelLegends", source);
}

/// A legend's text, the place of its baseline and the room it has.
struct Legend {
    const char* text;
    double x;
    double y;
    Qt::AlignmentFlag alignment;
    double width;
};

constexpr std::array<Legend, 14> kLegends = {{
    {QT_TRANSLATE_NOOP("PanelLegends", "Voice mode"), 24, 61, Qt::AlignLeft, 216},
    {QT_TRANSLATE_NOOP("PanelLegends", "Bar"), 48, 130.6, Qt::AlignLeft, 30},
    {QT_TRANSLATE_NOOP("PanelLegends", "Beat"), 96, 130.6, Qt::AlignLeft, 34},
    {QT_TRANSLATE_NOOP("PanelLegends", "Recorder"), 199, 130.6, Qt::AlignRight, 66},
    {QT_TRANSLATE_NOOP("PanelLegends", "Octave shift"), 24, 251, Qt::AlignLeft, 216},
    {QT_TRANSLATE_NOOP("PanelLegends", "Patch"), 387, 213, Qt::AlignHCenter, 114},
    {QT_TRANSLATE_NOOP("PanelLegends", "Transpose"), 513, 213, Qt::AlignHCenter, 114},
    {QT_TRANSLATE_NOOP("PanelLegends", "Volume"), 639, 213, Qt::AlignHCenter, 114},
    {QT_TRANSLATE_NOOP("PanelLegends", "Voice 1"), 270, 238.4, Qt::AlignLeft, 56},
    {QT_TRANSLATE_NOOP("PanelLegends", "Voice 2"), 270, 274.4, Qt::AlignLeft, 56},
    {QT_TRANSLATE_NOOP("PanelLegends", "Value"), 724, 61, Qt::AlignLeft, 128},
    {QT_TRANSLATE_NOOP("PanelLegends", "Preset"), 724, 251, Qt::AlignLeft, 128},
    {QT_TRANSLATE_NOOP("PanelLegends", "On"), 1016, 65.4, Qt::AlignRight, 40},
    {QT_TRANSLATE_NOOP("PanelLegends", "Edit"), 1115, 65.4, Qt::AlignRight, 52},
}};

constexpr std::array<Legend, 2> kMetronomeLegends = {{
    {QT_TRANSLATE_NOOP("PanelLegends", "Tempo"), 24, 159.5, Qt::AlignLeft, 114},
    {QT_TRANSLATE_NOOP("PanelLegends", "Metronome"), 150, 159.5, Qt::AlignLeft, 92},
}};

constexpr std::array<Legend, 3> kRecorderLegends = {{
    {QT_TRANSLATE_NOOP("PanelLegends", "Time"), 24, 159.5, Qt::AlignLeft, 114},
    {QT_TRANSLATE_NOOP("PanelLegends", "Rec"), 171, 159.5, Qt::AlignHCenter, 48},
    {QT_TRANSLATE_NOOP("PanelLegends", "Stop"), 219, 159.5, Qt::AlignHCenter, 48},
}};

struct CardRow {
    const char* key;
    const char* meaning;
};

constexpr std::array<CardRow, 6> kCard = {{
    {QT_TRANSLATE_NOOP("PanelLegends", "Shift"), QT_TRANSLATE_NOOP("PanelLegends", "play louder")},
    {QT_TRANSLATE_NOOP("PanelLegends", "Ctrl"), QT_TRANSLATE_NOOP("PanelLegends", "play softer")},
    {QT_TRANSLATE_NOOP("PanelLegends", "Space"), QT_TRANSLATE_NOOP("PanelLegends", "sustain pedal")},
    {QT_TRANSLATE_NOOP("PanelLegends", "Esc"), QT_TRANSLATE_NOOP("PanelLegends", "silence and reset")},
    {QT_TRANSLATE_NOOP("PanelLegends", "Alt  \xE2\x88\x92  +"), QT_TRANSLATE_NOOP("PanelLegends", "change the value")},
    {QT_TRANSLATE_NOOP("PanelLegends",
                       "Octave \xE2\x88\x92"
                       "1"),
     QT_TRANSLATE_NOOP("PanelLegends", "the bass of a split")},
}};

constexpr QRectF kCardKey{880, 112, 84, 24};
constexpr int kCardRowHeight = 30;
constexpr double kCardMeaningX = 976;
constexpr double kCardMeaningWidth = 180;
constexpr double kCardMeaningPixels = 12;

constexpr QColor kWhite(255, 255, 255);
using NK::MIDI::kOctave;
constexpr double kOctaveNameBaseline = 312.8;
constexpr double kOctaveNameSpacing = 0.8;
constexpr double kOctaveNameGap = 8.0;
constexpr double kBracketEnd = 3.5;

QColor White(double opacity) {
    QColor color = kWhite;
    color.setAlphaF(static_cast<float>(opacity));
    return color;
}

/// Legends on one line are of one size.
template <std::size_t N>
void DrawAll(QPainter& painter, const std::array<Legend, N>& legends) {
    for (const Legend& legend : legends) {
        std::vector<PanelText::InRoom> row;
        for (const Legend& other : legends) {
            if (other.y == legend.y) {
                row.push_back({Text(other.text), other.width});
            }
        }
        const PanelTextStyle style = PanelText::kLegend.Sized(PanelText::CommonSize(PanelText::kLegend, row));
        PanelText::Draw(painter, style, Text(legend.text), {legend.x, legend.y}, legend.alignment, legend.width);
    }
}

void DrawCard(QPainter& painter) {
    PanelText::Draw(painter, PanelText::kLegend,
                    Text(QT_TRANSLATE_NOOP("PanelLegends", "Playing from the PC keyboard")), {880, 98.5}, Qt::AlignLeft,
                    276);
    PanelTextStyle meaning = PanelText::kSmallLegend;
    meaning.pixels = kCardMeaningPixels;
    meaning.capitals = false;
    double top = 0;
    for (const CardRow& row : kCard) {
        const QRectF key = kCardKey.translated(0, top);
        painter.setPen(Qt::NoPen);
        painter.setBrush(White(0.055));
        painter.drawRoundedRect(key, 4, 4);
        painter.setPen(White(0.3));
        painter.setBrush(Qt::NoBrush);
        painter.drawRoundedRect(key.adjusted(0.5, 0.5, -0.5, -0.5), 3.5, 3.5);
        PanelText::Draw(painter, PanelText::kCaption, Text(row.key), {key.center().x(), key.top() + 15.8},
                        Qt::AlignHCenter, key.width() - 8);
        PanelText::Draw(painter, meaning, Text(row.meaning), {kCardMeaningX, key.top() + 16}, Qt::AlignLeft,
                        kCardMeaningWidth);
        top += kCardRowHeight;
    }
}

/// Of the octave that begins with a C.
QString OctaveName(int note) {
    const int octave = note / kOctave;
    switch (octave) {
        case 1:
            return QCoreApplication::translate("Octave names", "SUB-CONTRA");
        case 2:
            return QCoreApplication::translate("Octave names", "CONTRA");
        case 3:
            return QCoreApplication::translate("Octave names", "GREAT");
        case 4:
            return QCoreApplication::translate("Octave names", "SMALL");
        default:
            return QString::number(octave - 4);
    }
}

/// The octaves of the piano, with what it shows of the first and the last one.
void DrawOctaveNames(QPainter& painter, const PianoRange& piano, const QRect& place) {
    PanelTextStyle style = PanelText::kSmallLegend;
    style.spacing = kOctaveNameSpacing;
    const NK::Piano::CKeyboardPosCalc keys(piano.first, piano.count, place.width());
    const int end = piano.first + piano.count;
    for (int first = piano.first / kOctave * kOctave; first < end; first += kOctave) {
        const int next = first + kOctave;
        const double left = place.left() + keys.GetKeyPos(static_cast<std::uint8_t>(std::max<int>(first, piano.first)));
        const double right =
            place.left() + (next < end ? keys.GetKeyPos(static_cast<std::uint8_t>(next)) : place.width());
        const double middle = (left + right) / 2;
        const QString name = OctaveName(first);
        const PanelText::Fitted fitted = PanelText::Fit(style, name, right - left);
        if (fitted.text != name.toUpper()) {
            continue;  // too little of it is shown
        }
        const double gap = fitted.Width() / 2 + kOctaveNameGap;
        const bool isOneKey = first + 1 == end;
        if (!isOneKey && middle - gap > left + kBracketEnd) {
            painter.setPen(White(0.24));
            painter.drawPolyline(
                QPolygonF({{left + kBracketEnd, 313.5}, {left + kBracketEnd, 309.5}, {middle - gap, 309.5}}));
            painter.drawPolyline(
                QPolygonF({{middle + gap, 309.5}, {right - kBracketEnd, 309.5}, {right - kBracketEnd, 313.5}}));
        }
        PanelText::Draw(painter, style, name, {middle, kOctaveNameBaseline}, Qt::AlignHCenter, right - left);
    }
}

}  // namespace

void DrawPanelLegends(QPainter& painter, LeftView left, RightView right, const PianoRange& piano,
                      const QRect& octaveNames, double devicePixelRatio) {
    painter.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing | QPainter::SmoothPixmapTransform);
    PanelText::Draw(painter, PanelText::kHeaderLegend, Text(QT_TRANSLATE_NOOP("PanelLegends", "MIDI")), {845, 25.6},
                    Qt::AlignRight, 80);
    DrawAll(painter, kLegends);
    PanelText::Draw(painter, PanelText::kTitle, Text(QT_TRANSLATE_NOOP("PanelLegends", "Arpeggio")), {880, 65.4},
                    Qt::AlignLeft, 90);
    if (left == LeftView::kMetronome) {
        DrawAll(painter, kMetronomeLegends);
    } else {
        DrawAll(painter, kRecorderLegends);
    }
    if (right == RightView::kArpeggiator) {
        painter.drawPixmap(PanelGeometry::kArpeggiatorRule, LoadSkinPicture("Pane_Arp", devicePixelRatio));
    } else {
        DrawCard(painter);
    }
    DrawOctaveNames(painter, piano, octaveNames);
}
