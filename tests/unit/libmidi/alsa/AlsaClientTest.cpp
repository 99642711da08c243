// The program on the sequencer, with the rounds called by hand.
#include "libmidi/alsa/AlsaClient.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>

#include "libmidi/alsa/AlsaNames.h"
#include "support/VirtualTime.h"
#include "unit/libmidi/alsa/FakeAlsaSeq.h"

namespace {

using namespace LibMidi;
using namespace LibMidiTest;
using testing::ElementsAre;
using testing::IsEmpty;

class AlsaClientTest : public testing::Test {
protected:
    std::unique_ptr<AlsaClient> MakeClient() {
        return std::make_unique<AlsaClient>(api, time, AlsaClient::Threads::kByHand);
    }

    CFakeAlsaSeq api;
    KivoraTest::CVirtualTime time;
};

/// Keeps the order of what it is told.
struct CReceiver : AlsaReceiver {
    void Take(const std::vector<snd_seq_event_t>& events) override {
        told.push_back("take " + std::to_string(events.size()));
    }
    void TakeLoss() override { told.push_back("loss"); }
    void TakeNews() override { told.push_back("news"); }
    void Deliver() override { told.push_back("deliver"); }
    std::vector<std::string> TakeTold() { return std::exchange(told, {}); }
    std::vector<std::string> told;
};

struct CWatcher : AlsaWatcher {
    void OnNews() override { ++news; }
    int news = 0;
};

TEST_F(AlsaClientTest, ItHasItsNameAndTwoPortsThatOthersConnect) {
    const auto client = MakeClient();
    ASSERT_TRUE(client->IsOpen());
    EXPECT_TRUE(client->Works());
    EXPECT_EQ(api.GetClientName(), "Kivora LX");
    ASSERT_EQ(api.FindOwnPorts("Kivora LX out").size(), 1U);
    ASSERT_EQ(api.FindOwnPorts("Kivora LX in").size(), 1U);
    EXPECT_EQ(api.GetCapabilities(client->GetPublicSender().port), kSending);
    EXPECT_EQ(api.GetCapabilities(client->GetPublicReceiver().port), kReceiving);
    EXPECT_EQ(api.lastType,
              unsigned{SND_SEQ_PORT_TYPE_MIDI_GENERIC | SND_SEQ_PORT_TYPE_SOFTWARE | SND_SEQ_PORT_TYPE_APPLICATION});
    EXPECT_EQ(api.poolSize, 2000U);
    EXPECT_GT(api.bufferSize, api.poolSize * sizeof(snd_seq_event_t));
}

TEST_F(AlsaClientTest, TheNextInstanceHasANumber) {
    api.Plug(130, "Kivora LX", 0, "Kivora LX out", kSending);
    const auto client = MakeClient();
    EXPECT_EQ(api.GetClientName(), "Kivora LX (2)");
}

TEST_F(AlsaClientTest, OfTwoThatStartInOneMomentTheLaterClientTakesTheNumber) {
    api.rival = 127;
    const auto later = MakeClient();
    EXPECT_EQ(api.GetClientName(), "Kivora LX (2)");
}

TEST_F(AlsaClientTest, TheEarlierOfTwoKeepsTheName) {
    api.rival = 129;
    const auto client = MakeClient();
    EXPECT_EQ(api.GetClientName(), "Kivora LX");
}

TEST_F(AlsaClientTest, WithoutASequencerNothingIsThere) {
    api.openResult = -ENOENT;
    const auto client = MakeClient();
    EXPECT_FALSE(client->IsOpen());
    EXPECT_FALSE(client->Works());
    EXPECT_THAT(client->ListPorts(), IsEmpty());
    EXPECT_FALSE(client->IsThere({0, 1}));
}

TEST_F(AlsaClientTest, WhereAPortOrItsConnectionCannotBeMadeItIsAsWithoutASequencer) {
    for (int ports = 0; ports < 3; ++ports) {
        api.createsLeft = ports;
        EXPECT_FALSE(MakeClient()->IsOpen()) << ports;
    }
    api.createsLeft = 1000;
    api.subscribeResult = -EPERM;
    EXPECT_FALSE(MakeClient()->IsOpen());
    EXPECT_EQ(api.opened, api.closed);
}

TEST_F(AlsaClientTest, ListedIsWhatOthersMayConnectButNotTheSystemsAndItsOwn) {
    api.Plug(14, "Midi Through", 0, "Midi Through Port-0", kSending | kReceiving);
    api.Plug(20, "Keys", 0, "Keys MIDI 1", kSending);
    api.Plug(20, "Keys", 1, "Keys MIDI 2", kReceiving);
    api.Plug(21, "Hidden", 0, "Hidden", kSending | SND_SEQ_PORT_CAP_NO_EXPORT);
    api.Plug(22, "Private", 0, "Private", SND_SEQ_PORT_CAP_READ | SND_SEQ_PORT_CAP_WRITE);
    const auto client = MakeClient();
    std::vector<std::string> listed;
    for (const AlsaListedPort& port : client->ListPorts()) {
        listed.push_back(AlsaNames::Compose(port) + (port.sends ? " sends" : "") + (port.receives ? " receives" : ""));
    }
    EXPECT_THAT(listed, ElementsAre("Midi Through Port-0 sends receives", "Keys MIDI 1 sends", "Keys MIDI 2 receives"));
    EXPECT_TRUE(client->IsThere({20, 1}));
    EXPECT_FALSE(client->IsThere({20, 2}));
}

TEST_F(AlsaClientTest, APortIsListedUnderTheNamesOfItsClientAndItsOwn) {
    EXPECT_EQ(AlsaNames::Compose({{}, "Keys", "Keys MIDI 1"}), "Keys MIDI 1");
    EXPECT_EQ(AlsaNames::Compose({{}, "FLUID Synth (1)", "Synth input port"}), "FLUID Synth (1): Synth input port");
    EXPECT_EQ(AlsaNames::Compose({{}, "Keys", ""}), "Keys");
}

TEST_F(AlsaClientTest, OtherInstancesAreKnownByTheirClientsName) {
    EXPECT_TRUE(AlsaNames::IsOwnKind({{}, "Kivora LX", ""}));
    EXPECT_TRUE(AlsaNames::IsOwnKind({{}, "Kivora LX (2)", ""}));
    EXPECT_FALSE(AlsaNames::IsOwnKind({{}, "Kivora LXX", ""}));
}

TEST_F(AlsaClientTest, WhatArrivesInOneWakeUpIsHandedOnInOrder) {
    const auto client = MakeClient();
    CReceiver receiver;
    client->AddReceiver(receiver);
    const CFakeAlsaSeq::Address in{128, client->GetPublicReceiver().port};
    api.SendTo({20, 0}, in, NoteOn(60));
    api.SendTo({20, 0}, in, NoteOn(62));
    EXPECT_FALSE(client->RunInputRound());
    EXPECT_THAT(receiver.TakeTold(), ElementsAre("take 2", "deliver"));
    client->RemoveReceiver(receiver);
}

TEST_F(AlsaClientTest, AnOverrunStandsBetweenTheEventsAndIsNews) {
    const auto client = MakeClient();
    CReceiver receiver;
    CWatcher watcher;
    client->AddReceiver(receiver);
    client->AddWatcher(watcher);
    const CFakeAlsaSeq::Address in{128, client->GetPublicReceiver().port};
    api.SendTo({20, 0}, in, NoteOn(60));
    api.FailInput(-ENOSPC);
    api.FailInput(-EINTR);
    api.SendTo({20, 0}, in, NoteOn(62));
    client->RunInputRound();
    EXPECT_THAT(receiver.TakeTold(), ElementsAre("take 1", "loss", "take 1", "news", "deliver"));
    EXPECT_EQ(watcher.news, 1);
    EXPECT_TRUE(client->Works());
    client->RemoveReceiver(receiver);
    client->RemoveWatcher(watcher);
}

TEST_F(AlsaClientTest, DevicesThatComeAndGoAreNewsOnceAWakeUpAndWhatItDoesItselfIsNone) {
    const auto client = MakeClient();
    CWatcher watcher;
    client->AddWatcher(watcher);
    for (const auto type : {SND_SEQ_EVENT_CLIENT_START, SND_SEQ_EVENT_CLIENT_EXIT, SND_SEQ_EVENT_CLIENT_CHANGE,
                            SND_SEQ_EVENT_PORT_START, SND_SEQ_EVENT_PORT_EXIT, SND_SEQ_EVENT_PORT_CHANGE}) {
        const int before = watcher.news;
        api.Announce(type, {CFakeAlsaSeq::kOwnClient, 0});
        client->RunInputRound();
        EXPECT_EQ(watcher.news, before) << type;
        api.Announce(type, {20, 0});
        api.Announce(type, {20, 1});
        client->RunInputRound();
        EXPECT_EQ(watcher.news, before + 1) << type;
    }
    const int before = watcher.news;
    api.AnnounceCut({20, 0}, {21, 0});
    client->RunInputRound();
    EXPECT_EQ(watcher.news, before);
    api.AnnounceCut({20, 0}, {CFakeAlsaSeq::kOwnClient, 0});
    client->RunInputRound();
    api.AnnounceCut({CFakeAlsaSeq::kOwnClient, 0}, {20, 0});
    client->RunInputRound();
    EXPECT_EQ(watcher.news, before + 2);
    client->RemoveWatcher(watcher);
}

TEST_F(AlsaClientTest, AFloodIsTakenInPartsSoThatTheThreadCanEnd) {
    const auto client = MakeClient();
    CReceiver receiver;
    client->AddReceiver(receiver);
    const std::pair<const CFakeAlsaSeq::Address, snd_seq_event_t> flood{{20, 0}, NoteOn(60)};
    api.flood = &flood;
    EXPECT_TRUE(client->RunInputRound());
    EXPECT_THAT(receiver.TakeTold(), ElementsAre("take 4096", "deliver"));
    client->RemoveReceiver(receiver);
}

TEST_F(AlsaClientTest, ASequencerThatFailsIsToldToEverybody) {
    const auto client = MakeClient();
    CReceiver receiver;
    CWatcher watcher;
    client->AddReceiver(receiver);
    client->AddWatcher(watcher);
    api.FailInput(-ENODEV);
    EXPECT_FALSE(client->RunInputRound());
    EXPECT_FALSE(client->Works());
    EXPECT_THAT(receiver.TakeTold(), ElementsAre("deliver", "news", "deliver"));
    EXPECT_EQ(watcher.news, 1);
    client->RemoveReceiver(receiver);
    client->RemoveWatcher(watcher);
}

TEST_F(AlsaClientTest, WhatIsConnectedAlreadyCountsAsConnected) {
    api.Plug(20, "Keys", 0, "Keys", kSending);
    const auto client = MakeClient();
    const snd_seq_addr_t keys{20, 0};
    EXPECT_FALSE(client->IsConnected(keys, client->GetPublicReceiver()));
    EXPECT_TRUE(client->Connect(keys, client->GetPublicReceiver()));
    EXPECT_TRUE(client->Connect(keys, client->GetPublicReceiver()));
    EXPECT_TRUE(client->IsConnected(keys, client->GetPublicReceiver()));
    EXPECT_FALSE(client->Connect({21, 0}, client->GetPublicReceiver()));
}

TEST_F(AlsaClientTest, ThePortsOfOpenDevicesAreNobodyElsesToConnect) {
    const auto client = MakeClient();
    const auto receiver = client->CreateReceiver();
    const auto sender = client->CreateSender();
    ASSERT_TRUE(receiver && sender);
    EXPECT_EQ(api.GetCapabilities(receiver->port), unsigned{SND_SEQ_PORT_CAP_WRITE | SND_SEQ_PORT_CAP_NO_EXPORT});
    EXPECT_EQ(api.GetCapabilities(sender->port), unsigned{SND_SEQ_PORT_CAP_READ | SND_SEQ_PORT_CAP_NO_EXPORT});
    client->DeletePort(*receiver);
    EXPECT_THAT(api.FindOwnPorts("Input"), IsEmpty());
    api.createsLeft = 0;
    EXPECT_FALSE(client->CreateReceiver());
}

}  // namespace
