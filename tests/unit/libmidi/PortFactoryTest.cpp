#include "libmidi/PortFactory.h"

#include <gtest/gtest.h>

#include <string>

#include "support/FakePorts.h"

namespace {

using namespace LibMidi;
using KivoraTest::CFakeInPort;
using KivoraTest::CFakeOutPort;

class CFakeSet : public MIDIPortsImpl {
public:
    CFakeSet(std::vector<std::string>& log, const char* name) : log_(log), name_(name) { log_.push_back("+" + name_); }
    ~CFakeSet() override { log_.push_back("-" + name_); }

    const MIDIPortContainer& GetPorts() const override { return ports; }
    MIDIInPort* GetDefaultInput() const override { return defaultInput; }
    MIDIOutPort* GetDefaultOutput() const override { return defaultOutput; }
    bool IsFixed() const override { return fixed; }
    bool StaysThroughRescan() const override { return fixed || stays; }
    void Update() override {
        if (stays) {
            log_.push_back("update " + name_);
            AddOutput(L"new");
        }
    }
    void TellOfDevices(std::function<void()> tell) override { log_.push_back(tell ? "tells " + name_ : "mute"); }

    CFakeOutPort* AddOutput(const wchar_t* name) {
        auto port = std::make_unique<CFakeOutPort>(name);
        CFakeOutPort* raw = port.get();
        ports.Append(std::move(port));
        return raw;
    }

    MIDIPortContainerImpl ports;
    MIDIInPort* defaultInput = nullptr;
    MIDIOutPort* defaultOutput = nullptr;
    bool fixed = false;
    bool stays = false;

private:
    std::vector<std::string>& log_;
    std::string name_;
};

class PortFactoryTest : public testing::Test {
protected:
    BackendCreator Backend(const char* name, std::vector<const wchar_t*> outputs, bool fixed = false,
                           bool hasDefaults = false) {
        return [=, this] {
            auto set = std::make_unique<CFakeSet>(log, name);
            set->fixed = fixed;
            for (const wchar_t* output : outputs) {
                set->AddOutput(output);
            }
            if (hasDefaults) {
                set->defaultOutput = set->ports.FindFirstOutput(true);
                set->ports.Append(std::make_unique<CFakeInPort>());
                set->defaultInput = set->ports.FindFirstInput(true);
            }
            return set;
        };
    }

    static std::vector<std::wstring> NamesOf(const PortFactory& factory) {
        std::vector<std::wstring> names;
        for (MIDIPortIterator iterator(factory.GetPortList()); iterator.HasNext();) {
            names.emplace_back(iterator.Next()->GetName().View());
        }
        return names;
    }

