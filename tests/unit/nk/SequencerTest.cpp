// The listing of the sequencer's ports.
#include "nk/platform/platform_sequencer.h"

#include <gtest/gtest.h>

#include <fstream>
#include <string>

#include "support/TemporaryFolder.h"

namespace {

using NK::Platform::ParseSequencerPorts;
using NK::Platform::SequencerAddress;
using NK::Platform::SequencerPort;

constexpr const char* kListing =
    "Client info\n"
    "  cur  clients : 4\n"
    "  peak clients : 4\n"
    "  max  clients : 192\n"
    "\n"
    "Client   0 : \"System\" [Kernel Legacy]\n"
    "  Port   0 : \"Timer\" (Rwe-)\n"
    "  Port   1 : \"Announce\" (R-e-)\n"
    "    Connecting To: 15:0\n"
    "Client  20 : \"Keys: \"quoted\"\" [Kernel]\n"
    "  Port   0 : \"Keys (R \"MIDI\" 1\" (RWeX) [In/Out]\n"
    "    Connecting To: 128:0[r:0], 129:3[ex]\n"
    "    Connected From: 14:0\n"
    "  Port  11 : \"Private\" (rw--)\n"
    "Client 128 : \"Client-128\" [User Legacy]\n"
    "  Port   0 : \"\" (-We-)\n"
    "  Output pool :\n"
    "    Pool size          : 500\n";

TEST(SequencerListing, NamesRightsAndConnectionsAreRead) {
    const std::vector<SequencerPort> ports = ParseSequencerPorts(kListing);
    ASSERT_EQ(ports.size(), 5U);
    EXPECT_EQ(ports[0].name, "Timer");
    EXPECT_TRUE(ports[0].sends);
    EXPECT_FALSE(ports[0].receives);
    EXPECT_EQ(ports[1].address, (SequencerAddress{0, 1}));
    EXPECT_EQ(ports[1].listeners, (std::vector<SequencerAddress>{{15, 0}}));
    EXPECT_EQ(ports[2].address, (SequencerAddress{20, 0}));
    EXPECT_EQ(ports[2].name, "Keys (R \"MIDI\" 1");
    EXPECT_TRUE(ports[2].sends);
    EXPECT_TRUE(ports[2].receives);
    EXPECT_EQ(ports[2].listeners, (std::vector<SequencerAddress>{{128, 0}, {129, 3}}));
    EXPECT_EQ(ports[2].senders, (std::vector<SequencerAddress>{{14, 0}}));
    EXPECT_EQ(ports[3].address, (SequencerAddress{20, 11}));
    EXPECT_FALSE(ports[3].sends);
    EXPECT_FALSE(ports[3].receives);
    EXPECT_EQ(ports[4].address, (SequencerAddress{128, 0}));
    EXPECT_EQ(ports[4].name, "");
    EXPECT_FALSE(ports[4].sends);
    EXPECT_TRUE(ports[4].receives);
}

TEST(SequencerListing, WhatIsNoListingHasNoPorts) {
    EXPECT_TRUE(ParseSequencerPorts("").empty());
    EXPECT_TRUE(ParseSequencerPorts("  Port   0 : \"of no client\" (RWeX)\n").empty());
    EXPECT_TRUE(ParseSequencerPorts("Client x : \"?\"\n  Port 0 : \"a\" (RWeX)\n").empty());
    EXPECT_TRUE(ParseSequencerPorts("Client 1 : \"?\"\n  Port x : \"a\" (RWeX)\n  Port 1 : a\n").empty());
    EXPECT_TRUE(ParseSequencerPorts("    Connecting To: 1:2\n").empty());
    const auto cut = ParseSequencerPorts("Client 1 : \"?\"\n  Port 0 : \"a\"\n    Connecting To: 1:, 2");
    ASSERT_EQ(cut.size(), 1U);
    EXPECT_FALSE(cut[0].sends || cut[0].receives);
    EXPECT_TRUE(cut[0].listeners.empty());
    const auto cutInItsRights = ParseSequencerPorts("Client 1 : \"?\"\n  Port 0 : \"a\"(");
    ASSERT_EQ(cutInItsRights.size(), 1U);
    EXPECT_FALSE(cutInItsRights[0].sends || cutInItsRights[0].receives);
}

TEST(SequencerAccess, IsWhatTheSystemLetsOneDo) {
    const KivoraTest::CTemporaryFolder folder;
    const std::string device = (folder / "seq").string();
    EXPECT_EQ(NK::Platform::LookAtSequencer(device.c_str()), NK::Platform::SequencerAccess::kAbsent);
    std::ofstream(device) << "x";
    EXPECT_EQ(NK::Platform::LookAtSequencer(device.c_str()), NK::Platform::SequencerAccess::kGranted);
    EXPECT_EQ(NK::Platform::LookAtSequencer(folder.GetPath().c_str()), NK::Platform::SequencerAccess::kFailed)
        << "a folder";
}

}  // namespace
