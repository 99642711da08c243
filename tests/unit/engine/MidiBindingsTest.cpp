// What is bound on MIDI keyboards: the table, its file, and the knob that takes a value over.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>

#include "engine/files/MidiBindingsFile.h"
#include "engine/SoftTakeover.h"
#include "support/Files.h"
#include "support/TemporaryFolder.h"

using namespace KivoraTest;
using Kivora::EPanelFunction;
using Kivora::MidiBinding;
using Kivora::MidiBindings;
using Kivora::MidiControl;
using Kivora::SoftTakeover;
using Kivora::StoredBindings;
using Kivora::WriteBindings;
using Kind = MidiControl::Kind;
using State = StoredBindings::State;

namespace {

MidiBinding Knob(const wchar_t* device, std::uint8_t number, EPanelFunction function) {
    return {device, {Kind::kController, 0, number}, function, false};
}

MidiBindings SomeBindings() {
    MidiBindings bindings;
    EXPECT_TRUE(bindings.Bind(Knob(L"Knobs", 21, EPanelFunction::kVolume1)));
    EXPECT_TRUE(bindings.Bind({L"Knobs", {Kind::kController, 2, 22}, EPanelFunction::kRecord, true}));
    EXPECT_TRUE(bindings.Bind({L"Pads: [10] = \x266B", {Kind::kNote, 9, 36}, EPanelFunction::kPanic, false}));
    EXPECT_TRUE(bindings.Bind({L"Pads: [10] = \x266B", {Kind::kProgram, 15, 127}, EPanelFunction::kSplit, false}));
    return bindings;
}

/// In whatever order.
bool IsSame(const MidiBindings& one, const MidiBindings& other) {
    return std::is_permutation(one.GetAll().begin(), one.GetAll().end(), other.GetAll().begin(), other.GetAll().end());
}

class BindingsFile : public testing::Test {
protected:
    void Put(const std::string& text) { std::ofstream(native, std::ios::binary) << text; }
    std::string Get() { return ReadFileBytes(native); }
    StoredBindings Read() { return StoredBindings::Read(path); }

    CTemporaryFolder folder;
    const std::filesystem::path native = folder / "MidiBindings.ini";
    const NK::CString path = NK::CString::FromUtf8(native.native());
};

}  // namespace

TEST(MidiBindings, OfADeviceAControlHasOneFunctionAndAFunctionOneControl) {
    MidiBindings bindings = SomeBindings();
    const std::size_t count = bindings.GetAll().size();
    EXPECT_TRUE(bindings.Bind(Knob(L"Knobs", 30, EPanelFunction::kVolume1)));
    EXPECT_EQ(bindings.GetAll().size(), count);
    EXPECT_EQ(bindings.Find(L"Knobs", {Kind::kController, 0, 21}), nullptr);
    EXPECT_TRUE(bindings.Bind(Knob(L"Knobs", 30, EPanelFunction::kTempo)));
    EXPECT_EQ(bindings.GetAll().size(), count);
    EXPECT_EQ(bindings.Find(L"Knobs", {Kind::kController, 0, 30})->function, EPanelFunction::kTempo);
}

TEST(MidiBindings, TheSameKnobOfTwoDevicesIsTwoControls) {
    MidiBindings bindings;
    EXPECT_TRUE(bindings.Bind(Knob(L"One", 21, EPanelFunction::kVolume1)));
    EXPECT_TRUE(bindings.Bind(Knob(L"Two", 21, EPanelFunction::kTempo)));
    EXPECT_EQ(bindings.Find(L"One", {Kind::kController, 0, 21})->function, EPanelFunction::kVolume1);
    EXPECT_EQ(bindings.Find(L"Two", {Kind::kController, 0, 21})->function, EPanelFunction::kTempo);
    EXPECT_EQ(bindings.Find(L"Two", {Kind::kController, 1, 21}), nullptr);
    EXPECT_EQ(bindings.Find(L"Two", {Kind::kNote, 0, 21}), nullptr);
}

TEST(MidiBindings, WhatPlayingNeedsIsNotBoundNorAValueToAButton) {
    MidiBindings bindings;
    for (const int reserved : {64, 66, 69, 120, 121, 122, 123, 124, 125, 126, 127}) {
        EXPECT_FALSE(bindings.Bind(Knob(L"Knobs", static_cast<std::uint8_t>(reserved), EPanelFunction::kPanic)))
            << reserved;
    }
    EXPECT_FALSE(bindings.Bind({L"Pads", {Kind::kNote, 9, 36}, EPanelFunction::kTempo, false}));
    EXPECT_FALSE(bindings.Bind({L"Pads", {Kind::kProgram, 9, 36}, EPanelFunction::kVolume2, false}));
    EXPECT_FALSE(bindings.Bind(Knob(L" \n", 21, EPanelFunction::kPanic)));
    EXPECT_TRUE(bindings.IsEmpty());
    EXPECT_TRUE(bindings.Bind({L"Pads", {Kind::kNote, 9, 64}, EPanelFunction::kPanic, false})) << "a note is no pedal";
}

