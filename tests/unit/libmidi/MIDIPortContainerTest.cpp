#include "libmidi/MIDIPortContainer.h"

#include <gtest/gtest.h>

#include "support/FakePorts.h"

namespace {

using namespace LibMidi;
using KivoraTest::CFakeInPort;
using KivoraTest::CFakeOutPort;

template <class Port, class... Args>
Port* Append(MIDIPortContainerImpl& ports, Args... args) {
    auto port = std::make_unique<Port>(args...);
    Port* raw = port.get();
    ports.Append(std::move(port));
    return raw;
}

TEST(MIDIPortContainer, AnIteratorOverNoListThrows) {
    try {
        MIDIPortIterator iterator(nullptr);
        FAIL();
    } catch (const CMIDIException& exception) {
        EXPECT_STREQ(exception.GetMessage(), L"Null MIDI port list in port iterator");
    }
}

TEST(MIDIPortContainer, TheIteratorWalksTheListInOrder) {
    MIDIPortContainerImpl ports;
    MIDIPort* a = Append<CFakeOutPort>(ports, L"a");
    MIDIPort* b = Append<CFakeInPort>(ports, L"b");
    MIDIPortIterator iterator(&ports);
    ASSERT_TRUE(iterator.HasNext());
    EXPECT_EQ(iterator.Next(), a);
    EXPECT_EQ(iterator.Next(), b);
    EXPECT_FALSE(iterator.HasNext());
}

TEST(MIDIPortContainer, APortOutsideTheListIsNull) {
    MIDIPortContainerImpl ports;
    EXPECT_EQ(ports.GetPort(0), nullptr);
    Append<CFakeOutPort>(ports, L"a");
    EXPECT_EQ(ports.GetCount(), 1U);
    EXPECT_EQ(ports.GetPort(1), nullptr);
    ports.Clear();
    EXPECT_EQ(ports.GetCount(), 0U);
}

TEST(MIDIPortContainer, WhereNoPortHasANameOneThatHadItIsFound) {
    class COldName : public CFakeOutPort {
    public:
        explicit COldName(const wchar_t* name) : MIDIPortImpl(0, NK::CString(name), kOutput), CFakeOutPort(name) {}
        bool HadName(const NK::CString& name) const override { return name == L"old"; }
    };
    MIDIPortContainerImpl ports;
    auto* renamed = Append<COldName>(ports, L"new");
    EXPECT_EQ(ports.FindOutputByName(L"old"), renamed);
    EXPECT_EQ(ports.FindOutputByName(L"new"), renamed);
    EXPECT_EQ(ports.FindInputByName(L"old"), nullptr);
    auto* named = Append<CFakeOutPort>(ports, L"old");
    EXPECT_EQ(ports.FindOutputByName(L"old"), named);
}

TEST(MIDIPortContainer, TheFirstPortIsOneThatIsNotOpenUnlessAllowed) {
    MIDIPortContainerImpl ports;
    auto* out1 = Append<CFakeOutPort>(ports, L"o1");
    auto* in1 = Append<CFakeInPort>(ports, L"i1");
    auto* out2 = Append<CFakeOutPort>(ports, L"o2");
    auto* in2 = Append<CFakeInPort>(ports, L"i2");
    EXPECT_EQ(ports.FindFirstInput(false), in1);
    EXPECT_EQ(ports.FindFirstOutput(false), out1);
    in1->Open();
    out1->Open();
    EXPECT_EQ(ports.FindFirstInput(false), in2);
    EXPECT_EQ(ports.FindFirstOutput(false), out2);
    EXPECT_EQ(ports.FindFirstInput(true), in1);
    EXPECT_EQ(ports.FindFirstOutput(true), out1);
    in2->Open();
    out2->Open();
    EXPECT_EQ(ports.FindFirstInput(false), nullptr);
    EXPECT_EQ(ports.FindFirstOutput(false), nullptr);
}

TEST(MIDIPortContainer, TheFindersByNameFindOpenPortsToo) {
    MIDIPortContainerImpl ports;
    auto* out = Append<CFakeOutPort>(ports, L"same name");
    auto* in = Append<CFakeInPort>(ports, L"same name");
    in->Open();
    out->Open();
    EXPECT_EQ(ports.FindInputByName(L"same name"), in);
    EXPECT_EQ(ports.FindOutputByName(L"same name"), out);
    EXPECT_EQ(ports.FindInputByName(L"Same name"), nullptr);
    EXPECT_EQ(ports.FindOutputByName(L"same"), nullptr);
}

TEST(MIDIPortContainer, TheFirstOfEqualNamesIsFound) {
    MIDIPortContainerImpl ports;
    auto* first = Append<CFakeOutPort>(ports, L"x");
    Append<CFakeOutPort>(ports, L"x");
    EXPECT_EQ(ports.FindOutputByName(L"x"), first);
}

TEST(MIDIPortContainer, TheFindersSkipUnavailablePorts) {
    MIDIPortContainerImpl ports;
    Append<CFakeOutPort>(ports, L"x", kOutput | kUnavailableFlag);
    Append<CFakeInPort>(ports, L"x", kInput | kUnavailableFlag);
    EXPECT_EQ(ports.FindFirstInput(true), nullptr);
    EXPECT_EQ(ports.FindFirstOutput(true), nullptr);
    EXPECT_EQ(ports.FindInputByName(L"x"), nullptr);
    EXPECT_EQ(ports.FindOutputByName(L"x"), nullptr);
    auto* good = Append<CFakeOutPort>(ports, L"x");
    EXPECT_EQ(ports.FindOutputByName(L"x"), good);
    EXPECT_EQ(ports.FindFirstOutput(false), good);
}

TEST(MIDIPortContainer, ANullEntryIsSkippedByTheFindersAndGivenByTheIterator) {
    MIDIPortContainerImpl ports;
    ports.Append(nullptr);
    auto* out = Append<CFakeOutPort>(ports, L"x");
    EXPECT_EQ(ports.FindFirstOutput(false), out);
    EXPECT_EQ(ports.FindOutputByName(L"x"), out);
    MIDIPortIterator iterator(&ports);
    EXPECT_EQ(iterator.Next(), nullptr);
    ports.CloseAll();
}

TEST(MIDIPortContainer, ClosingAllClosesEveryOpenPort) {
    MIDIPortContainerImpl ports;
    auto* out = Append<CFakeOutPort>(ports, L"o");
    auto* shut = Append<CFakeOutPort>(ports, L"shut");
    auto* in = Append<CFakeInPort>(ports, L"i");
    in->Open();
    out->Open();
    ports.CloseAll();
    EXPECT_EQ(in->GetFlags(), std::uint32_t{kInput});
    EXPECT_EQ(out->GetFlags(), std::uint32_t{kOutput});
    EXPECT_EQ(shut->device.closeCount, 0);
}

}  // namespace
