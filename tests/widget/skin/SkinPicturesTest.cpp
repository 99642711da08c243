// The widgets in every state, with the pictures of the skin, against reviewed pictures at one and at two device pixels
// a logical pixel.
#include <gtest/gtest.h>

#include <algorithm>
#include <deque>
#include <functional>
#include <QDir>

#include "QtWidgets/skin/QBlinkingLed.h"
#include "QtWidgets/skin/QJogDial.h"
#include "QtWidgets/skin/QPixmapButton.h"
#include "QtWidgets/skin/QPixmapSlider.h"
#include "widget/piano/GoldenPicture.h"

namespace {

constexpr int kGap = 4;

/// Widgets in a row that share the pictures of one ratio.
class Sheet : public QWidget {
public:
    explicit Sheet(int ratio) : ratio_(ratio) {
        setAutoFillBackground(true);
        setPalette(QColor(110, 112, 93));
    }
    /// Null for no name.
    QPixmap* load(const QString& name) {
        if (name.isEmpty()) {
            return nullptr;
        }
        QPixmap& picture = pictures_.emplace_back(":/Resources/" + name + (ratio_ == 2 ? "@2x.png" : ".png"));
        EXPECT_FALSE(picture.isNull()) << name.toStdString();
        picture.setDevicePixelRatio(ratio_);
        return &picture;
    }
    void place(QWidget& widget, const QSize& size) {
        widget.setParent(this);
        widget.setGeometry(QRect(QPoint(right_ + kGap, kGap), size));
        right_ = widget.geometry().right() + 1;
        bottom_ = std::max(bottom_, widget.geometry().bottom() + 1);
        resize(right_ + kGap, bottom_ + kGap);
    }

private:
    const int ratio_;
    int right_ = 0;
    int bottom_ = 0;
    std::deque<QPixmap> pictures_;
};

void AddButton(Sheet& sheet, const QString& name, bool on, bool enabled, bool hasDisabled) {
    auto* const button = new QPixmapButton(&sheet);
    button->setImages(sheet.load(name + "_In"), sheet.load(name + "_Pr"), sheet.load(hasDisabled ? name + "_Dis" : ""));
    button->setCheckable(true);
    button->setChecked(on);
    button->setEnabled(enabled);
    sheet.place(*button, button->sizeHint());
}

void AddButtonStates(Sheet& sheet, const QString& name, bool hasDisabled) {
    AddButton(sheet, name, false, true, hasDisabled);
    AddButton(sheet, name, true, true, hasDisabled);
    if (hasDisabled) {
        AddButton(sheet, name, false, false, true);
        AddButton(sheet, name, true, false, true);
    }
}

void AddSlider(Sheet& sheet, int value, bool down, bool enabled) {
    auto* const slider = new QPixmapSlider(&sheet);
    slider->setImages(sheet.load("Slider_Hor_Channel"), sheet.load("Slider_Hor_In"), sheet.load("Slider_Hor_Pr"),
                      sheet.load("Slider_Hor_Dis"));
    slider->setRange(10, 100);
    slider->setValue(value);
    slider->setSliderDown(down);
    slider->setEnabled(enabled);
    sheet.place(*slider, slider->sizeHint());
}

void AddJog(Sheet& sheet, int value) {
    auto* const jog = new QJogDial(&sheet);
    jog->setImage(sheet.load("Jog"), QPixmapDial::FixedTopRotatingBottom);
    jog->setValue(value);
    sheet.place(*jog, QSize(112, 112));
}

void AddLed(Sheet& sheet, const QString& name, const QSize& size, bool lit) {
    auto* const led = new QBlinkingLed(&sheet);
    led->setImage(sheet.load(name));
    led->setBlinkTime(3600000);
    if (lit) {
        led->blink();
    }
    sheet.place(*led, size);
}

void ExpectLooks(const QString& name, const std::function<void(Sheet&)>& fill) {
    for (const int ratio : {1, 2}) {
        Sheet sheet(ratio);
        fill(sheet);
        sheet.show();
        const QString file = name + (ratio == 1 ? ".png" : "@2x.png");
        const QImage picture = PictureOf(sheet, ratio);
        QImage reference(QStringLiteral(KIVORA_GOLDEN_DIR "/") + file);
        reference.setDevicePixelRatio(ratio);
        if (const testing::AssertionResult alike = LooksAlike(picture, reference, {}); !alike) {
            QDir().mkpath(QStringLiteral(KIVORA_GOLDEN_SIDE_DIR));
            picture.save(QStringLiteral(KIVORA_GOLDEN_SIDE_DIR "/") + file);
            ADD_FAILURE() << file.toStdString() << ": " << alike.message() << "; see " << KIVORA_GOLDEN_SIDE_DIR;
        }
    }
}

TEST(SkinPictures, KeysWithoutALamp) {
    ExpectLooks("keys", [](Sheet& sheet) {
        AddButtonStates(sheet, "Btn_68x28", true);
        AddButtonStates(sheet, "Btn_60x28", false);
        AddButtonStates(sheet, "Btn_OctDown", false);
        AddButtonStates(sheet, "Btn_Plus", false);
    });
}

TEST(SkinPictures, KeysWithALamp) {
    ExpectLooks("lamp_keys", [](Sheet& sheet) {
        AddButtonStates(sheet, "Btn_Mode", false);
        AddButtonStates(sheet, "Btn_35x19", true);
        AddButtonStates(sheet, "Check_Art", false);
    });
}

TEST(SkinPictures, KeysOfThePanes) {
    ExpectLooks("pane_keys", [](Sheet& sheet) {
        AddButtonStates(sheet, "Btn_Metronome", false);
        AddButtonStates(sheet, "Btn_Rec", false);
        AddButtonStates(sheet, "Btn_Stop", true);
    });
}

TEST(SkinPictures, Sliders) {
    ExpectLooks("sliders", [](Sheet& sheet) {
        AddSlider(sheet, 10, false, true);
        AddSlider(sheet, 55, true, true);
        AddSlider(sheet, 100, false, false);
    });
}

TEST(SkinPictures, JogDials) {
    ExpectLooks("jog", [](Sheet& sheet) {
        AddJog(sheet, 1000000000);
        AddJog(sheet, 1250000000);
        AddJog(sheet, 0);
    });
}

TEST(SkinPictures, Lamps) {
    ExpectLooks("lamps", [](Sheet& sheet) {
        for (const bool lit : {false, true}) {
            AddLed(sheet, "Led_9x9_green", QSize(9, 9), lit);
            AddLed(sheet, "Led_19x9_green", QSize(19, 9), lit);
        }
    });
}

}  // namespace