TEST(MidiBindings, WhatIsTakenOverReplacesItsDevicesAlone) {
    MidiBindings bindings = SomeBindings();
    MidiBindings others;
    others.Bind(Knob(L"Knobs", 40, EPanelFunction::kTempo));
    EXPECT_EQ(bindings.TakeOver(others), 1U);
    EXPECT_EQ(bindings.GetAll().size(), 3U);
    EXPECT_NE(bindings.Find(L"Knobs", {Kind::kController, 0, 40}), nullptr);
    EXPECT_EQ(bindings.Find(L"Knobs", {Kind::kController, 0, 21}), nullptr);
    EXPECT_NE(bindings.Find(L"Pads: [10] = \x266B", {Kind::kNote, 9, 36}), nullptr);
}

TEST(MidiBindings, WhatIsTakenOverIsCountedAsFarAsThereIsRoom) {
    MidiBindings others;
    others.Bind(Knob(L"One", 1, EPanelFunction::kTempo));
    others.Bind(Knob(L"Two", 1, EPanelFunction::kTempo));
    MidiBindings bindings;
    for (std::size_t device = 0; device < MidiBindings::kMost - 1; ++device) {
        const NK::CString name = NK::CString(L"Device ") + NK::CString::FromInt(static_cast<std::int32_t>(device));
        ASSERT_TRUE(bindings.Bind(Knob(name.c_str(), 1, EPanelFunction::kTempo)));
    }
    EXPECT_EQ(bindings.TakeOver(others), 1U);
    EXPECT_EQ(bindings.GetAll().size(), std::size_t{MidiBindings::kMost});
}

TEST_F(BindingsFile, IsReadableAndReadsBackTheSame) {
    ASSERT_TRUE(WriteBindings(SomeBindings(), path));
    EXPECT_EQ(Get(),
              "; Controls of MIDI keyboards that work the panel: a section for each device.\n"
              "\n"
              "[Knobs]\n"
              "Controller 21 on channel 1=Volume1\n"
              "Controller 22 on channel 3=Record latching\n"
              "\n"
              "[Pads: [10] = \u266B]\n"
              "Note 36 on channel 10=Panic\n"
              "Program 127 on channel 16=SplitKeys\n");
    EXPECT_EQ(Read().state, State::kWhole);
    EXPECT_EQ(Read().bindings, SomeBindings());
    ASSERT_TRUE(WriteBindings(MidiBindings(), path));
    EXPECT_EQ(Read().state, State::kWhole);
    EXPECT_TRUE(Read().bindings.IsEmpty());
}

TEST_F(BindingsFile, GivesWhatIsWholeOfADamagedOne) {
    Put("[Knobs]\n"
        "Controller 21 on channel 1=Volume1\n"
        "Controller 128 on channel 1=Tempo\n"
        "Controller 22 on channel 17=Tempo\n"
        "Controller 22 on channel 0=Tempo\n"
        "Controller 64 on channel 1=Panic\n"
        "Controller -1 on channel 1=Panic\n"
        "Controller 2x on channel 1=Panic\n"
        "Controller 23 on channel 1=Explode\n"
        "Controller 24 on channel 1=Panic quickly\n"
        "Controller 25 on channel 1=\n"
        "Controller 21 on channel 1=Tempo\n"
        "Note 36 on channel 1=Volume2\n"
        "Knob 26 on channel 1=Panic\n"
        "Controller 27 on ch\n"
        "[Broken\n"
        "Controller 28 on channel 1=Panic\n"
        "[Pads]\n"
        "note 36 ON Channel 10 = record  LATCHING \n");
    const StoredBindings stored = Read();
    EXPECT_EQ(stored.state, State::kPartly);
    EXPECT_EQ(stored.refused, 15U);
    ASSERT_EQ(stored.bindings.GetAll().size(), 2U);
    EXPECT_EQ(stored.bindings.GetAll()[0], Knob(L"Knobs", 21, EPanelFunction::kVolume1));
    EXPECT_EQ(stored.bindings.GetAll()[1], (MidiBinding{L"Pads", {Kind::kNote, 9, 36}, EPanelFunction::kRecord, true}));
}

