// The dialogs in the instrument's look on a small screen under a desktop of large text.
#include "widget/ui/PanelRig.h"

#include <QScrollArea>
#include <QScrollBar>
#include <QStyleFactory>

#include "ui/dialogs/KeyboardTest.h"
#include "ui/dialogs/LatchAndSwing.h"
#include "ui/dialogs/MetronomeSettings.h"
#include "ui/dialogs/MidiLearn.h"
#include "ui/dialogs/MidiRemote.h"
#include "ui/dialogs/midiSettings.h"
#include "ui/dialogs/PlayerWindow.h"
#include "ui/dialogs/PresetList.h"
#include "ui/dialogs/VelocitySettings.h"
#include "ui/parts/InstrumentStyle.h"

using namespace KivoraTest;

namespace {

constexpr QSize kRoom(792, 560);    ///< of 800 x 600, less a frame
constexpr int kLargeText = 17;      ///< half more than 11 points
constexpr int kMostControls = 100;  ///< of any dialog

class SmallScreen : public PanelTest {
protected:
    SmallScreen() : usual_(QApplication::font()) {
        Kivora::RegisterEmbeddedFonts();
        QFont large = usual_;
        large.setPointSize(kLargeText);
        QApplication::setFont(large);
        InstrumentStyle::Dress(QStyleFactory::create("Fusion"));
    }
    ~SmallScreen() override {
        QApplication::setFont(usual_);
        InstrumentStyle::Dress(QStyleFactory::create("Fusion"));
    }

    using Maker = std::function<std::unique_ptr<FittedDialog>()>;

    std::vector<Maker> Makers() {
        Kivora::EngineControls& engine = *controls;
        KivoraWidget& front = *panel;
        return {
            [&] { return std::make_unique<midiSettings>(&engine); },
            [&] { return std::make_unique<VelocitySettings>(engine); },
            [&] { return std::make_unique<MetronomeSettings>(engine); },
            [&] { return std::make_unique<LatchAndSwing>(engine); },
            [&] { return std::make_unique<MidiLearn>(*front.findChild<MidiRemote*>()); },
            [&] { return std::make_unique<PresetList>(&engine, false); },
            [&] { return std::make_unique<PresetList>(&engine, true); },
            [&] { return std::make_unique<KeyboardTest>(nullptr); },
            [&] { return std::make_unique<PlayerWindow>(engine, front); },
        };
    }

private:
    QFont usual_;
};

void ExpectInSight(const QWidget& control, const QWidget& dialog) {
    const std::string name = dialog.objectName().toStdString() + ": " + control.objectName().toStdString();
    EXPECT_EQ(control.visibleRegion().boundingRect().size(), control.size()) << name;
}

/// Of each control that the Tab key reaches: it is in sight then, whole.
void ExpectReached(FittedDialog& dialog) {
    QTest::keyClick(&dialog, Qt::Key_Tab);
    const QWidget* const first = QApplication::focusWidget();
    ASSERT_NE(first, nullptr);
    for (int reached = 0; reached < kMostControls; ++reached) {
        ExpectInSight(*QApplication::focusWidget(), dialog);
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        if (QApplication::focusWidget() == first) {
            return;
        }
    }
    FAIL() << dialog.objectName().toStdString() << " does not come back to where it began";
}

TEST_F(SmallScreen, EveryDialogFitsAndAllOfItIsReachedByTheTabKey) {
    for (const char* const locale : {"en_US", "ru_RU"}) {
        Kivora::SetLocale(locale, false);
        QApplication::processEvents();
        for (const Maker& make : Makers()) {
            const std::unique_ptr<FittedDialog> dialog = make();
            dialog->show();
            dialog->activateWindow();
            ASSERT_TRUE(QTest::qWaitForWindowActive(dialog.get(), kWaitMs));
            dialog->fitInto(kRoom);
            QApplication::processEvents();
            const std::string name = std::string(locale) + " " + dialog->objectName().toStdString();
            EXPECT_LE(dialog->width(), kRoom.width()) << name;
            EXPECT_LE(dialog->height(), kRoom.height()) << name;
            for (const QScrollArea* form : dialog->findChildren<QScrollArea*>("form")) {
                EXPECT_EQ(form->horizontalScrollBar()->maximum(), 0) << name;
            }
            ExpectReached(*dialog);
        }
    }
}

}  // namespace
