// The real library, whether or not the machine has a sequencer.
#include "libmidi/portmidi/PortMidiApi.h"

#include <gtest/gtest.h>

#include "libmidi/portmidi/PortMIDIBackend.h"
#include "libmidi/portmidi/PortMIDIImpl.h"

namespace {

using namespace LibMidi;

TEST(PortMidiApi, TheLibraryStartsAndEndsAgainAndAgain) {
    for (int run = 0; run < 3; ++run) {
        const PortMIDIImpl set;
        EXPECT_EQ(set.GetPorts().GetCount(), static_cast<std::uint32_t>(RealPortMidiApi().CountDevices()));
    }
}

TEST(PortMidiApi, AStreamThatIsNotOpenIsAnErrorAndNoCrash) {
    const PortMIDIImpl set;
    PortMidiApi& api = RealPortMidiApi();
    PmEvent event{};
    PortMidiStream* stream = nullptr;
    EXPECT_EQ(api.Write(nullptr, &event, 1), pmBadPtr);
    EXPECT_EQ(api.Read(nullptr, &event, 1), pmBadPtr);
    EXPECT_EQ(api.Poll(nullptr), pmBadPtr);
    EXPECT_EQ(api.Close(nullptr), pmBadPtr);
    EXPECT_EQ(api.OpenInput(&stream, -1, nullptr, 0, nullptr, nullptr), pmInvalidDeviceId);
    EXPECT_EQ(api.OpenOutput(&stream, -1, nullptr, 0, nullptr, nullptr, 0), pmInvalidDeviceId);
    EXPECT_EQ(api.GetDeviceInfo(-1), nullptr);
}

TEST(PortMidiApi, TheBackendWorksInAFactoryWithOrWithoutDevices) {
    PortFactory factory({PortMIDIBackend()});
    ASSERT_TRUE(factory.Refresh());
    ASSERT_NE(factory.GetPortList(), nullptr);
    ASSERT_TRUE(factory.Rescan());
    EXPECT_EQ(factory.HasPorts(), factory.GetPortList()->GetCount() != 0);
}

}  // namespace
