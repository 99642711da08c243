// The computer keyboard by place on the panel: what plays on the layouts of the world, and what stands above the piano.
#include <QAccessible>
#include <QLineEdit>
#include <string>
#include <vector>

#include "piano/PCKeyTable.h"
#include "QtWidgets/piano/QPianoPCKeyHelpBar.h"
#include "support/SystemLayout.h"
#include "ui/ComputerKeys.h"
#include "widget/ui/PanelRig.h"

using namespace KivoraTest;
using NK::Piano::EPCKeyWay;

namespace {

using Written = std::vector<std::string>;

constexpr quint32 kScan2 = 11;
constexpr quint32 kScanQ = 24;
constexpr quint32 kScanY = 29;
constexpr quint32 kScanBracket = 34;
constexpr quint32 kScanQuote = 48;
constexpr quint32 kScanZ = 52;
constexpr quint32 kScanISO = 94;
constexpr quint32 kScanKeypad2 = 88;

class PanelPlaces : public PanelTest {
protected:
    void UseLayout(const char* layout, const char* variant = "") {
        active_ = std::make_shared<const NK::TKeyboardLayout>(SystemLayout(layout, variant));
        panel->computerKeys().setSource([this] { return active_; });
    }
    /// Without the panel's being told.
    void SwitchTo(const char* layout) { active_ = std::make_shared<const NK::TKeyboardLayout>(SystemLayout(layout)); }
    bool Send(QEvent::Type type, quint32 scanCode, int key, Qt::KeyboardModifiers modifiers = {}) {
        QKeyEvent event(type, key, modifiers, scanCode, 0, 0);
        QApplication::sendEvent(panel, &event);
        return event.isAccepted();
    }
    Written Play(quint32 scanCode, int key, Qt::KeyboardModifiers modifiers = {}) {
        Send(QEvent::KeyPress, scanCode, key, modifiers);
        Send(QEvent::KeyRelease, scanCode, key, modifiers);
        Settle();
        return rig.TakeWritten();
    }
    /// Lets a release that might be one of a repeat act.
    void Settle() { QTest::qWait(0); }
    std::string Hint(int note) {
        return Find<QPianoPCKeyHelpBar>("hint-bar").label(static_cast<BYTE>(note)).toStdString();
    }
    std::string Hints(std::initializer_list<int> notes) {
        std::string all;
        for (const int note : notes) {
            all += (all.empty() ? "" : " ") + Hint(note);
        }
        return all;
    }