TEST_F(BindingsFile, TellsWhatHoldsNothing) {
    EXPECT_EQ(Read().state, State::kAbsent);
    Put(std::string(100, '\0'));
    EXPECT_EQ(Read().state, State::kDamaged);
    Put("\x89PNG\r\n\x1A\n");
    EXPECT_EQ(Read().state, State::kDamaged);
    Put("[Kivora]\nTempo=120\n");
    EXPECT_EQ(Read().state, State::kDamaged);
    Put(std::string(2 * 1024 * 1024, '['));
    EXPECT_EQ(Read().state, State::kDamaged);
    std::filesystem::remove(native);
    std::filesystem::create_directory(native);
    EXPECT_EQ(Read().state, State::kUnreadable);
}

TEST_F(BindingsFile, ACutOneGivesWhatStandsBefore) {
    ASSERT_TRUE(WriteBindings(SomeBindings(), path));
    const std::string whole = Get();
    for (std::size_t size = 0; size < whole.size(); ++size) {
        Put(whole.substr(0, size));
        const MidiBindings read = Read().bindings;
        for (const MidiBinding& binding : read.GetAll()) {
            const MidiBindings originals = SomeBindings();
            const MidiBinding* const original = originals.Find(binding.device, binding.control);
            ASSERT_NE(original, nullptr) << size;
            ASSERT_EQ(original->function, binding.function) << size;
        }
    }
}

TEST_F(BindingsFile, RandomDamageGivesOnlyWhatCanBeBound) {
    ASSERT_TRUE(WriteBindings(SomeBindings(), path));
    const std::string whole = Get();
    std::mt19937 random(5);
    for (int i = 0; i < 2000; ++i) {
        std::string text = whole;
        for (unsigned changes = random() % 8; changes > 0; --changes) {
            text[random() % text.size()] = static_cast<char>(random());
        }
        Put(text);
        MidiBindings again;
        const MidiBindings read = Read().bindings;
        for (const MidiBinding& binding : read.GetAll()) {
            ASSERT_TRUE(again.Bind(binding)) << text;
        }
        ASSERT_EQ(again, read);
    }
}

TEST_F(BindingsFile, AChangeKeepsWhatAnotherProgramHasBound) {
    Kivora::MidiBindingsFile one(path);
    Kivora::MidiBindingsFile other(path);
    EXPECT_EQ(one.Load(), State::kAbsent);
    EXPECT_EQ(other.Load(), State::kAbsent);
    NK::CString setAside;
    EXPECT_TRUE(one.Change([](auto& all) { all.Bind(Knob(L"One", 1, EPanelFunction::kTempo)); }, setAside));
    EXPECT_TRUE(other.Change([](auto& all) { all.Bind(Knob(L"Two", 2, EPanelFunction::kTempo)); }, setAside));
    EXPECT_TRUE(setAside.IsEmpty());
    EXPECT_EQ(Read().bindings.GetAll().size(), 2U);
    EXPECT_EQ(other.Get(), Read().bindings);
}

TEST_F(BindingsFile, CommentsAndWhatANewerVersionWroteStayWhereTheyAre) {
    Put("# My rig: keep\n"
        "[Knobs]\n"
        "  ; the left one = volume\n"
        "  # and no more\n"
        "Controller 21 on channel 1 = Volume1\n"
        "Controller 22 on channel 1=Glide slowly\n"
        "Controller 23 on channel 1=Tempo\n"
        "\n"
        "; the stage's\n"
        "[Pads]\n"
        "Note 36 on channel 10=Panic\n");
    Kivora::MidiBindingsFile file(path);
    EXPECT_EQ(file.Load(), State::kNewer);
    EXPECT_EQ(Read().refused, 1U);
    NK::CString setAside;
    EXPECT_TRUE(file.Change(
        [](auto& all) {
            all.Bind(Knob(L"Knobs", 24, EPanelFunction::kTempo));
            all.Bind(Knob(L"Others", 1, EPanelFunction::kPanic));
        },
        setAside));
    EXPECT_TRUE(setAside.IsEmpty());
    EXPECT_EQ(Get(),
              "# My rig: keep\n"
              "[Knobs]\n"
              "  ; the left one = volume\n"
              "  # and no more\n"
              "Controller 21 on channel 1 = Volume1\n"
              "Controller 22 on channel 1=Glide slowly\n"
              "Controller 24 on channel 1=Tempo\n"
              "\n"
              "; the stage's\n"
              "[Pads]\n"
              "Note 36 on channel 10=Panic\n"
              "\n"
              "[Others]\n"
              "Controller 1 on channel 1=Panic\n");
    EXPECT_TRUE(file.Change([](auto& all) { all.Bind(Knob(L"Knobs", 22, EPanelFunction::kPanic)); }, setAside));
    EXPECT_EQ(Get().find("Glide"), std::string::npos) << "the control is bound to something else now";
    EXPECT_EQ(Read().state, State::kWhole);
    EXPECT_TRUE(IsSame(Read().bindings, file.Get()));
    EXPECT_TRUE(file.Change([](auto& all) { all = {}; }, setAside));
    EXPECT_TRUE(Read().bindings.IsEmpty());
    EXPECT_NE(Get().find("# My rig: keep"), std::string::npos);
}

