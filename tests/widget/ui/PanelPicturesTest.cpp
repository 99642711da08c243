// The whole panel as a picture, at the scale that the program was built for, and whether every text on it fits.
#include "widget/ui/PanelRig.h"

#include <algorithm>
#include <cstdlib>
#include <QDir>
#include <QSignalBlocker>

#include "QtWidgets/skin/QBlinkingLed.h"
#include "ui/PanelCombo.h"
#include "ui/PanelKey.h"
#include "ui/PanelLabel.h"

using namespace KivoraTest;

namespace {

/// A picture in blocks of 4 x 4 pixels, so that the fonts' rasterisation may differ in detail.
QImage Coarse(const QImage& picture) {
    return picture.convertToFormat(QImage::Format_RGB32)
        .scaled(picture.width() / 4, picture.height() / 4, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

class PanelPictures : public PanelTest {
protected:
    /// The state in which the panel is drawn: a layer, one key down.
    void Prepare() {
        Click("voice-mode-dual");
        front->SetPatch(0, 0);
        front->SetPatch(48, 1);
        Press(Qt::Key_Z);
        Show();
    }
    void ExpectLike(const QString& name) {
        QApplication::processEvents();
        Wait([&] { return !Find<QBlinkingLed>("midi-led").isLit(); });
        const QImage picture = panel->grab().toImage();
        const QString file = name + (picture.devicePixelRatio() > 1 ? "@2x.png" : ".png");
        const QImage reference(QStringLiteral(KIVORA_GOLDEN_DIR "/") + file);
        int most = 0;
        double sum = 0;
        if (reference.size() == picture.size()) {
            const QImage a = Coarse(picture);
            const QImage b = Coarse(reference);
            for (int y = 0; y < a.height(); ++y) {
                for (int x = 0; x < a.width(); ++x) {
                    const QRgb p = a.pixel(x, y);
                    const QRgb q = b.pixel(x, y);
                    const int off = std::max(
                        {std::abs(qRed(p) - qRed(q)), std::abs(qGreen(p) - qGreen(q)), std::abs(qBlue(p) - qBlue(q))});
                    most = std::max(most, off);
                    sum += off;
                }
            }
            sum /= a.width() * a.height();
        }
        if (reference.size() != picture.size() || most > 80 || sum > 0.7) {
            QDir().mkpath(QStringLiteral(KIVORA_GOLDEN_SIDE_DIR));
            picture.save(QStringLiteral(KIVORA_GOLDEN_SIDE_DIR "/") + file);
            ADD_FAILURE() << file.toStdString() << " differs, at most by " << most << ", on average by " << sum
                          << "; see " << KIVORA_GOLDEN_SIDE_DIR;
        }
    }
    void ExpectTextsFit(const std::string& where) {
        for (const PanelKey* key : panel->findChildren<PanelKey*>()) {
            EXPECT_EQ(key->fittedCaption(), key->text()) << where << " " << key->objectName().toStdString();
        }
        for (const PanelLabel* label : panel->findChildren<PanelLabel*>()) {
            EXPECT_EQ(label->fittedText().compare(label->text(), Qt::CaseInsensitive), 0)
                << where << " " << label->objectName().toStdString() << ": " << label->fittedText().toStdString();
        }
        for (PanelCombo* combo : panel->findChildren<PanelCombo*>()) {
            const int before = combo->currentIndex();
            for (int i = 0; i < combo->count(); ++i) {
                const QSignalBlocker quiet(combo);
                combo->setCurrentIndex(i);
                EXPECT_EQ(combo->fittedText(), combo->currentText())
                    << where << " " << combo->objectName().toStdString();
            }
            const QSignalBlocker quiet(combo);
            combo->setCurrentIndex(before);
        }
    }
};

TEST_F(PanelPictures, LooksAsReviewed) {
    Prepare();
    ExpectLike("panel");
    Kivora::SetLocale("ru_RU", false);
    QApplication::processEvents();
    ExpectLike("panel_ru");
}

TEST_F(PanelPictures, TheOtherViewsLookAsReviewed) {
    Prepare();
    Click("voice-mode-split");
    Click("record-view");
    Click("arpeggio-view");
    ExpectLike("panel_views");
    Kivora::SetLocale("ru_RU", false);
    QApplication::processEvents();
    ExpectLike("panel_views_ru");
}

TEST_F(PanelPictures, EveryTextFitsInBothLanguagesAndAllViews) {
    for (const char* locale : {"en_US", "ru_RU"}) {
        Kivora::SetLocale(locale, false);
        QApplication::processEvents();
        for (const char* mode : {"voice-mode-single", "voice-mode-dual", "voice-mode-split"}) {
            Click(mode);
            ExpectTextsFit(std::string(locale) + " " + mode);
        }
    }
}

TEST_F(PanelPictures, EveryPatchNameFitsTheDisplay) {
    Click("voice-mode-dual");
    for (const char* locale : {"en_US", "ru_RU"}) {
        Kivora::SetLocale(locale, false);
        QApplication::processEvents();
        for (int program = -1; program < 128; ++program) {
            front->SetPatch(program, 0);
            for (const char* name : {"display-patch1-line1", "display-patch1-line2"}) {
                const auto& label = Find<PanelLabel>(name);
                EXPECT_EQ(label.fittedText(), label.text()) << locale;
            }
        }
    }
}

}  // namespace