    std::shared_ptr<const NK::TKeyboardLayout> active_;
};

TEST_F(PanelPlaces, AGermanYPlaysAsTypedOrByPlaceAsTheUserWants) {
    UseLayout("de");
    EXPECT_EQ(Play(kScanZ, Qt::Key_Y), (Written{"90 3c 50", "80 3c 00"})) << "automatic";
    Engine().SetPCKeyWay(EPCKeyWay::kAsTyped);
    EXPECT_EQ(Play(kScanZ, Qt::Key_Y), (Written{"90 51 50", "80 51 00"}));
    EXPECT_EQ(Play(kScanY, Qt::Key_Z), (Written{"90 3c 50", "80 3c 00"}));
    Engine().SetPCKeyWay(EPCKeyWay::kByPlace);
    EXPECT_EQ(Play(kScanZ, Qt::Key_Y), (Written{"90 3c 50", "80 3c 00"}));
    EXPECT_EQ(Play(kScanZ, Qt::Key_Y, Qt::ShiftModifier), (Written{"90 3c 7f", "80 3c 00"}));
    EXPECT_EQ(Play(kScanZ, Qt::Key_Y, Qt::ControlModifier), (Written{"90 3c 28", "80 3c 00"}));
}

TEST_F(PanelPlaces, ADeadKeyPlaysItsPlaceAtOnce) {
    UseLayout("br");
    EXPECT_EQ(Play(kScanBracket, Qt::Key_Dead_Acute), (Written{"90 59 50", "80 59 00"}));
}

TEST_F(PanelPlaces, ExtraKeysPlayNothingAndAreLeftToOthers) {
    UseLayout("de");
    EXPECT_FALSE(Send(QEvent::KeyPress, kScanISO, Qt::Key_Less));
    EXPECT_FALSE(Send(QEvent::KeyRelease, kScanISO, Qt::Key_Less));
    EXPECT_FALSE(Send(QEvent::KeyPress, kScanQuote, Qt::Key_Adiaeresis));
    EXPECT_EQ(rig.TakeWritten(), Written{});
}

TEST_F(PanelPlaces, AKeyWithoutAPlaceOfItsOwnPlaysWhatItTypes) {
    UseLayout("gr");
    EXPECT_EQ(Play(0, Qt::Key_Z), (Written{"90 3c 50", "80 3c 00"})) << "of a keyboard on the screen";
    EXPECT_EQ(Play(248, Qt::Key_Z), (Written{"90 3c 50", "80 3c 00"})) << "a spare key that is lent a character";
    EXPECT_EQ(Play(kScanKeypad2, Qt::Key_2, Qt::KeypadModifier), (Written{"90 49 50", "80 49 00"}));
    EXPECT_EQ(Play(kScanZ, 0), (Written{"90 3c 50", "80 3c 00"})) << "by its place, though it types nothing known";
}

TEST_F(PanelPlaces, TheLayoutIsAskedAtEachKey) {
    UseLayout("us");
    EXPECT_EQ(Play(kScanQ, Qt::Key_Q), (Written{"90 48 50", "80 48 00"}));
    SwitchTo("fr");
    EXPECT_EQ(Play(kScanQ, Qt::Key_A), (Written{"90 48 50", "80 48 00"}));
    EXPECT_EQ(Play(kScan2, Qt::Key_Eacute), (Written{"90 49 50", "80 49 00"}));
    Send(QEvent::KeyPress, kScanQ, Qt::Key_A);
    Send(QEvent::KeyPress, kScanZ, Qt::Key_W);
    EXPECT_EQ(rig.TakeWritten(), (Written{"90 48 50", "90 3c 50"}));
    SwitchTo("us");
    Send(QEvent::KeyRelease, kScanZ, Qt::Key_Z);
    Send(QEvent::KeyRelease, kScanQ, Qt::Key_Q);
    Settle();
    EXPECT_EQ(rig.TakeWritten(), (Written{"80 3c 00", "80 48 00"}));
}

TEST_F(PanelPlaces, HintsAreWhatStandsOnTheKeys) {
    UseLayout("fr");
    EXPECT_EQ(Hints({60, 61, 62, 63, 64, 65}), "W S X D C V");
    EXPECT_EQ(Hints({72, 73, 74, 75, 76}), "A \u00E9 Z \" E");
    EXPECT_EQ(Hint(89), "^") << "a dead key's accent";
    UseLayout("de");
    EXPECT_EQ(Hints({60, 81, 88, 89, 90, 91}), "Y Z P \u00DC \u00B4 +");
    UseLayout("gr");
    EXPECT_EQ(Hints({60, 62, 64, 74, 76, 61}), "\u0396 \u03A7 \u03A8 \u03C2 \u0395 \u03A3");
    UseLayout("ru");
    EXPECT_EQ(Hints({60, 62, 64, 72, 89, 91}), "\u042F \u0427 \u0421 \u0419 \u0425 \u042A");
    UseLayout("ua");
    EXPECT_EQ(Hints({61, 91}), "\u0406 \u0407");
    UseLayout("il");
    EXPECT_EQ(Hints({60, 76}), "\u05D6 \u05E7");
    UseLayout("tr");
    EXPECT_EQ(Hints({84, 89, 91}), "I \u011E \u00DC");
    UseLayout("cz");
    EXPECT_EQ(Hints({60, 73, 75, 78}), "Y \u011B \u0161 \u0159");
    UseLayout("us");
    EXPECT_EQ(Hints({60, 72, 73, 89}), "Z Q 2 [");
    Engine().SetPCKeyWay(EPCKeyWay::kByPlace);
    UseLayout("us", "dvorak");
    EXPECT_EQ(Hints({60, 72, 74}), "; ' ,");
}

TEST_F(PanelPlaces, HintsAreAUSKeyboardsWhereTheLayoutIsNotKnown) {
    Kivora::SetLocale("ru_RU", false);
    Engine().SetPCKeyWay(EPCKeyWay::kByPlace);
    panel->computerKeys().setSource([] { return nullptr; });
    EXPECT_EQ(Hints({60, 72, 73, 89}), "Z Q 2 [");
    Engine().SetPCKeyWay(EPCKeyWay::kAutomatic);
    EXPECT_EQ(Hint(60), "\u042F") << "as typed";
}

TEST_F(PanelPlaces, HintsAreAUSKeyboardsWhereNoLocalLettersAreWanted) {
    UseLayout("fr");
    Engine().SetTranslateKeyNames(false);
    EXPECT_EQ(Hints({60, 72, 73}), "Z Q 2");
}

TEST_F(PanelPlaces, HintsFollowAChangeOfTheLayoutByThemselves) {
    UseLayout("us");
    SwitchTo("fr");
    Wait([&] { return Hint(72) == "A"; });
    static_assert(ComputerKeys::kPeriodMs < 1000);
}

TEST_F(PanelPlaces, HintsAreToldToScreenReaders) {
    UseLayout("fr");
    auto& bar = Find<QPianoPCKeyHelpBar>("hint-bar");
    const QString told = QAccessible::queryAccessibleInterface(&bar)->text(QAccessible::Description);
    EXPECT_TRUE(told.startsWith("W S X D C V G B H N J , A \u00E9 Z \" E")) << told.toStdString();
    UseLayout("us");
    EXPECT_TRUE(bar.accessibleDescription().startsWith("Z S X D C V")) << bar.accessibleDescription().toStdString();
}

TEST_F(PanelPlaces, EveryPlayingPlaceOfEveryLayoutPlaysItsNote) {
    Engine().SetPCKeyWay(EPCKeyWay::kByPlace);
    for (const char* layout :
         {"us", "gb", "de", "fr", "es", "it", "br", "se", "cz", "pl", "tr", "ru", "ua", "gr", "il", "jp"}) {
        UseLayout(layout);
        for (quint32 scanCode = 9; scanCode < 256; ++scanCode) {
            const auto place = NK::Piano::FindPCKeyPlace(scanCode);
            const int note = place ? NK::Piano::GetPCKeyEntry(*place).note : NK::Piano::TPCKeyEntry::kNone;
            if (note == NK::Piano::TPCKeyEntry::kNone) {
                continue;
            }
            const std::string data = QString::number(note, 16).toStdString();
            const auto key = static_cast<int>(QChar::toUpper((*active_)[scanCode].character));
            EXPECT_EQ(Play(scanCode, key), (Written{"90 " + data + " 50", "80 " + data + " 00"}))
                << layout << ' ' << scanCode;
        }
    }
}

// A field that an input method writes into has the keyboard, and the panel none.
TEST_F(PanelPlaces, NothingPlaysWhileAnInputMethodComposesInADialog) {
    UseLayout("jp");
    QDialog dialog(window.get());
    QLineEdit field(&dialog);
    dialog.open();
    dialog.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&dialog, kWaitMs));
    Wait([&] { return QApplication::activeWindow() == &dialog; });
    field.setFocus();
    QInputMethodEvent composing(QString::fromUtf8("\u304B"), {});
    QApplication::sendEvent(&field, &composing);
    ASSERT_EQ(QApplication::focusWidget(), &field);
    QTest::keyClick(QGuiApplication::focusWindow(), Qt::Key_Z);
    EXPECT_EQ(rig.TakeWritten(), Written{});
}

}  // namespace
