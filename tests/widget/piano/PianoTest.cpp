#include <QMetaMethod>
#include <QMetaProperty>
#include <QSignalSpy>

#include <bitset>
#include <functional>

#include "nk/desktop/nk_pressed_input.h"
#include "nk/nk_exception.h"
#include "PianoFixture.h"

namespace {

std::string TextThrownBy(const std::function<void()>& operation) {
    try {
        operation();
    } catch (const NK::CInvalidParameterException& exception) {
        return exception.what();
    }
    return "nothing thrown";
}

NK::MIDI::TMIDIMessage Message(int status, int data1, int data2) {
    return {static_cast<BYTE>(status), 1, static_cast<BYTE>(data1), static_cast<BYTE>(data2)};
}

TEST(Piano, PropertiesInTheirOrder) {
    const std::vector<std::pair<std::string, std::string>> expected = {
        {"vertical", "bool"},
        {"whiteColor", "QColor"},
        {"bassColor", "QColor"},
        {"BlackColor", "QColor"},
        {"BlackCursorColor", "QColor"},
        {"WhiteCursorColor", "QColor"},
        {"PressedKeyDarkener", "double"},
        {"noteNames", "bool"},
        {"secondaryNoteNames", "bool"},
        {"octaves_0_11", "bool"},
        {"noteNameFont", "QFont"},
        {"noteText", "TNoteText"},
        {"keyNamesTransposing", "int"},
        {"bassKeyNamesTransposing", "int"},
        {"secondaryKeyNamesTransposing", "int"},
        {"finePrint", "bool"},
        {"finePrintVertically", "bool"},
        {"finePrintFont", "QFont"},
        {"splitMainPartStartKey", "uchar"},
        {"leftLight", "bool"},
        {"shadows", "bool"},
        {"standalone", "bool"},
        {"blackKeyLengthK", "double"},
        {"enableCursor", "bool"},
    };
    const QMetaObject& meta = QPiano::staticMetaObject;
    std::vector<std::pair<std::string, std::string>> found;
    for (int i = meta.propertyOffset(); i < meta.propertyCount(); ++i) {
        const QMetaProperty property = meta.property(i);
        EXPECT_TRUE(property.isReadable() && property.isWritable()) << property.name();
        found.emplace_back(property.name(), property.metaType().name());
    }
    EXPECT_EQ(found, expected);
}

TEST(Piano, SignalsInTheirOrder) {
    const QMetaObject& meta = QPiano::staticMetaObject;
    CSignals found;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        const QMetaMethod method = meta.method(i);
        found.push_back((method.methodType() == QMetaMethod::Signal ? "signal " : "slot ") +
                        method.methodSignature().toStdString());
    }
    EXPECT_EQ(found, (CSignals{"signal geometryChanged()", "signal keyPressed(BYTE)", "signal keyPressed(BYTE,BYTE)",
                               "signal keyAfterTouch(BYTE,BYTE)", "signal keyReleased(BYTE)",
                               "signal cursorChanged(BYTE)", "slot onTimer()"}));
}

TEST(Piano, Defaults) {
    const QPiano piano;
    EXPECT_EQ(piano.GetFirstNote(), 36);
    EXPECT_EQ(piano.GetLastNote(), 96);
    EXPECT_EQ(piano.cursorNote(), QPiano::kNoKey);
    EXPECT_EQ(piano.colors(), nullptr);
    EXPECT_EQ(piano.property("PressedKeyDarkener").toDouble(), 1.0);
    EXPECT_EQ(piano.property("blackKeyLengthK").toDouble(), 0.67);
    for (const char* off :
         {"vertical", "noteNames", "secondaryNoteNames", "octaves_0_11", "finePrint", "standalone", "enableCursor"}) {
        EXPECT_FALSE(piano.property(off).toBool()) << off;
    }
    for (const char* on : {"finePrintVertically", "leftLight", "shadows"}) {
        EXPECT_TRUE(piano.property(on).toBool()) << on;
    }
    for (const char* zero :
         {"keyNamesTransposing", "bassKeyNamesTransposing", "secondaryKeyNamesTransposing", "splitMainPartStartKey"}) {
        EXPECT_EQ(piano.property(zero).toInt(), 0) << zero;
    }
    EXPECT_EQ(piano.noteNameFont().family(), "Helvetica");
    EXPECT_EQ(piano.noteNameFont().pointSize(), 10);
    EXPECT_EQ(piano.finePrintFont().family(), "Helvetica");
    EXPECT_EQ(piano.finePrintFont().pointSize(), 5);
    EXPECT_EQ(piano.noteText(), TNoteText());
}

