#include "ui/MIDIEventRelay.h"

#include <gmock/gmock.h>

#include <QCoreApplication>
#include <QSignalSpy>
#include <thread>
#include <vector>

#include "midi/TMIDIMessage.h"

using NK::MIDI::TMIDIMessage;
using testing::ElementsAre;

namespace {

class Relay : public testing::Test {
protected:
    Relay() {
        QObject::connect(&relay, &MIDIEventRelay::MIDIMessageReady, [this](int packed) {
            shown.push_back(TMIDIMessage::FromWord(static_cast<std::uint32_t>(packed)));
        });
    }
    void Put(TMIDIMessage message) { relay.Put(static_cast<int>(message.ToWord())); }

    MIDIEventRelay relay;
    std::vector<TMIDIMessage> shown;
};

constexpr TMIDIMessage NoteOn(std::uint8_t note, std::uint8_t velocity) {
    return {0x90, 1, note, velocity};
}
constexpr TMIDIMessage NoteOff(std::uint8_t note) {
    return {0x80, 1, note, 0};
}

TEST_F(Relay, NothingIsShownBeforeTheEventLoopRuns) {
    Put(NoteOn(60, 80));
    EXPECT_TRUE(shown.empty());
    QCoreApplication::processEvents();
    EXPECT_THAT(shown, ElementsAre(NoteOn(60, 80)));
}

TEST_F(Relay, ThePitchWheelComesBesideOtherMessagesUnlessItWasReset) {
    const TMIDIMessage bent{0xE0, 1, 0, 0x50};
    const TMIDIMessage program{0xC0, 1, 5, 0};
    Put({0xE0, 1, 0, 0x60});
    Put(bent);
    Put(program);
    QCoreApplication::processEvents();
    EXPECT_THAT(shown, ElementsAre(bent, program));
    shown.clear();
    Put(bent);
    Put({0xB0, 1, 121, 0});
    QCoreApplication::processEvents();
    EXPECT_THAT(shown, ElementsAre(TMIDIMessage{0xB0, 1, 121, 0}));
}

TEST_F(Relay, ANoteStruckAndReleasedMeanwhileComesAsBoth) {
    Put(NoteOn(60, 80));
    Put(NoteOff(60));
    QCoreApplication::processEvents();
    EXPECT_THAT(shown, ElementsAre(NoteOn(60, 80), NoteOff(60)));
}

TEST_F(Relay, ANoteStruckAgainStaysStruck) {
    Put(NoteOn(60, 80));
    Put(NoteOff(60));
    Put(NoteOn(60, 90));
    QCoreApplication::processEvents();
    EXPECT_THAT(shown, ElementsAre(NoteOn(60, 90)));
}

TEST_F(Relay, ANoteOnOfVelocityZeroIsARelease) {
    const TMIDIMessage silent{0x90, 1, 60, 0};
    Put(NoteOn(60, 80));
    Put(silent);
    QCoreApplication::processEvents();
    EXPECT_THAT(shown, ElementsAre(NoteOn(60, 80), silent));
}

TEST_F(Relay, ControllersComeWithTheirLastValue) {
    Put({0xB0, 1, 64, 127});
    Put({0xB0, 1, 7, 10});
    Put({0xB0, 1, 64, 0});
    QCoreApplication::processEvents();
    EXPECT_THAT(shown, ElementsAre(TMIDIMessage{0xB0, 1, 7, 10}, TMIDIMessage{0xB0, 1, 64, 0}));
}

TEST_F(Relay, AResetOfTheControllersComesBeforeThoseSinceIt) {
    Put({0xB0, 1, 64, 127});
    Put({0xB0, 1, 121, 0});
    Put({0xB0, 1, 7, 10});
    QCoreApplication::processEvents();
    EXPECT_THAT(shown, ElementsAre(TMIDIMessage{0xB0, 1, 121, 0}, TMIDIMessage{0xB0, 1, 7, 10}));
}

TEST_F(Relay, AResetForgetsWhatCameBeforeIt) {
    Put(NoteOn(60, 80));
    Put({0xFF, 0, 0, 0});
    Put(NoteOn(62, 70));
    QCoreApplication::processEvents();
    EXPECT_THAT(shown, ElementsAre(TMIDIMessage{0xFF, 0, 0, 0}, NoteOn(62, 70)));
}

TEST_F(Relay, AResetLeavesControllersToBeShown) {
    Put({0xB0, 1, 64, 127});
    Put({0xB0, 1, 64, 0});
    Put({0xFF, 0, 0, 0});
    QCoreApplication::processEvents();
    EXPECT_THAT(shown, ElementsAre(TMIDIMessage{0xFF, 0, 0, 0}, TMIDIMessage{0xB0, 1, 64, 0}));
}

TEST_F(Relay, TheNoteStruckLastComesLast) {
    Put(NoteOn(64, 80));
    Put(NoteOn(67, 80));
    Put(NoteOn(60, 50));
    Put(NoteOff(67));
    QCoreApplication::processEvents();
    EXPECT_THAT(shown, ElementsAre(NoteOn(64, 80), NoteOn(67, 80), NoteOff(67), NoteOn(60, 50)));
}

TEST_F(Relay, ABurstFromAnotherThreadCostsOneWakeUp) {
    const QSignalSpy batches(&relay, &MIDIEventRelay::BatchDone);
    std::thread player([this] {
        for (int i = 0; i < 3000; ++i) {
            Put(NoteOn(static_cast<std::uint8_t>(36 + i % 61), 64));
            Put(NoteOff(static_cast<std::uint8_t>(36 + i % 61)));
        }
    });
    player.join();
    QCoreApplication::processEvents();
    EXPECT_EQ(batches.count(), 1);
    EXPECT_EQ(shown.size(), 2U * 61U);
}

}  // namespace
