// How the keys of the piano look while they sound: seen from afar in every colouring, the voices told apart.
#include "widget/ui/PanelRig.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "engine/CKivora.h"
#include "ui/parts/SkinColors.h"

using namespace KivoraTest;

namespace {

constexpr int kSchemes = 3;
constexpr double kSeenAcrossARoom = 2.0;
constexpr int kToldApart = 48;  // of 255, in one channel

struct Look {
    double luminance = 0;  ///< the mean, linear
    QColor color;          ///< the mean
};

double ContrastOf(double a, double b) {
    return (std::max(a, b) + 0.05) / (std::min(a, b) + 0.05);
}

int DistanceOf(const QColor& a, const QColor& b) {
    return std::max({std::abs(a.red() - b.red()), std::abs(a.green() - b.green()), std::abs(a.blue() - b.blue())});
}

class PanelSoundingKeys : public PanelTest {
protected:
    QImage Picture() { return Piano().grab().toImage(); }
    /// What is to be seen of a key between two parts of its length.
    Look LookOf(const QImage& picture, BYTE note, double from = 0, double to = 1) {
        const QRectF key = Piano().keyRect(note);
        Look look;
        double red = 0;
        double green = 0;
        double blue = 0;
        int pixels = 0;
        for (int y = qRound(key.height() * from); y < qRound(key.height() * to); ++y) {
            for (int x = qRound(key.left()); x < qRound(key.right()); ++x) {
                if (Piano().keyAt(QPointF(x, y)) == note) {
                    const QColor color = picture.pixelColor(x, y);
                    look.luminance += RelativeLuminance(color);
                    red += color.red();
                    green += color.green();
                    blue += color.blue();
                    ++pixels;
                }
            }
        }
        look.luminance /= pixels;
        look.color = QColor(qRound(red / pixels), qRound(green / pixels), qRound(blue / pixels));
        return look;
    }
};

TEST_F(PanelSoundingKeys, StandOutFromIdleOnesInEveryColouringAndVoiceMode) {
    double least = 100;
    for (const char* mode : {"voice-mode-single", "voice-mode-dual", "voice-mode-split"}) {
        Click(mode);
        for (int scheme = 0; scheme < kSchemes; ++scheme) {
            Engine().SetKeyboardColoring(scheme);
            const QImage idle = Picture();
            // Both parts of the keyboard; not two neighbours at once, as an idle key's neighbours are idle.
            for (int note = 48; note < 72; ++note) {
                const auto key = static_cast<BYTE>(note);
                Piano().PressKey(key);
                const QImage sounding = Picture();
                Piano().ReleaseKey(key);
                const double whole = ContrastOf(LookOf(idle, key).luminance, LookOf(sounding, key).luminance);
                const double tip =
                    ContrastOf(LookOf(idle, key, 0.6, 0.95).luminance, LookOf(sounding, key, 0.6, 0.95).luminance);
                EXPECT_GE(whole, kSeenAcrossARoom) << mode << ", scheme " << scheme << ", note " << note;
                EXPECT_GE(tip, kSeenAcrossARoom) << mode << ", scheme " << scheme << ", tip of " << note;
                least = std::min({least, whole, tip});
            }
        }
    }
    RecordProperty("least_contrast", std::to_string(least));
}

TEST_F(PanelSoundingKeys, TellTheHalvesOfASplitApart) {
    Click("voice-mode-split");
    for (const BYTE note : std::initializer_list<BYTE>{48, 49, 60, 61}) {
        Piano().PressKey(note);
    }
    const QImage picture = Picture();
    EXPECT_GE(DistanceOf(LookOf(picture, 48).color, LookOf(picture, 60).color), kToldApart);
    EXPECT_GE(DistanceOf(LookOf(picture, 49).color, LookOf(picture, 61).color), kToldApart);
}

TEST_F(PanelSoundingKeys, TellALayerFromOneVoice) {
    const auto ends = [&](BYTE note) {
        Piano().PressKey(note);
        const QImage picture = Picture();
        Piano().ReleaseKey(note);
        return std::pair(LookOf(picture, note, 0.15, 0.4).color, LookOf(picture, note, 0.88, 0.95).color);
    };
    for (const BYTE note : std::initializer_list<BYTE>{60, 61}) {
        Click("voice-mode-single");
        const auto single = ends(note);
        Click("voice-mode-dual");
        const auto layer = ends(note);
        EXPECT_LE(DistanceOf(single.first, layer.first), 8) << "the main voice's light, note " << int{note};
        EXPECT_GE(DistanceOf(single.second, layer.second), kToldApart) << "the layer's light, note " << int{note};
    }
}

TEST_F(PanelSoundingKeys, AreLitUnderTheCursorToo) {
    Piano().setFocus();
    ASSERT_TRUE(Piano().isCursorShown());
    const BYTE note = Piano().cursorNote();
    const QImage idle = Picture();
    Piano().PressKey(note);
    const QImage sounding = Picture();
    EXPECT_GE(DistanceOf(LookOf(idle, note).color, LookOf(sounding, note).color), kToldApart);
}

}  // namespace
