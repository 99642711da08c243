#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "libmidi/alsa/AlsaDeviceOutPort.h"
#include "libmidi/alsa/AlsaProgramsOutPort.h"
#include "unit/libmidi/alsa/AlsaRig.h"

namespace {

using namespace LibMidi;
using namespace LibMidiTest;
using testing::IsEmpty;

const MIDIEvent kNote{0, 0x90, 60, 100};
const MIDIEvent kSysex{0, 0xF0, 1, 2};

class AlsaOutPorts : public testing::Test {
protected:
    AlsaOutPorts() {
        rig.Plug(20, "Synth");
        device.SetPlace(snd_seq_addr_t{20, 0});
    }

    CAlsaRig rig;
    AlsaDeviceOutPort device{rig.client, L"Synth"};
    AlsaProgramsOutPort programs{rig.client};
};

TEST_F(AlsaOutPorts, ADeviceIsConnectedAndWrittenToAtOnce) {
    ASSERT_EQ(device.Open(), kSuccess);
    ASSERT_EQ(rig.api.FindOwnPorts("Output").size(), 1U);
    const int own = rig.api.FindOwnPorts("Output").front();
    EXPECT_TRUE(rig.api.HasConnection({CFakeAlsaSeq::kOwnClient, own}, {20, 0}));
    EXPECT_EQ(device.Write(&kNote, 1), kSuccess);
    EXPECT_EQ(device.Write(&kSysex, 1), kSuccess);
    const auto sent = rig.api.TakeSent();
    ASSERT_EQ(sent.size(), 1U);
    EXPECT_EQ(sent[0].type, SND_SEQ_EVENT_NOTEON);
    EXPECT_EQ(sent[0].queue, SND_SEQ_QUEUE_DIRECT);
    EXPECT_EQ(sent[0].source.port, own);
    EXPECT_EQ(sent[0].dest.client, 20);
    EXPECT_EQ(sent[0].dest.port, 0);
    EXPECT_EQ(device.Close(), kSuccess);
    EXPECT_THAT(rig.api.FindOwnPorts("Output"), IsEmpty());
}

TEST_F(AlsaOutPorts, ADeviceThatHasGoneRefusesAndIsOpenedAgainWhenItIsBack) {
    ASSERT_EQ(device.Open(), kSuccess);
    EXPECT_EQ(device.LookAtDevice(), DeviceState::kWorks);
    rig.Unplug(20);
    EXPECT_EQ(device.Write(&kNote, 1), kDeviceError);
    EXPECT_EQ(device.LookAtDevice(), DeviceState::kLost);
    rig.Plug(20, "Synth");
    EXPECT_EQ(device.LookAtDevice(), DeviceState::kBack);
    device.Close();
    ASSERT_EQ(device.Open(), kSuccess);
    EXPECT_EQ(device.LookAtDevice(), DeviceState::kWorks);
    EXPECT_EQ(device.Write(&kNote, 1), kSuccess);
}

TEST_F(AlsaOutPorts, ADeviceThatRefusedAndIsThereIsToBeOpenedAgain) {
    ASSERT_EQ(device.Open(), kSuccess);
    rig.api.outputResult = -EAGAIN;
    EXPECT_EQ(device.Write(&kNote, 1), kDeviceError);
    EXPECT_EQ(device.LookAtDevice(), DeviceState::kBack);
}

TEST_F(AlsaOutPorts, ADeviceThatRefusesTheConnectionDoesNotOpen) {
    rig.api.subscribeResult = -EBUSY;
    EXPECT_EQ(device.Open(), kDeviceError);
    EXPECT_THAT(rig.api.FindOwnPorts("Output"), IsEmpty());
}

TEST_F(AlsaOutPorts, OtherProgramsAreWrittenToThroughThePublicPort) {
    EXPECT_EQ(programs.LookAtDevice(), DeviceState::kBack) << "it can be opened";
    ASSERT_EQ(programs.Open(), kSuccess);
    EXPECT_EQ(programs.LookAtDevice(), DeviceState::kWorks);
    EXPECT_EQ(programs.Write(&kNote, 1), kSuccess);
    const auto sent = rig.api.TakeSent();
    ASSERT_EQ(sent.size(), 1U);
    EXPECT_EQ(sent[0].source.port, rig.client->GetPublicSender().port);
    EXPECT_EQ(sent[0].dest.client, SND_SEQ_ADDRESS_SUBSCRIBERS);
    EXPECT_EQ(sent[0].queue, SND_SEQ_QUEUE_DIRECT);
    EXPECT_EQ(programs.Write(&kSysex, 1), kSuccess);
    EXPECT_EQ(programs.Close(), kSuccess);
}

TEST_F(AlsaOutPorts, AProgramThatDoesNotTakeItIsNoFailure) {
    ASSERT_EQ(programs.Open(), kSuccess);
    rig.api.outputResult = -EAGAIN;
    EXPECT_EQ(programs.Write(&kNote, 1), kSuccess);
    rig.api.FailInput(-ENODEV);
    rig.client->RunInputRound();
    EXPECT_EQ(programs.Write(&kNote, 1), kDeviceError) << "the sequencer itself has failed";
    EXPECT_EQ(programs.LookAtDevice(), DeviceState::kLost);
}

TEST_F(AlsaOutPorts, AClientThatIsGoneFailsEveryWriteAndIsNotSaidToBeBack) {
    for (const int gone : {-EBADFD, -EBADF}) {
        CAlsaRig other;
        other.Plug(20, "Synth");
        AlsaProgramsOutPort otherPrograms(other.client);
        AlsaDeviceOutPort otherDevice(other.client, NK::CString(L"Synth"));
        otherDevice.SetPlace(snd_seq_addr_t{20, 0});
        ASSERT_EQ(otherPrograms.Open(), kSuccess);
        ASSERT_EQ(otherDevice.Open(), kSuccess);
        other.api.outputResult = gone;
        EXPECT_EQ(otherPrograms.Write(&kNote, 1), kDeviceError) << gone;
        EXPECT_EQ(otherDevice.Write(&kNote, 1), kDeviceError) << gone;
        EXPECT_FALSE(other.client->Works()) << gone;
        EXPECT_EQ(otherPrograms.LookAtDevice(), DeviceState::kLost) << gone;
        EXPECT_EQ(otherDevice.LookAtDevice(), DeviceState::kLost) << gone;
    }
}

TEST_F(AlsaOutPorts, AReceiverWithoutItsDeviceFailsItsOwnWritesAlone) {
    ASSERT_EQ(device.Open(), kSuccess);
    ASSERT_EQ(programs.Open(), kSuccess);
    rig.api.outputResult = -ENODEV;
    EXPECT_EQ(device.Write(&kNote, 1), kDeviceError);
    EXPECT_TRUE(rig.client->Works());
    rig.api.outputResult = 0;
    EXPECT_EQ(programs.Write(&kNote, 1), kSuccess);
}

}  // namespace