TEST_F(BindingsFile, WhateverIsBoundAndClearedInPlaceReadsBackTheSame) {
    constexpr std::array kNames = {L"One", L"Two [2]", L"Three = 3"};
    std::mt19937 random(3);
    const auto below = [&random](int limit) { return static_cast<int>(random() % static_cast<unsigned>(limit)); };
    Put("; first\n[Two [2]]\n; inside\n\n[One]\nNote 1 on channel 1=Glide\n; last");
    Kivora::MidiBindingsFile file(path);
    EXPECT_EQ(file.Load(), State::kNewer);
    for (int i = 0; i < 100; ++i) {
        NK::CString setAside;
        const auto function = static_cast<EPanelFunction>(below(Kivora::kPanelFunctions));
        ASSERT_TRUE(file.Change(
            [&](auto& all) {
                if (below(3) == 0) {
                    all.Clear(function);
                } else if (below(4) == 0) {
                    all.SetLatching(function, below(2) == 0);
                } else {
                    all.Bind(Knob(kNames[static_cast<std::size_t>(below(3))], static_cast<std::uint8_t>(below(60)),
                                  function));
                }
            },
            setAside));
        ASSERT_EQ(setAside, L"");
        ASSERT_EQ(Read().state, State::kNewer);
        ASSERT_TRUE(IsSame(Read().bindings, file.Get()));
    }
    for (const char* kept : {"; first", "; inside", "; last", "Note 1 on channel 1=Glide"}) {
        EXPECT_NE(Get().find(kept), std::string::npos) << kept;
    }
}

TEST_F(BindingsFile, ADamagedOneIsKeptUnderAnotherName) {
    const std::string damaged = "[Knobs]\nController 21 on channel 1=Volume1\nController 22 on chan\n";
    Put(damaged);
    Kivora::MidiBindingsFile file(path);
    EXPECT_EQ(file.Load(), State::kPartly);
    NK::CString setAside;
    EXPECT_TRUE(file.Change([](auto& all) { all.Bind(Knob(L"Knobs", 2, EPanelFunction::kTempo)); }, setAside));
    EXPECT_EQ(ReadFileBytes(std::filesystem::path(setAside.ToUtf8())), damaged);
    EXPECT_EQ(Read().state, State::kWhole);
    EXPECT_EQ(Read().bindings.GetAll().size(), 2U);
}

TEST_F(BindingsFile, WhatCannotBeSavedIsInForceAndSavedLater) {
    std::filesystem::create_directory(native);  // which cannot be read as a file
    Kivora::MidiBindingsFile file(path);
    EXPECT_EQ(file.Load(), State::kUnreadable);
    NK::CString setAside;
    EXPECT_FALSE(file.Change([](auto& all) { all.Bind(Knob(L"Knobs", 1, EPanelFunction::kTempo)); }, setAside));
    EXPECT_EQ(file.Get().GetAll().size(), 1U);
    std::filesystem::remove(native);
    EXPECT_TRUE(file.Change([](auto& all) { all.Bind(Knob(L"Knobs", 2, EPanelFunction::kVolume1)); }, setAside));
    EXPECT_EQ(Read().bindings.GetAll().size(), 2U);
}