    std::vector<std::string> log;
};

std::unique_ptr<MIDIPortsImpl> FailWithNull() {
    return nullptr;
}
std::unique_ptr<MIDIPortsImpl> FailWithException() {
    throw CMIDIException(L"no such library");
}

TEST_F(PortFactoryTest, BeforeTheFirstRefreshThereIsNoList) {
    const PortFactory factory({Backend("a", {L"1"})});
    EXPECT_EQ(factory.GetPortList(), nullptr);
    EXPECT_FALSE(factory.HasPorts());
    EXPECT_EQ(factory.GetDefaultInput(), nullptr);
    EXPECT_EQ(factory.GetDefaultOutput(), nullptr);
    EXPECT_TRUE(log.empty());
}

TEST_F(PortFactoryTest, TheBackendsPortsAreJoinedInTheCreatorsOrder) {
    PortFactory factory({Backend("a", {L"1", L"2"}), Backend("b", {}), Backend("c", {L"3"})});
    ASSERT_TRUE(factory.Refresh());
    EXPECT_EQ(NamesOf(factory), (std::vector<std::wstring>{L"1", L"2", L"3"}));
    EXPECT_TRUE(factory.HasPorts());
    EXPECT_EQ(factory.GetPortList()->FindOutputByName(L"3"), factory.GetPortList()->GetPort(2));
    EXPECT_EQ(factory.GetPortList()->GetPort(3), nullptr);
}

TEST_F(PortFactoryTest, RefreshingDestroysTheOldSetsBeforeItMakesNewOnes) {
    PortFactory factory({Backend("a", {L"1"}), Backend("b", {L"2"})});
    factory.Refresh();
    factory.Refresh();
    EXPECT_EQ(log, (std::vector<std::string>{"+a", "+b", "-a", "-b", "+a", "+b"}));
}

TEST_F(PortFactoryTest, DestroyingTheFactoryDestroysEverySet) {
    {
        PortFactory factory({Backend("a", {L"1"}), Backend("b", {L"2"})});
        factory.Refresh();
        log.clear();
    }
    EXPECT_EQ(log, (std::vector<std::string>{"-a", "-b"}));
}

TEST_F(PortFactoryTest, ClearingDestroysTheSetsAndTheList) {
    PortFactory factory({Backend("a", {L"1"}, true)});
    factory.Refresh();
    factory.Clear();
    EXPECT_EQ(log.back(), "-a");
    EXPECT_EQ(factory.GetPortList(), nullptr);
    EXPECT_FALSE(factory.HasPorts());
}

TEST_F(PortFactoryTest, ABackendThatFailsIsLeftOut) {
    PortFactory factory({FailWithNull, Backend("a", {L"1"}), FailWithException});
    EXPECT_TRUE(factory.Refresh());
    EXPECT_EQ(NamesOf(factory), (std::vector<std::wstring>{L"1"}));
}

TEST_F(PortFactoryTest, OnlyWhenEveryBackendFailsTheRefreshFails) {
    PortFactory factory({FailWithNull, FailWithException});
    EXPECT_FALSE(factory.Refresh());
    EXPECT_EQ(factory.GetPortList(), nullptr);
    EXPECT_FALSE(factory.HasPorts());
    PortFactory without({});
    EXPECT_FALSE(without.Refresh());
}

TEST_F(PortFactoryTest, ASetWithoutPortsIsNoFailure) {
    PortFactory factory({Backend("a", {}), FailWithNull});
    EXPECT_TRUE(factory.Refresh());
    ASSERT_NE(factory.GetPortList(), nullptr);
    EXPECT_EQ(factory.GetPortList()->GetCount(), 0U);
    EXPECT_FALSE(factory.HasPorts());
}

TEST_F(PortFactoryTest, TheDefaultsAreTheFirstBackendsThatHasThem) {
    PortFactory factory(
        {FailWithNull, Backend("a", {L"1"}), Backend("b", {L"2"}, false, true), Backend("c", {L"3"}, false, true)});
    factory.Refresh();
    ASSERT_NE(factory.GetDefaultOutput(), nullptr);
    EXPECT_TRUE(factory.GetDefaultOutput()->GetName() == L"2");
    EXPECT_EQ(factory.GetDefaultInput(), factory.GetPortList()->FindFirstInput(true));
}

TEST_F(PortFactoryTest, ARescanLeavesAFixedSetWithItsOpenPorts) {
    PortFactory factory({Backend("devices", {L"1"}), Backend("built in", {L"2"}, true)});
    factory.Refresh();
    MIDIOutPort* kept = factory.GetPortList()->FindOutputByName(L"2");
    kept->Open();
    log.clear();
    ASSERT_TRUE(factory.Rescan());
    EXPECT_EQ(log, (std::vector<std::string>{"-devices", "+devices"}));
    EXPECT_EQ(NamesOf(factory), (std::vector<std::wstring>{L"1", L"2"}));
    EXPECT_EQ(factory.GetPortList()->FindOutputByName(L"2"), kept);
    EXPECT_NE(kept->GetFlags() & kOpen, 0U);
}

TEST_F(PortFactoryTest, ASetThatStaysIsUpdatedByARescanAndByAnUpdate) {
    PortFactory factory({Backend("devices", {L"1"}), [this] {
                             auto set = std::make_unique<CFakeSet>(log, "follows");
                             set->stays = true;
                             set->AddOutput(L"2");
                             return set;
                         }});
    factory.Update();
    EXPECT_EQ(factory.GetPortList(), nullptr) << "nothing is listed before the first refresh";
    factory.Refresh();
    MIDIOutPort* kept = factory.GetPortList()->FindOutputByName(L"2");
    EXPECT_TRUE(factory.StaysThroughRescan(kept));
    EXPECT_FALSE(factory.IsFixed(kept));
    EXPECT_FALSE(factory.StaysThroughRescan(factory.GetPortList()->FindOutputByName(L"1")));
    EXPECT_FALSE(factory.StaysThroughRescan(nullptr));
    kept->Open();
    log.clear();
    factory.Update();
    EXPECT_EQ(log, (std::vector<std::string>{"update follows"}));
    EXPECT_EQ(NamesOf(factory), (std::vector<std::wstring>{L"1", L"2", L"new"}));
    log.clear();
    ASSERT_TRUE(factory.Rescan());
    EXPECT_EQ(log, (std::vector<std::string>{"-devices", "update follows", "+devices"}));
    EXPECT_EQ(factory.GetPortList()->FindOutputByName(L"2"), kept);
    EXPECT_NE(kept->GetFlags() & kOpen, 0U);
}

TEST_F(PortFactoryTest, EverySetIsToldWhomToTellOfDevices) {
    PortFactory factory({Backend("a", {L"1"})});
    factory.TellOfDevices([] {});
    factory.Refresh();
    factory.Rescan();
    EXPECT_EQ(log, (std::vector<std::string>{"+a", "tells a", "-a", "+a", "tells a"}));
    log.clear();
    factory.TellOfDevices({});
    EXPECT_EQ(log, (std::vector<std::string>{"mute"}));
}

TEST_F(PortFactoryTest, ARescanTriesAFailedBackendAgain) {
    bool works = false;
    PortFactory factory({[&]() -> std::unique_ptr<MIDIPortsImpl> { return works ? Backend("a", {L"1"})() : nullptr; },
                         Backend("b", {L"2"}, true)});
    factory.Refresh();
    EXPECT_EQ(NamesOf(factory), (std::vector<std::wstring>{L"2"}));
    works = true;
    factory.Rescan();
    EXPECT_EQ(NamesOf(factory), (std::vector<std::wstring>{L"1", L"2"}));
}

TEST_F(PortFactoryTest, ARescanBeforeTheFirstRefreshIsARefresh) {
    PortFactory factory({Backend("a", {L"1"})});
    EXPECT_TRUE(factory.Rescan());
    EXPECT_EQ(NamesOf(factory), (std::vector<std::wstring>{L"1"}));
}

}  // namespace