TEST(Piano, EveryPropertyCanBeWritten) {
    QPiano piano;
    const QMetaObject& meta = QPiano::staticMetaObject;
    TNoteText text;
    text.texts[60] = "x";
    for (int i = meta.propertyOffset(); i < meta.propertyCount(); ++i) {
        const QMetaProperty property = meta.property(i);
        QVariant value;
        switch (property.metaType().id()) {
            case QMetaType::Bool:
                value = !property.read(&piano).toBool();
                break;
            case QMetaType::QColor:
                value = QColor(1, 2, 3);
                break;
            case QMetaType::Double:
                value = 0.25;
                break;
            case QMetaType::Int:
                value = -7;
                break;
            case QMetaType::UChar:
                value = QVariant::fromValue<BYTE>(48);
                break;
            case QMetaType::QFont:
                value = QFont("Times", 33);
                break;
            default:
                value = QVariant::fromValue(text);
                break;
        }
        EXPECT_TRUE(property.write(&piano, value)) << property.name();
        EXPECT_EQ(property.read(&piano), value) << property.name();
    }
}

TEST_F(PianoTest, SetKeysWidensToWhiteKeysAtBothEnds) {
    piano_.SetKeys(61, 13);
    EXPECT_EQ(piano_.GetFirstNote(), 60);
    EXPECT_EQ(piano_.GetLastNote(), 74);
    EXPECT_EQ(piano_.GetKeyCount(), 15);
}

TEST_F(PianoTest, SetKeysRefusesNoNotes) {
    EXPECT_EQ(TextThrownBy([&] { piano_.SetKeys(60, 0); }), "Number of piano notes must be positive.");
}

TEST_F(PianoTest, SetKeysRefusesAFirstNoteAbove127) {
    EXPECT_EQ(TextThrownBy([&] { piano_.SetKeys(128, 1); }),
              "Piano's starting note must be within MIDI range: [0..127].");
    EXPECT_EQ(piano_.GetFirstNote(), 60) << "nothing changed";
}

TEST_F(PianoTest, SetKeysPutsTheCursorInTheMiddleAndKeepsItInside) {
    QPiano fresh;
    QSignalSpy moved(&fresh, &QPiano::cursorChanged);
    fresh.SetKeys(61, 13);
    EXPECT_EQ(fresh.cursorNote(), 60 + 15 / 2) << "with the widened range";
    EXPECT_EQ(moved.size(), 1);
    fresh.SetKeys(60, 24);
    EXPECT_EQ(fresh.cursorNote(), 67);
    EXPECT_EQ(moved.size(), 1) << "still inside";
    fresh.SetKeys(72, 24);
    EXPECT_EQ(fresh.cursorNote(), 72);
    fresh.SetKeys(36, 24);
    EXPECT_EQ(fresh.cursorNote(), 59);
    EXPECT_EQ(moved.size(), 3);
}

TEST_F(PianoTest, SetKeysEmitsTheGeometryBeforeTheCursor) {
    piano_.SetKeys(72, 12);
    EXPECT_EQ(Signals(), (CSignals{"geometry", "cursor 72"}));
}

TEST_F(PianoTest, SecondRangeSetterWidensNothing) {
    piano_.setKeyRange(61, 13);
    EXPECT_EQ(piano_.GetFirstNote(), 61);
    EXPECT_EQ(piano_.GetLastNote(), 73);
    EXPECT_EQ(Signals(), CSignals{"geometry"}) << "the cursor stays";
    EXPECT_THROW(piano_.setKeyRange(61, 1), NK::CException);
}

