#include "app/CommandLine.h"

#include <gtest/gtest.h>

#include "locale/Locale.h"

namespace {

using Kivora::CommandLine;
using Action = CommandLine::Action;

CommandLine Parse(const QStringList& arguments) {
    Kivora::SetLocale("en_US", false);
    return CommandLine::Parse(QStringList("kivora") + arguments);
}

std::string GetRefusal(const QStringList& arguments) {
    return Parse(arguments).refusal.toStdString();
}

}  // namespace

TEST(CommandLine, WithoutArgumentsThereIsAWindow) {
    const CommandLine line = Parse({});
    EXPECT_EQ(line.action, Action::kPlay);
    EXPECT_TRUE(line.refusal.isEmpty());
    EXPECT_TRUE(line.outputPort.isEmpty() && line.preset.isEmpty() && line.soundFont.isEmpty());
}

TEST(CommandLine, TakesTheChoicesOfARun) {
    const CommandLine line = Parse({"--output", "Software synthesizer", "--input=Keys", "--preset", "Grand Piano",
                                    "--sound-font", "a.sf2", "--locale", "ru_RU"});
    EXPECT_EQ(line.refusal, "");
    EXPECT_EQ(line.action, Action::kPlay);
    EXPECT_EQ(line.outputPort, "Software synthesizer");
    EXPECT_EQ(line.inputPort, "Keys");
    EXPECT_EQ(line.preset, "Grand Piano");
    EXPECT_EQ(line.soundFont, "a.sf2");
    EXPECT_EQ(line.locale, "ru_RU");
}

TEST(CommandLine, OpensTheFileOfAPreset) {
    EXPECT_EQ(Parse({"/a/Grand Piano.kivoraLXPreset"}).file, "/a/Grand Piano.kivoraLXPreset");
    EXPECT_EQ(Parse({"Grand Piano"}).file, "Grand Piano") << "a file and no name";
    EXPECT_EQ(Parse({"Grand Piano"}).preset, "");
    EXPECT_EQ(Parse({"Grand Piano"}).refusal, "");
    EXPECT_EQ(Parse({"a.mid"}).file, "a.mid");
}

TEST(CommandLine, AFileAloneMayGoToTheProgramThatRuns) {
    EXPECT_TRUE(Parse({"a.kivoraLXPreset"}).mayHandOver);
    EXPECT_FALSE(Parse({}).mayHandOver);
    EXPECT_FALSE(Parse({"--preset", "a.kivoraLXPreset"}).mayHandOver);
    for (const char* option : {"--output", "--input", "--sound-font", "--locale", "--demo", "--pictures"}) {
        EXPECT_FALSE(Parse({option, "x", "a.kivoraLXPreset"}).mayHandOver) << option;
    }
    EXPECT_FALSE(Parse({"--new", "a.kivoraLXPreset"}).mayHandOver);
    EXPECT_EQ(Parse({"--new", "a.kivoraLXPreset"}).file, "a.kivoraLXPreset");
    EXPECT_EQ(GetRefusal({"--new"}), "") << "as without";
    EXPECT_EQ(GetRefusal({"--new", "--check"}), "--check and --new do not go together.");
}

TEST(CommandLine, KnowsTheRunsThatNeedNoWindow) {
    EXPECT_EQ(Parse({"--help"}).action, Action::kHelp);
    EXPECT_EQ(Parse({"-h"}).action, Action::kHelp);
    EXPECT_EQ(Parse({"--help-all"}).action, Action::kHelp);
    EXPECT_EQ(Parse({"-v"}).action, Action::kVersion);
    EXPECT_EQ(Parse({"--list-ports"}).action, Action::kListPorts);
    const CommandLine render = Parse({"--preset", "a", "--render", "in.mid", "OUT.WAV"});
    EXPECT_EQ(render.action, Action::kRender);
    EXPECT_EQ(render.refusal, "");
    EXPECT_EQ(render.renderFrom, "in.mid");
    EXPECT_EQ(render.renderTo, "OUT.WAV");
    for (const char* target : {"a.mid", "a.MIDI", "a.wav"}) {
        EXPECT_EQ(GetRefusal({"--render", "in.mid", target}), "") << target;
    }
}

TEST(CommandLine, PassesOverTheOptionsOfTheWindowSystem) {
    const CommandLine line = Parse(
        {"-platform", "offscreen", "--style=fusion", "-reverse", "--preset", "a", "-display", ":1", "-platform=xcb"});
    EXPECT_EQ(line.refusal, "");
    EXPECT_EQ(line.preset, "a");
    EXPECT_EQ(GetRefusal({"--list-ports", "--", "-platform"}), "\"-platform\" is one argument too many.");
}

TEST(CommandLine, SaysWhatIsWrong) {
    EXPECT_EQ(GetRefusal({"--nonsense"}), "Unknown option 'nonsense'.");
    EXPECT_EQ(GetRefusal({"--output"}), "Missing value after '--output'.");
    EXPECT_EQ(GetRefusal({"--list-ports=yes"}), "Unexpected value after '--list-ports'.");
    EXPECT_EQ(GetRefusal({"--output", ""}), "The value of --output is empty.");
    EXPECT_EQ(GetRefusal({"a.kivoraLXPreset", "b"}), "\"b\" is one argument too many.");
    EXPECT_EQ(GetRefusal({"--preset", "a", "b"}), "\"b\" is one argument too many.");
    EXPECT_EQ(GetRefusal({"--list-ports", "b"}), "\"b\" is one argument too many.");
    EXPECT_EQ(GetRefusal({"--render", "a.mid"}), "--render needs the name of the file to write.");
    EXPECT_EQ(GetRefusal({"--render", "a.mid", "b.wav", "c.wav"}), "\"c.wav\" is one argument too many.");
    EXPECT_EQ(GetRefusal({"--render", "a.mid", "b.ogg"}),
              "The file to write, \"b.ogg\", ends neither in .wav nor in .mid.");
    EXPECT_EQ(GetRefusal({"--render", "a.mid", "b.wav", "--output", "x"}), "--render and --output do not go together.");
    EXPECT_EQ(GetRefusal({"--list-ports", "--preset", "x"}), "--list-ports and --preset do not go together.");
    EXPECT_EQ(GetRefusal({"--locale", "xx_XX", "--list-ports"}), "There is no language \"xx_XX\" here.");
    for (const char* known : {"ru", "ru_UA", "en_GB", "en"}) {
        EXPECT_EQ(GetRefusal({"--locale", known}), "");
    }
    EXPECT_EQ(GetRefusal({"--demo", "a", "--pictures", "b"}), "--demo and --pictures do not go together.");
}