TEST_F(BindingsFile, WhatWasClearedWhileItCouldNotBeSavedStaysCleared) {
    const auto bind = [](std::uint8_t controller, EPanelFunction function) {
        return [=](MidiBindings& all) { all.Bind(Knob(L"Knobs", controller, function)); };
    };
    Kivora::MidiBindingsFile file(path);
    Kivora::MidiBindingsFile other(path);
    NK::CString setAside;
    EXPECT_TRUE(file.Change(bind(1, EPanelFunction::kTempo), setAside));
    EXPECT_TRUE(file.Change(bind(2, EPanelFunction::kVolume1), setAside));
    const std::filesystem::path aside = native.string() + ".aside";
    std::filesystem::rename(native, aside);
    std::filesystem::create_directory(native);
    EXPECT_FALSE(file.Change([](auto& all) { all.Clear(EPanelFunction::kTempo); }, setAside));
    EXPECT_FALSE(file.Change(bind(3, EPanelFunction::kVolume1), setAside));
    std::filesystem::remove(native);
    std::filesystem::rename(aside, native);
    EXPECT_TRUE(other.Change(bind(4, EPanelFunction::kVolume2), setAside));
    EXPECT_TRUE(file.Change(bind(5, EPanelFunction::kPanic), setAside));
    MidiBindings expected;
    bind(4, EPanelFunction::kVolume2)(expected);
    bind(3, EPanelFunction::kVolume1)(expected);
    bind(5, EPanelFunction::kPanic)(expected);
    EXPECT_TRUE(IsSame(file.Get(), expected));
    EXPECT_TRUE(IsSame(Read().bindings, expected));
}

TEST_F(BindingsFile, WhatCouldNotBeReadForAWhileStaysBesideWhatWasBoundMeanwhile) {
    std::filesystem::create_directory(native);
    Kivora::MidiBindingsFile file(path);
    EXPECT_EQ(file.Load(), State::kUnreadable);
    NK::CString setAside;
    EXPECT_FALSE(file.Change([](auto& all) { all.Bind(Knob(L"Knobs", 1, EPanelFunction::kTempo)); }, setAside));
    std::filesystem::remove(native);
    EXPECT_TRUE(Kivora::WriteBindings(SomeBindings(), path));
    const std::size_t stored = Read().bindings.GetAll().size();
    EXPECT_TRUE(file.Change([](auto& all) { all.Bind(Knob(L"Others", 2, EPanelFunction::kTempo)); }, setAside));
    EXPECT_GE(Read().bindings.GetAll().size(), stored + 1);
    EXPECT_NE(Read().bindings.Find(L"Knobs", {Kind::kController, 0, 1}), nullptr) << "bound meanwhile";
    EXPECT_EQ(Read().bindings.GetAll().size(), file.Get().GetAll().size());
}

TEST(SoftTakeover, AKnobCatchesAValueWhenItPassesIt) {
    SoftTakeover knob;
    EXPECT_EQ(knob.Move(10, 64, 1, 127), std::nullopt);
    EXPECT_FALSE(knob.HasCaught(64));
    EXPECT_EQ(knob.Move(40, 64, 1, 127), std::nullopt);
    EXPECT_EQ(knob.Move(70, 64, 1, 127), 70);
    EXPECT_TRUE(knob.HasCaught(70));
    EXPECT_EQ(knob.Move(20, 70, 1, 127), 21);
    EXPECT_EQ(knob.Move(0, 21, 1, 127), 1);
    EXPECT_EQ(knob.Move(127, 1, 1, 127), 127);
}

TEST(SoftTakeover, AKnobThatStandsAtTheValueHasItAtOnce) {
    SoftTakeover knob;
    EXPECT_EQ(knob.Move(63, 64, 1, 127), 64);
    SoftTakeover other;
    EXPECT_EQ(other.Move(56, 120, 40, 220), 119) << "no place of the knob is at 120";
}

TEST(SoftTakeover, AKnobLetsGoOfWhatSomebodyElseHasChanged) {
    SoftTakeover knob;
    EXPECT_EQ(knob.Move(63, 64, 1, 127), 64);
    EXPECT_EQ(knob.Move(66, 100, 1, 127), std::nullopt);
    EXPECT_EQ(knob.Move(99, 100, 1, 127), 99) << "one step before it";
    knob.LetGo();
    EXPECT_EQ(knob.Move(20, 99, 1, 127), std::nullopt) << "where it was before counts no more";
    EXPECT_EQ(knob.Move(127, 99, 1, 127), 127);
}

TEST(SoftTakeover, ASweepMovesEachValueWithoutAJump) {
    for (int current = 40; current <= 220; ++current) {
        SoftTakeover knob;
        int value = current;
        for (int position = 0; position <= 127; ++position) {
            if (const auto next = knob.Move(position, value, 40, 220)) {
                ASSERT_LE(std::abs(*next - value), 4) << current;
                value = *next;
            }
        }
        ASSERT_EQ(value, 220) << current;
    }
}
