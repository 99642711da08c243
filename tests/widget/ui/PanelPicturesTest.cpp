// The whole panel as a picture, at the scale that the program was built for, and whether every text on it fits.
#include "widget/ui/PanelRig.h"

#include <QAction>
#include <QSignalBlocker>

#include "engine/EngineExtras.h"
#include "QtWidgets/skin/QBlinkingLed.h"
#include "ui/parts/PanelCombo.h"
#include "ui/parts/PanelKey.h"
#include "ui/parts/PanelLabel.h"
#include "widget/ui/GoldenWindow.h"

using namespace KivoraTest;

namespace {

class PanelPictures : public PanelTest {
protected:
    /// The state in which the panel is drawn: a layer, one key down.
    void Prepare() {
        Click("voice-mode-dual");
        controls->SetPatch(0, 0);
        controls->SetPatch(48, 1);
        Press(Qt::Key_Z);
        Show();
    }
    void ExpectLike(const QString& name) {
        QApplication::processEvents();
        Wait([&] { return !Find<QBlinkingLed>("midi-led").isLit(); });
        ExpectLikeReviewed(panel->grab().toImage(), name);
    }
    void Choose(const QString& text) {
        for (QAction* entry : panel->findChildren<QAction*>()) {
            if (entry->text().remove('&') == text) {
                return entry->trigger();
            }
        }
        ADD_FAILURE() << text.toStdString();
    }
    void ExpectTextsFit(const std::string& where) {
        for (const PanelKey* key : panel->findChildren<PanelKey*>()) {
            EXPECT_EQ(key->fittedCaption().text, key->text()) << where << " " << key->objectName().toStdString();
        }
        for (const PanelLabel* label : panel->findChildren<PanelLabel*>()) {
            EXPECT_EQ(label->fittedText().text.compare(label->text(), Qt::CaseInsensitive), 0)
                << where << " " << label->objectName().toStdString() << ": " << label->fittedText().text.toStdString();
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
    Click("octave-down");  // what the display offers is done
    Click("octave-up");
    Click("record-view");
    Click("arpeggio-view");
    ExpectLike("panel_views");
    Kivora::SetLocale("ru_RU", false);
    QApplication::processEvents();
    ExpectLike("panel_views_ru");
}

TEST_F(PanelPictures, LooksAsReviewedAtOtherSizes) {
    if (KIVORA_SCALE[0] != '1') {
        GTEST_SKIP() << "the same number of pixels as another size at one";
    }
    Prepare();
    for (const int percent : {75, 150, 200}) {
        panel->setPanelScale(percent / 100.0);
        window->setFixedSize(panel->sizeHint());
        ExpectLike(QString("panel_%1_percent").arg(percent));
    }
}

TEST_F(PanelPictures, LooksAsReviewedInHighContrast) {
    Prepare();
    Choose("High Contrast");
    ExpectLike("panel_contrast");
    Choose("Usual Contrast");
    ExpectLike("panel");
}

TEST_F(PanelPictures, ThePianosOfOtherSizesLookAsReviewed) {
    Prepare();
    Choose("88 Keys");
    Engine().SetShowNoteNames(true);
    Click("voice-mode-split");
    Click("octave-down");
    Engine().SetSplitPoint(54);
    ExpectLike("panel_88_keys");
    Choose("25 Keys");
    ExpectLike("panel_25_keys");
}

TEST_F(PanelPictures, TheWheelsAndPedalsLookAsReviewed) {
    Prepare();
    Choose("Show beside the Piano");
    controls->SetWheel(Kivora::EWheel::kPitch, 11'000);
    controls->SetWheel(Kivora::EWheel::kModulation, 40);
    controls->SetWheel(Kivora::EWheel::kSoft, 127);
    Show();
    ExpectLike("panel_wheels");
    Kivora::SetLocale("ru_RU", false);
    QApplication::processEvents();
    ExpectLike("panel_wheels_ru");
    Kivora::SetLocale("en_US", false);
    QApplication::processEvents();
    Choose("High Contrast");
    ExpectLike("panel_wheels_contrast");
    Choose("Usual Contrast");
}

TEST_F(PanelPictures, ThePatchMenuLooksAsReviewed) {
    Engine().WithExtras([](Kivora::EngineExtras& extras) {
        extras.patches.SetFavorite(48, true);
        extras.patches.NoteUse(48);
    });
    for (const char* locale : {"en_US", "ru_RU"}) {
        Kivora::SetLocale(locale, false);
        QApplication::processEvents();
        const QString suffix = Kivora::LocaleSuffix();
        OnPopUp([&](QWidget& menu) {
            ExpectLikeReviewed(menu.grab().toImage(), "patch_menu" + suffix);
            QTest::keyClicks(&menu, "str");
            ExpectLikeReviewed(menu.grab().toImage(), "patch_menu_found" + suffix);
        });
        panel->patch1ButtonMenu(QPoint(1, 1));
    }
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

TEST_F(PanelPictures, CaptionsOfARowAreOfOneSize) {
    for (const char* locale : {"en_US", "ru_RU"}) {
        Kivora::SetLocale(locale, false);
        QApplication::processEvents();
        const std::vector<std::vector<const char*>> rows = {
            {"reset", "settings", "help", "about"},
            {"voice-mode-single", "voice-mode-dual", "voice-mode-split"},
            {"preset-load", "preset-save"}};
        for (const auto& row : rows) {
            for (const char* name : row) {
                EXPECT_EQ(Find<PanelKey>(name).captionSize(), Find<PanelKey>(row.front()).captionSize())
                    << locale << " " << name;
            }
        }
        for (const char* pane : {"arp1", "arp2"}) {
            const auto size = [&](const char* label) { return Find(pane).findChild<PanelLabel*>(label)->textSize(); };
            EXPECT_EQ(size("directionLabel"), size("noteStepLabel")) << locale;
            EXPECT_EQ(size("rangeLabel"), size("noteStepLabel")) << locale;
        }
    }
}

TEST_F(PanelPictures, EveryPatchNameFitsTheDisplay) {
    Click("voice-mode-dual");
    for (const char* locale : {"en_US", "ru_RU"}) {
        Kivora::SetLocale(locale, false);
        QApplication::processEvents();
        for (int program = -1; program < 128; ++program) {
            controls->SetPatch(program, 0);
            for (const char* name : {"display-patch1-line1", "display-patch1-line2"}) {
                const auto& label = Find<PanelLabel>(name);
                EXPECT_EQ(label.fittedText().text, label.text()) << locale;
            }
        }
    }
}

}  // namespace