TEST_F(PianoTest, KeyRectangles) {
    EXPECT_EQ(piano_.keyRect(60), QRectF(0, 0, 20, 100));
    EXPECT_EQ(piano_.keyRect(62), QRectF(20, 0, 20, 100));
    EXPECT_EQ(piano_.keyRect(61), QRectF(13.75, 0, 10, 67));
    EXPECT_EQ(piano_.keyRect(72), QRectF()) << "not shown";
    piano_.setBlackKeyLengthK(0.5);
    EXPECT_EQ(piano_.keyRect(61), QRectF(13.75, 0, 10, 50));
    piano_.SetBlackKeyWidthRatio(0.8);
    EXPECT_EQ(piano_.keyRect(61).width(), 16.0);
    EXPECT_EQ(Signals(), CSignals{"geometry"});
}

TEST_F(PianoTest, VerticalSwapsTheCoordinates) {
    piano_.resize(100, 140);
    piano_.setVertical(true);
    EXPECT_EQ(Signals(), CSignals{"geometry"});
    EXPECT_EQ(piano_.keyRect(62), QRectF(0, 20, 100, 20));
    EXPECT_EQ(piano_.keyRect(61), QRectF(0, 13.75, 67, 10));
    EXPECT_EQ(piano_.keyAt({5, 15}), 61);
    EXPECT_EQ(piano_.keyAt({80, 15}), 60);
    EXPECT_EQ(piano_.velocityAt(60, {100, 15}), 127);
    EXPECT_EQ(piano_.velocityAt(60, {0, 15}), 1);
    piano_.setVertical(true);
    EXPECT_EQ(Signals(), CSignals{}) << "no change";
}

TEST_F(PianoTest, AssignedGeometryIsTakenOver) {
    const NK::Piano::CKeyboardPosCalc other(48, 12, 70);
    piano_.Assign(other);
    EXPECT_EQ(piano_.GetFirstNote(), 48);
    EXPECT_EQ(piano_.keyRect(50), QRectF(10, 0, 10, 100));
    EXPECT_EQ(Signals(), CSignals{"geometry"});
}

TEST_F(PianoTest, ResizeLaysTheKeysOutAnew) {
    piano_.show();
    piano_.resize(280, 50);
    EXPECT_EQ(piano_.keyRect(62), QRectF(40, 0, 40, 50));
}

TEST_F(PianoTest, HitTestPrefersBlackKeys) {
    EXPECT_EQ(piano_.keyAt({15, 10}), 61) << "on the white key 60 as well";
    EXPECT_EQ(piano_.keyAt({15, 66.9}), 61);
    EXPECT_EQ(piano_.keyAt({15, 67}), 60) << "below the black key's tip";
    EXPECT_EQ(piano_.keyAt({22, 10}), 61) << "on the white key 62 as well";
    EXPECT_EQ(piano_.keyAt({25, 10}), 62);
    EXPECT_EQ(piano_.keyAt({-1, 10}), QPiano::kNoKey);
    EXPECT_EQ(piano_.keyAt({5, 100}), QPiano::kNoKey);
    EXPECT_EQ(piano_.keyAt({140, 50}), QPiano::kNoKey);
}

TEST_F(PianoTest, PointOnABorderBelongsToTheKeyOnItsRight) {
    EXPECT_EQ(piano_.keyAt({20, 90}), 62);
    EXPECT_EQ(piano_.keyAt({13.75, 10}), 61);
    EXPECT_EQ(piano_.keyAt({23.75, 10}), 62);
    EXPECT_EQ(piano_.keyAt({0, 0}), 60);
}

TEST_F(PianoTest, EveryPointHitsTheTopmostRectangleThatHoldsIt) {
    for (double x = -2.0; x < 144.0; x += 0.25) {
        for (const double y : {0.0, 40.0, 66.99, 67.0, 99.0}) {
            BYTE expected = QPiano::kNoKey;
            for (const bool black : {false, true}) {
                for (BYTE note = 60; note <= 71; ++note) {
                    const QRectF rect = piano_.keyRect(note);
                    if (NK::Piano::IsBlackNote(note) == black && x >= rect.left() && x < rect.right() &&
                        y < rect.bottom()) {
                        expected = note;
                    }
                }
            }
            EXPECT_EQ(piano_.keyAt({x, y}), expected) << x << " " << y;
        }
    }
}

