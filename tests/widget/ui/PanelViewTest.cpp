// The size, the contrast and the quiet that the user chooses.
#include "widget/ui/PanelRig.h"

#include <qpa/qwindowsysteminterface.h>
#include <QIcon>
#include <QMenu>
#include <QStyleFactory>

#include "support/AccessibleChanges.h"
#include "support/Files.h"
#include "support/TemporaryFolder.h"
#include "ui/parts/InstrumentStyle.h"
#include "ui/parts/SkinColors.h"
#include "ui/parts/ViewSettings.h"

using namespace KivoraTest;

namespace {

class PanelView : public PanelTest {
protected:
    PanelView() { InstrumentStyle::Dress(QStyleFactory::create("Fusion")); }
    ~PanelView() override { InstrumentStyle::ChooseContrast(EContrast::kAsDesktop); }
    QAction& Entry(const QString& text) {
        for (QMenu* menu : Find<QMenu>("panel-menu").findChildren<QMenu*>()) {
            for (QAction* action : menu->actions()) {
                if (action->text().remove('&') == text) {
                    return *action;
                }
            }
        }
        throw std::runtime_error(text.toStdString());
    }
    void ExpectFrames() {
        const QImage picture = panel->grab().toImage();
        for (const char* name : {"reset", "tempo", "jog", "voice-mode-dual", "preset-load", "metronome", "piano"}) {
            const QWidget& control = Find(name);
            const QPoint left = control.mapTo(panel, QPoint(-1, control.height() / 2));
            EXPECT_GT(RelativeLuminance(picture.pixelColor(left)), 0.8) << name;
        }
    }
    NK::CString Path() { return NK::CString::FromUtf8((rig.folder / "user/View.ini").string()); }
};

TEST_F(PanelView, ASizeIsChosenInTheMenuAndKept) {
    double told = 0.0;
    panel->setWantedScaleListener([&] { told = panel->wantedScale(); });
    for (const int percent : {75, 125, 150, 200, 100}) {
        Entry(QString("%1%").arg(percent)).trigger();
        Wait([&] { return told == percent / 100.0; });
        EXPECT_DOUBLE_EQ(told, percent / 100.0);
        EXPECT_DOUBLE_EQ(ViewSettings::Read(Path()).scale, told);
    }
    panel->setWantedScale(1.337);
    EXPECT_DOUBLE_EQ(ViewSettings::Read(Path()).scale, 1.337);
    panel->setWantedScale(99);
    EXPECT_DOUBLE_EQ(panel->wantedScale(), ViewSettings::kLargestScale);
    CreateWindow();
    EXPECT_DOUBLE_EQ(panel->wantedScale(), ViewSettings::kLargestScale) << "at the next start";
}

TEST_F(PanelView, WhatCannotBeKeptIsTold) {
    std::filesystem::create_directories(rig.folder / "user/View.ini");
    ModalAnswers answers;
    answers.Click(QMessageBox::Ok);
    panel->setWantedScale(1.5);
    Wait([&] { return answers.AllGiven(); });
    ASSERT_EQ(answers.seen.size(), 1U);
    EXPECT_EQ(answers.seen.front(), "Warning: Failed to save the settings.");
    EXPECT_DOUBLE_EQ(panel->wantedScale(), 1.5) << "for this run";
}

TEST_F(PanelView, HighContrastIsBlackAndWhiteWithFramesRoundTheControls) {
    Entry("High Contrast").trigger();
    EXPECT_TRUE(InstrumentStyle::IsHighContrast());
    EXPECT_EQ(ViewSettings::Read(Path()).contrast, EContrast::kHigh);
    ExpectFrames();
    const QImage high = panel->grab().toImage();
    EXPECT_LT(RelativeLuminance(high.pixelColor(400, 20)), 0.03) << "the header";
    Entry("Usual Contrast").trigger();
    EXPECT_GT(RelativeLuminance(panel->grab().toImage().pixelColor(400, 20)), 0.06);
    EXPECT_TRUE(Entry("Usual Contrast").isChecked());
    Entry("Contrast of the Desktop").trigger();
    EXPECT_EQ(ViewSettings::Read(Path()).contrast, EContrast::kAsDesktop);
}

TEST_F(PanelView, HighContrastHasNoWallpaper) {
    QImage wallpaper(1180, 300, QImage::Format_RGB32);
    wallpaper.fill(Qt::red);
    ASSERT_TRUE(wallpaper.save(PathOf("red.png")));
    Engine().SetWallpaper(PathOf("red.png"));
    QApplication::processEvents();
    const QColor usual = panel->grab().toImage().pixelColor(400, 20);
    EXPECT_GT(usual.red(), usual.green());
    Entry("High Contrast").trigger();
    ExpectFrames();
    EXPECT_EQ(panel->grab().toImage().pixelColor(400, 20).hsvSaturation(), 0);
    Entry("Usual Contrast").trigger();
    EXPECT_EQ(panel->grab().toImage().pixelColor(400, 20), usual);
}

TEST_F(PanelView, FollowsTheDesktopWhenThatTellsOfAnotherTheme) {
    QIcon::setThemeName("HighContrast");
    QWindowSystemInterface::handleThemeChange<QWindowSystemInterface::SynchronousDelivery>(nullptr);
    EXPECT_TRUE(InstrumentStyle::IsHighContrast());
    ExpectFrames();
    QIcon::setThemeName({});
    QWindowSystemInterface::handleThemeChange<QWindowSystemInterface::SynchronousDelivery>(nullptr);
    EXPECT_FALSE(InstrumentStyle::IsHighContrast());
}

TEST_F(PanelView, QuietWhilePlayingTellsScreenReadersOfNoKey) {
    AccessibleChanges changes;
    Entry("Quiet while Playing").trigger();
    EXPECT_TRUE(Entry("Quiet while Playing").isChecked());
    changes.Take();
    Press(Qt::Key_Z);
    Show();
    Release(Qt::Key_Z);
    Show();
    EXPECT_EQ(changes.Take(), std::vector<std::string>());
    EXPECT_TRUE(ViewSettings::Read(Path()).quietWhilePlaying);
    Entry("Quiet while Playing").trigger();
    Press(Qt::Key_Z);
    Show();
    Release(Qt::Key_Z);
    Show();
    EXPECT_EQ(changes.Take(), (std::vector<std::string>{"C4 pressed+", "C4 pressed-"}));
}

TEST(ViewSettingsFile, WhatIsNoSettingTakesTheDefault) {
    const CTemporaryFolder folder;
    const NK::CString path = NK::CString::FromUtf8((folder / "View.ini").string());
    EXPECT_EQ(ViewSettings::Read(path), ViewSettings());
    WriteFileBytes(folder / "View.ini", "[View]\nSize=nan\nHighContrast=x\nQuietWhilePlaying=perhaps\nOther=1\n");
    EXPECT_EQ(ViewSettings::Read(path), ViewSettings());
    WriteFileBytes(folder / "View.ini", "[View]\nSize=1\nOther=1\n");
    EXPECT_EQ(ViewSettings::Read(path).scale, ViewSettings::kSmallestScale);
    const ViewSettings settings{1.25, EContrast::kUsual, true};
    EXPECT_TRUE(settings.Save(path));
    EXPECT_EQ(ViewSettings::Read(path), settings);
    EXPECT_NE(ReadFileBytes(folder / "View.ini").find("\nOther=1\n"), std::string::npos);
}

}  // namespace
