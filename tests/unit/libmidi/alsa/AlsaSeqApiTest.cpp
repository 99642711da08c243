// The wrapper over the real library, on whatever this machine has.
#include "libmidi/alsa/AlsaSeqApi.h"

#include <gtest/gtest.h>

#include "libmidi/alsa/AlsaClient.h"
#include "libmidi/alsa/AlsaEvents.h"

namespace {

using namespace LibMidi;

TEST(AlsaSeqApi, WithoutASequencerTheOpeningFailsAndPrintsNothing) {
    testing::internal::CaptureStderr();
    snd_seq_t* sequencer = nullptr;
    const int result = RealAlsaSeqApi().Open(&sequencer);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    if (result >= 0) {
        EXPECT_EQ(RealAlsaSeqApi().Close(sequencer), 0);
        GTEST_SKIP() << "this machine has a sequencer";
    }
    const AlsaClient client;
    EXPECT_FALSE(client.IsOpen());
}

TEST(AlsaSeqApi, OnTheSequencerWhatIsSentToAConnectionArrives) {
    AlsaSeqApi& api = RealAlsaSeqApi();
    snd_seq_t* sequencer = nullptr;
    if (api.Open(&sequencer) < 0) {
        GTEST_SKIP() << "this machine has no ALSA sequencer";
    }
    EXPECT_EQ(api.SetClientName(sequencer, "Kivora test"), 0);
    EXPECT_EQ(api.SetClientPoolInput(sequencer, 2000), 0);
    EXPECT_EQ(api.SetInputBufferSize(sequencer, 56028), 0);
    EXPECT_EQ(api.GetPollDescriptors(sequencer).size(), 1U);
    const auto client = static_cast<unsigned char>(api.GetClientId(sequencer));
    const auto create = [&](const char* name, unsigned int capabilities) {
        return snd_seq_addr_t{client, static_cast<unsigned char>(api.CreateSimplePort(sequencer, name, capabilities,
                                                                                      SND_SEQ_PORT_TYPE_MIDI_GENERIC))};
    };
    const snd_seq_addr_t out = create("out", SND_SEQ_PORT_CAP_READ);
    const snd_seq_addr_t in = create("in", SND_SEQ_PORT_CAP_WRITE);
    EXPECT_LT(api.GetPortSubscription(sequencer, out, in), 0);
    EXPECT_EQ(api.SubscribePort(sequencer, out, in), 0);
    EXPECT_LT(api.SubscribePort(sequencer, out, in), 0) << "a second time";
    EXPECT_EQ(api.GetPortSubscription(sequencer, out, in), 0);
    AlsaClientInfo clientInfo;
    clientInfo.client = client - 1;
    ASSERT_GE(api.QueryNextClient(sequencer, clientInfo), 0);
    EXPECT_EQ(clientInfo.client, client);
    EXPECT_EQ(clientInfo.name, "Kivora test");
    AlsaPortInfo portInfo;
    ASSERT_GE(api.QueryNextPort(sequencer, client, -1, portInfo), 0);
    EXPECT_EQ(portInfo.name, "out");
    EXPECT_EQ(portInfo.capabilities, unsigned{SND_SEQ_PORT_CAP_READ});
    ASSERT_GE(api.GetAnyPortInfo(sequencer, in, portInfo), 0);
    EXPECT_EQ(portInfo.name, "in");
    snd_seq_event_t event{};
    ASSERT_TRUE(FillEvent({0, 0x91, 60, 100}, event));
    event.source = out;
    event.dest = in;
    event.queue = SND_SEQ_QUEUE_DIRECT;
    EXPECT_GE(api.EventOutputDirect(sequencer, &event), 0);
    snd_seq_event_t* arrived = nullptr;
    ASSERT_GE(api.EventInput(sequencer, &arrived), 0);
    EXPECT_EQ(arrived->type, SND_SEQ_EVENT_NOTEON);
    EXPECT_EQ(arrived->data.note.channel, 1);
    EXPECT_EQ(arrived->dest.port, in.port);
    EXPECT_EQ(api.EventInput(sequencer, &arrived), -EAGAIN);
    EXPECT_EQ(api.DeleteSimplePort(sequencer, in.port), 0);
    EXPECT_LT(api.EventOutputDirect(sequencer, &event), 0) << "the receiver has gone";
    EXPECT_EQ(api.Close(sequencer), 0);
}

}  // namespace