TEST_F(PianoTest, VelocityGrowsFromTheRootToTheTip) {
    EXPECT_EQ(piano_.velocityAt(60, {5, 0}), 1);
    EXPECT_EQ(piano_.velocityAt(60, {5, 100}), 127);
    EXPECT_EQ(piano_.velocityAt(60, {5, 50}), 64);
    EXPECT_EQ(piano_.velocityAt(61, {15, 67}), 127) << "a black key is 67 long";
    EXPECT_EQ(piano_.velocityAt(60, {5, -3}), 1);
    EXPECT_EQ(piano_.velocityAt(60, {5, 300}), 127);
    piano_.resize(140, 0);
    EXPECT_EQ(piano_.velocityAt(60, {5, 0}), 0) << "a key without length";
}

TEST_F(PianoTest, VelocityTakes126EqualSteps) {
    piano_.resize(140, 12600);
    std::bitset<128> seen;
    for (int y = 0; y <= 12600; ++y) {
        seen.set(piano_.velocityAt(60, QPointF(5, y)));
    }
    EXPECT_EQ(seen.count(), 127U);
    EXPECT_FALSE(seen[0]);
    EXPECT_EQ(piano_.velocityAt(60, {5, 50}), 1);
    EXPECT_EQ(piano_.velocityAt(60, {5, 51}), 2);
}

TEST_F(PianoTest, KeysAreLitByMessages) {
    piano_.ProcessMessage(Message(0x90, 64, 100));
    piano_.ProcessMessage(Message(0x90, 61, 1));
    EXPECT_TRUE(piano_.IsPressed(64));
    piano_.ProcessMessage(Message(0x90, 64, 0));
    piano_.ProcessMessage(Message(0x80, 61, 64));
    EXPECT_FALSE(piano_.IsPressed(64) || piano_.IsPressed(61));
    piano_.PressKey(65);
    piano_.ProcessMessage(Message(0xFF, 0, 0));
    EXPECT_FALSE(piano_.IsPressed(65));
    EXPECT_EQ(Signals(), CSignals{}) << "what is shown is not played";
}

TEST_F(PianoTest, NotesFrom128AreIgnored) {
    piano_.PressKey(127);
    Signals();
    piano_.PressKey(128);
    piano_.PressKey(255);
    for (int note = 0; note < 127; ++note) {
        EXPECT_FALSE(piano_.IsPressed(static_cast<std::uint8_t>(note))) << note;
    }
    piano_.ReleaseKey(255);
    EXPECT_TRUE(piano_.IsPressed(127));
    EXPECT_EQ(Signals(), CSignals{});
}

TEST_F(PianoTest, RangeBeyondTheLastNoteCanBeShownAndPlayed) {
    piano_.SetKeys(120, 24);
    EXPECT_EQ(piano_.GetKeyCount(), 24);
    EXPECT_EQ(piano_.keyAt({139, 90}), QPiano::kNoKey);
    EXPECT_LE(piano_.cursorNote(), 127);
    piano_.show();
    EXPECT_FALSE(piano_.grab().isNull());
}

TEST_F(PianoTest, RangePastNote255ShowsNoKeyAndKeepsTheCursorOnANote) {
    piano_.SetKeys(127, 200);
    EXPECT_EQ(piano_.cursorNote(), 127);
    EXPECT_EQ(piano_.keyAt({1, 90}), QPiano::kNoKey);
    QPiano fresh;
    fresh.SetKeys(127, 200);
    EXPECT_EQ(fresh.cursorNote(), 127);
    fresh.SetKeys(60, 12);
    EXPECT_EQ(fresh.cursorNote(), 71);
}

TEST_F(PianoTest, SchemesAreSharedAndSwitchedByTheirPointer) {
    piano_.setRainbowColors();
    EXPECT_EQ(piano_.colors(), &NK::Piano::GetRainbowColors());
    piano_.setScriabinColors();
    EXPECT_EQ(piano_.colors(), &NK::Piano::GetScriabinColors());
    piano_.setNoColors();
    EXPECT_EQ(piano_.colors(), nullptr);
    piano_.setColors(&NK::Piano::GetRainbowColors());
    EXPECT_EQ(piano_.colors(), &NK::Piano::GetRainbowColors());
}

TEST_F(PianoTest, StandaloneKeyGoesDarkOnTheThirdTick) {
    piano_.setStandalone(true);
    piano_.show();
    const auto tick = [&] { QMetaObject::invokeMethod(&piano_, "onTimer", Qt::DirectConnection); };
    piano_.PressKey(64);
    tick();
    tick();
    EXPECT_TRUE(piano_.IsPressed(64));
    tick();
    EXPECT_FALSE(piano_.IsPressed(64));
}

TEST_F(PianoTest, StandaloneKeyPressedAgainStaysLonger) {
    piano_.setStandalone(true);
    piano_.show();
    const auto tick = [&] { QMetaObject::invokeMethod(&piano_, "onTimer", Qt::DirectConnection); };
    piano_.PressKey(64);
    tick();
    tick();
    piano_.PressKey(64);
    tick();
    tick();
    EXPECT_TRUE(piano_.IsPressed(64));
}

TEST_F(PianoTest, StandaloneFadesOnlyWhileVisible) {
    piano_.setStandalone(true);
    piano_.PressKey(64);
    for (int i = 0; i < 5; ++i) {
        QMetaObject::invokeMethod(&piano_, "onTimer", Qt::DirectConnection);
    }
    EXPECT_TRUE(piano_.IsPressed(64));
}

TEST_F(PianoTest, StandaloneKeyFadesByItsOwnTimer) {
    piano_.setStandalone(true);
    piano_.show();
    piano_.PressKey(64);
    EXPECT_TRUE(QTest::qWaitFor([&] { return !piano_.IsPressed(64); }, 20000));
}

TEST_F(PianoTest, ShowingAndTheSecondRangeSetterClearTheFadeCounters) {
    piano_.setStandalone(true);
    piano_.show();
    const auto tick = [&] { QMetaObject::invokeMethod(&piano_, "onTimer", Qt::DirectConnection); };
    piano_.PressKey(64);
    piano_.hide();
    piano_.show();
    tick();
    EXPECT_FALSE(piano_.IsPressed(64));
    piano_.PressKey(64);
    piano_.setKeyRange(60, 13);
    tick();
    EXPECT_FALSE(piano_.IsPressed(64));
}

TEST_F(PianoTest, TurningStandaloneOffStopsTheFading) {
    QPiano other;
    for (QPiano* piano : {&piano_, &other}) {
        piano->setStandalone(true);
        piano->show();
        piano->PressKey(64);
    }
    piano_.setStandalone(false);
    ASSERT_TRUE(QTest::qWaitFor([&] { return !other.IsPressed(64); }, 20000));
    EXPECT_TRUE(piano_.IsPressed(64));
    piano_.setStandalone(true);
    QMetaObject::invokeMethod(&piano_, "onTimer", Qt::DirectConnection);
    EXPECT_FALSE(piano_.IsPressed(64)) << "turning it on clears the counters";
}

TEST_F(PianoTest, KeyLitOutsideStandaloneModeStays) {
    piano_.show();
    piano_.PressKey(64);
    EXPECT_TRUE(piano_.IsPressed(64));
}

TEST_F(PianoTest, WhatIsUpIsReleasedThoughNoReleaseWasTold) {
    constexpr quint32 kSpaceScanCode = 65;
    ShowWithCursor();
    NK::TPressedInput down;
    down.keys.set(kSpaceScanCode);
    down.buttons = 1;
    SendKey(QEvent::KeyPress, Qt::Key_Space, false, kSpaceScanCode, 1);
    QTest::mousePress(&piano_, Qt::LeftButton, Qt::NoModifier, {5, 90});
    Signals();
    piano_.releaseAllBut(down);
    EXPECT_EQ(Signals(), CSignals{});
    down.buttons = 0b100;
    piano_.releaseAllBut(down);
    EXPECT_EQ(Signals(), CSignals{"released 60"});
    down.keys.reset();
    piano_.releaseAllBut(down);
    EXPECT_EQ(Signals(), CSignals{"released 66"});
}

}  // namespace
