// The settings file.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "engine/EngineControls.h"
#include "support/FakeSynth.h"
#include "support/Files.h"
#include "support/FileSizeLimit.h"
#include "unit/engine/EngineRig.h"
#include "unit/nk/CommaLocale.h"

using namespace KivoraTest;
using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::IsSupersetOf;
using testing::Not;

namespace {

std::string ReadGolden() {
    return ReadFileBytes(std::filesystem::path(KIVORA_GOLDEN_DIR) / "engine/Kivora.ini");
}

std::string Repeat(const std::string& text, int count) {
    std::string repeated;
    for (int i = 0; i < count; ++i) {
        repeated += text;
    }
    return repeated;
}

class SettingsFile : public testing::Test {
protected:
    void Write(const std::string& bytes) { WriteFileBytes(path, bytes); }
    std::string Read() const { return ReadFileBytes(path); }
    /// Loads a section "Kivora" with these lines.
    bool Load(const std::string& keys) {
        Write("[Kivora]\n" + keys);
        return engine.LoadSettings();
    }
    bool IsBypassed(int index) {
        return engine.WithArpeggiator(index, [](auto& arpeggiator) { return arpeggiator.IsBypassed(); });
    }

    EngineRig rig;
    const std::filesystem::path path = rig.folder / "user/Kivora.ini";
    Kivora::CKivora& engine = rig.Create();
};

class SettingsUnderACommaLocale : public CCommaLocaleTest {};

/// Puts everything that the golden file holds into an engine.
void Arrange(Kivora::CKivora& engine) {
    engine.SetInputPortByName(kKeyboard);
    engine.SetOutputPortByName(kSynth);
    engine.SetVelocityLow(41);
    engine.SetVelocityNormal(81);
    engine.SetVelocityHigh(120);
    engine.SetTranslatePatchNames(false);
    engine.SetTranslateKeyNames(false);
    engine.SetShowNoteNames(true);
    engine.SetKeyboardColoring(2);
    engine.SetUIColor({0, 1, 2});
    engine.SetWallpaper("/home/Ирина/обои 1.png");
    engine.SetUIDisplayColor({83, 149, 255});
    engine.SetUIDisplay2Color({83, 255, 149});
    engine.SetSplit(true);
    engine.SetPatch(19, 0);
    engine.VolumeDown(0);
    engine.TransposeUp(1);
    engine.SetTempo(140);
    engine.WithArpeggiator(1, [](auto& arpeggiator) { arpeggiator.SetDirection(1); });
}

}  // namespace

TEST_F(SettingsFile, IsWrittenInItsOrderByteForByte) {
    Arrange(engine);
    EXPECT_TRUE(engine.SaveSettings());
    EXPECT_EQ(Read(), ReadGolden());
}

TEST_F(SettingsFile, TheWayOfTheComputerKeysIsKeptWhereItIsNotTheDefault) {
    using NK::Piano::EPCKeyWay;
    EXPECT_EQ(engine.GetPCKeyWay(), EPCKeyWay::kAutomatic);
    EXPECT_TRUE(engine.SaveSettings());
    EXPECT_EQ(Read().find("ComputerKeys"), std::string::npos);
    for (const EPCKeyWay way : {EPCKeyWay::kAsTyped, EPCKeyWay::kByPlace, EPCKeyWay::kAutomatic}) {
        engine.SetPCKeyWay(way);
        EXPECT_TRUE(engine.SaveSettings());
        engine.SetPCKeyWay(EPCKeyWay::kByPlace);
        EXPECT_TRUE(engine.LoadSettings());
        EXPECT_EQ(engine.GetPCKeyWay(), way);
    }
}

TEST_F(SettingsFile, AWayOfTheComputerKeysThatDoesNotExistIsTheDefault) {
    using NK::Piano::EPCKeyWay;
    for (const char* value : {"3", "-1", "typed", "", "99999999999999999999"}) {
        engine.SetPCKeyWay(EPCKeyWay::kByPlace);
        Write(std::string("[Kivora]\nComputerKeys=") + value + "\n");
        EXPECT_TRUE(engine.LoadSettings());
        EXPECT_EQ(engine.GetPCKeyWay(), EPCKeyWay::kAutomatic) << value;
    }
    Write("[Kivora]\nComputerKeys=1\n");
    EXPECT_TRUE(engine.LoadSettings());
    EXPECT_EQ(engine.GetPCKeyWay(), EPCKeyWay::kAsTyped);
}

TEST_F(SettingsFile, WhatIsWrittenIsReadBack) {
    Write(ReadGolden());
    EXPECT_TRUE(engine.LoadSettings());
    EXPECT_EQ(engine.GetInputPortName(), kKeyboard);
    EXPECT_EQ(engine.GetOutputPortName(), kSynth);
    EXPECT_EQ(engine.GetVelocityLow(), 41);
    EXPECT_EQ(engine.GetVelocityNormal(), 81);
    EXPECT_EQ(engine.GetVelocityHigh(), 120);
    EXPECT_FALSE(engine.GetTranslatePatchNames());
    EXPECT_FALSE(engine.GetTranslateKeyNames());
    EXPECT_TRUE(engine.GetShowNoteNames());
    EXPECT_EQ(engine.GetKeyboardColoring(), 2);
    EXPECT_EQ(engine.GetUIColor(), QColor(0, 1, 2));
    EXPECT_EQ(engine.GetUIDisplayColor(), QColor(83, 149, 255));
    EXPECT_EQ(engine.GetUIDisplay2Color(), QColor(83, 255, 149));
    EXPECT_EQ(engine.GetWallpaper(), "/home/Ирина/обои 1.png");
    EXPECT_TRUE(engine.IsSplit());
    EXPECT_FALSE(engine.IsDual());
    EXPECT_EQ(engine.GetPatch(0), 19);
    EXPECT_EQ(engine.GetVolume(0), 97);
    EXPECT_EQ(engine.GetTranspose(1), 1);
    EXPECT_EQ(engine.GetTempo(), 140);
    EXPECT_EQ(engine.WithArpeggiator(1, [](auto& arpeggiator) { return arpeggiator.GetDirection(); }), 1);
    EXPECT_TRUE(engine.SaveSettings());
    EXPECT_EQ(Read(), ReadGolden());
}

TEST_F(SettingsUnderACommaLocale, TheFileIsTheSame) {
    EngineRig rig;
    Kivora::CKivora& engine = rig.Create();
    Arrange(engine);
    engine.WithArpeggiator(0, [](auto& arpeggiator) { arpeggiator.SetDurationPercent(78.125); });
    ASSERT_TRUE(IsComma());
    EXPECT_TRUE(engine.SaveSettings());
    std::string expected = ReadGolden();
    expected.replace(expected.find("NoteLength=32"), 13, "NoteLength=12.5");
    EXPECT_EQ(ReadFileBytes(rig.folder / "user/Kivora.ini"), expected);
    engine.WithArpeggiator(0, [](auto& arpeggiator) { arpeggiator.SetDefaults(); });
    EXPECT_TRUE(engine.LoadSettings());
    EXPECT_EQ(engine.WithArpeggiator(0, [](auto& arpeggiator) { return arpeggiator.GetDurationPercent(); }), 78.125);
}

TEST_F(SettingsFile, TheDataFolderIsCreatedWhenItIsFirstAskedFor) {
    EXPECT_FALSE(std::filesystem::exists(path.parent_path()));
    EXPECT_EQ(engine.GetUserDataDir().ToUtf8(), path.parent_path().native());
    EXPECT_TRUE(std::filesystem::is_directory(path.parent_path()));
}

TEST_F(SettingsFile, SavingBringsTheDataFolderBackThatHasGone) {
    ASSERT_TRUE(engine.SaveSettings());
    std::filesystem::remove_all(path.parent_path());
    EXPECT_TRUE(engine.SaveSettings());
    EXPECT_TRUE(engine.LoadSettings());
}

TEST_F(SettingsFile, AMissingFileGivesEveryDefaultResetsTheSynthesizerAndReportsFalse) {
    Arrange(engine);
    engine.SetArpeggiating(true);
    engine.WithArpeggiator(0, [](auto& arpeggiator) { arpeggiator.SetBypassed(true); });
    rig.TakeWritten();
    EXPECT_FALSE(engine.LoadSettings());
    EXPECT_TRUE(engine.GetInputPortName().IsEmpty());
    EXPECT_TRUE(engine.GetOutputPortName().IsEmpty());
    EXPECT_EQ(engine.GetVelocityLow(), 40);
    EXPECT_EQ(engine.GetVelocityNormal(), 80);
    EXPECT_EQ(engine.GetVelocityHigh(), 127);
    EXPECT_TRUE(engine.GetTranslatePatchNames());
    EXPECT_TRUE(engine.GetTranslateKeyNames());
    EXPECT_FALSE(engine.GetShowNoteNames());
    EXPECT_EQ(engine.GetKeyboardColoring(), 0);
    EXPECT_EQ(engine.GetUIColor(), QColor(110, 112, 93));
    EXPECT_EQ(engine.GetUIDisplayColor(), QColor(83, 149, 255));
    EXPECT_EQ(engine.GetUIDisplay2Color(), QColor(83, 255, 149));
    EXPECT_TRUE(engine.GetWallpaper().isEmpty());
    EXPECT_FALSE(engine.IsSplit());
    EXPECT_EQ(engine.GetPatch(0), 19) << "a missing patch stays";
    EXPECT_EQ(engine.GetVolume(0), 100);
    EXPECT_EQ(engine.GetTempo(), 120);
    EXPECT_FALSE(engine.IsArpeggiating());
    EXPECT_FALSE(IsBypassed(0)) << "\"Bypass\" is missing like every other key";
    EXPECT_FALSE(IsBypassed(1));
    EXPECT_THAT(rig.TakeWritten(), Contains("ff"));
    EXPECT_FALSE(engine.AreSettingsDamaged());
    EXPECT_FALSE(std::filesystem::exists(path)) << "reading writes nothing";
}

TEST_F(SettingsFile, AnEmptyFileGivesEveryDefaultToo) {
    Write("");
    EXPECT_TRUE(engine.LoadSettings());
    EXPECT_EQ(engine.GetUIColor(), QColor(110, 112, 93));
    EXPECT_FALSE(IsBypassed(0));
}

TEST_F(SettingsFile, WithoutAKeyTheInterfaceColourIsItsDefault) {
    EXPECT_TRUE(Load("UIDisplayColorRGB=ff0000\n"));
    EXPECT_EQ(engine.GetUIColor(), QColor(110, 112, 93));
    EXPECT_EQ(engine.GetUIDisplayColor(), QColor(255, 0, 0));
}

TEST_F(SettingsFile, AColourThatIsUnreadableTakesItsDefault) {
    engine.SetUIColor({1, 1, 1});
    EXPECT_TRUE(Load("UIColorRGB=#ffffff\nUIDisplayColorRGB=fffffffffffff\nUIDisplay2ColorRGB=\n"));
    EXPECT_EQ(engine.GetUIColor(), QColor(110, 112, 93));
    EXPECT_EQ(engine.GetUIDisplayColor(), QColor(83, 149, 255));
    EXPECT_EQ(engine.GetUIDisplay2Color(), QColor(83, 255, 149));
}

TEST_F(SettingsFile, TheColour83_149_255IsWrittenAs5395ff) {
    engine.SetUIColor({83, 149, 255});
    EXPECT_TRUE(engine.SaveSettings());
    EXPECT_THAT(Read(), testing::HasSubstr("\nUIColorRGB=5395ff\n"));
}

TEST_F(SettingsFile, AColourThatDiffersIsAnnouncedAndOneThatDoesNotIsNot) {
    Load("");
    SignalLog signals_(engine);
    Load("");
    EXPECT_THAT(signals_.Take(), Not(Contains("UISkinChanged")));
    Load("UIColorRGB=010203\n");
    EXPECT_THAT(signals_.Take(), Contains("UISkinChanged").Times(1));
    Load("UIColorRGB=010203\nUIDisplayColorRGB=1\nUIDisplay2ColorRGB=2\nWallpaper=/w.png\n");
    EXPECT_THAT(signals_.Take(), Contains("UISkinChanged").Times(3));
}

TEST_F(SettingsFile, WhatIsLoadedIsToldInItsOrderNamesAndKeyboardInAnyCase) {
    Load("");
    SignalLog signals_(engine);
    const auto told = [&signals_] {
        std::vector<std::string> names = signals_.Take();
        names.erase(std::find(names.begin(), names.end(), "MetronomeChanged"), names.end());
        return names;
    };
    Load("");
    EXPECT_THAT(told(), ElementsAre("PatchChanged", "KeyTranslationSettingChanged", "KeyboardDisplayChanged",
                                    "KeyboardDisplayChanged"));
    Load("ComputerKeys=2\nUIColorRGB=010203\nWallpaper=/w.png\n");
    EXPECT_THAT(told(),
                ElementsAre("PatchChanged", "KeyTranslationSettingChanged", "KeyTranslationSettingChanged",
                            "KeyboardDisplayChanged", "KeyboardDisplayChanged", "UISkinChanged", "UISkinChanged"));
}

TEST_F(SettingsFile, SettersOfNamesAndKeyboardTellInAnyCaseTheOthersOfChanges) {
    engine.SetUIColor({1, 2, 3});
    SignalLog signals_(engine);
    engine.SetUIColor({1, 2, 3});
    engine.SetUIDisplayColor(engine.GetUIDisplayColor());
    engine.SetUIDisplay2Color(engine.GetUIDisplay2Color());
    engine.SetWallpaper(engine.GetWallpaper());
    engine.SetPCKeyWay(engine.GetPCKeyWay());
    EXPECT_THAT(signals_.Take(), IsEmpty());
    engine.SetTranslatePatchNames(true);
    engine.SetTranslateKeyNames(true);
    engine.SetShowNoteNames(false);
    engine.SetKeyboardColoring(0);
    EXPECT_THAT(signals_.Take(), ElementsAre("PatchChanged", "KeyTranslationSettingChanged", "KeyboardDisplayChanged",
                                             "KeyboardDisplayChanged"));
}

TEST_F(SettingsFile, OfSettingsThatAreChangedTogetherWhatDiffersIsToldWhenAllAreInForce) {
    SignalLog signals_(engine);
    QString seen;
    QObject::connect(&engine, &Kivora::CKivora::KeyboardDisplayChanged, &engine, [&] { seen = engine.GetWallpaper(); });
    engine.ChangeSettings([](Kivora::Settings& settings) {
        settings.wallpaper = "/w.png";
        settings.keyboardColoring = 2;
        settings.velocityLow = 1;
        settings.translateKeyNames = true;
    });
    EXPECT_THAT(signals_.Take(), ElementsAre("KeyboardDisplayChanged", "UISkinChanged"));
    EXPECT_EQ(seen, "/w.png");
    EXPECT_EQ(engine.GetKeyboardColoring(), 2);
    EXPECT_EQ(engine.GetSettings().velocityLow, 1);
    engine.ChangeSettings([](Kivora::Settings&) {});
    EXPECT_THAT(signals_.Take(), IsEmpty());
}

TEST_F(SettingsFile, BeforeAFileIsLoadedTheDisplayHasItsFirstColours) {
    EXPECT_EQ(engine.GetUIColor(), QColor(110, 112, 93));
    EXPECT_EQ(engine.GetUIDisplayColor(), QColor(200, 200, 255));
    EXPECT_EQ(engine.GetUIDisplay2Color(), QColor(200, 255, 200));
}

TEST_F(SettingsFile, VelocityLevelsAreKeptIn8BitsAsRead) {
    Load("VelocityLow=0\nVelocityNormal=200\nVelocityHigh=300\n");
    EXPECT_EQ(engine.GetVelocityLow(), 0);
    EXPECT_EQ(engine.GetVelocityNormal(), 200);
    EXPECT_EQ(engine.GetVelocityHigh(), 44);
}

TEST_F(SettingsFile, TheSynthesizerIsResetLastSoThatPatchesAndVolumesReachIt) {
    engine.SetOutputPortByName(kSynth);
    rig.TakeWritten();
    Load("Patch0=19\nVolume0=55\n");
    const std::vector<std::string> written = rig.TakeWritten();
    const auto reset = std::find(written.begin(), written.end(), "ff");
    ASSERT_NE(reset, written.end());
    EXPECT_THAT(std::vector(reset, written.end()), IsSupersetOf({"c0 13", "b0 07 37"}));
}

TEST_F(SettingsFile, NoArpeggiatorSectionBypassesThatArpeggiator) {
    Load("Arpeggiation=1\n[Kivora_Arpeggiator1]\n");
    EXPECT_TRUE(engine.IsArpeggiating());
    EXPECT_TRUE(IsBypassed(0));
    EXPECT_FALSE(IsBypassed(1));
}

TEST_F(SettingsFile, LinesThatAreNotOursStay) {
    Write("; mine\n[Kivora]\nFavourite=yes\n# note\nTempo = 99\n\n[Other]\nTempo=1\n");
    EXPECT_TRUE(engine.LoadSettings());
    EXPECT_EQ(engine.GetTempo(), 99);
    engine.SetTempo(100);
    EXPECT_TRUE(engine.SaveSettings());
    const std::string written = Read();
    EXPECT_EQ(written.find("; mine\n[Kivora]\n"), 0U);
    EXPECT_THAT(written, testing::HasSubstr("\nFavourite=yes\n# note\nTempo=100\n"));
    EXPECT_THAT(written, testing::HasSubstr("\n[Other]\nTempo=1\n"));
}

TEST_F(SettingsFile, ALineFeedInAValueIsNeverWrittenAsOne) {
    engine.SetWallpaper("/a\n[Kivora]\r\nTempo=200");
    EXPECT_TRUE(engine.SaveSettings());
    EXPECT_TRUE(engine.LoadSettings());
    EXPECT_EQ(engine.GetTempo(), 120);
    EXPECT_EQ(engine.GetWallpaper(), "/a [Kivora]  Tempo=200");
}

TEST_F(SettingsFile, AnOversizedFileGivesTheDefaultsAndIsSetAsideByTheFirstSave) {
    Write("[Kivora]\nTempo=99\n");
    std::filesystem::resize_file(path, std::uintmax_t{1} << 30);
    engine.SetTempo(55);
    EXPECT_FALSE(engine.LoadSettings());
    EXPECT_EQ(engine.GetTempo(), 120);
    EXPECT_TRUE(engine.AreSettingsDamaged());
    EXPECT_FALSE(std::filesystem::exists(path.native() + ".bad"));

    SignalLog signals_(engine);
    QString setAside;
    QObject::connect(&engine, &Kivora::CKivora::DamagedFileSetAside, [&](const QString& kept) { setAside = kept; });
    EXPECT_TRUE(engine.SaveSettings());
    EXPECT_THAT(signals_.Take(), ElementsAre("DamagedFileSetAside"));
    EXPECT_EQ(setAside.toStdString(), path.native() + ".bad");
    EXPECT_EQ(std::filesystem::file_size(path.native() + ".bad"), std::uintmax_t{1} << 30);
    EXPECT_FALSE(engine.AreSettingsDamaged());
    EXPECT_TRUE(engine.SaveSettings());
    EXPECT_THAT(signals_.Take(), IsEmpty());
    EXPECT_TRUE(engine.LoadSettings());
}

TEST_F(SettingsFile, HostileBytesLoadAsDefaultsOrClamp) {
    const std::string zero(1, '\0');
    const std::vector<std::string> contents = {
        "[Kivora]\nTempo=1e309\nPatch0=nan\nVolume0=99999999999999999999\nVelocityLow=-\n",
        "[Kivora]\nTempo=" + zero + "99\nDual=" + zero + "\n",
        "[Kivora]\n\xFF\xFE\xC3\x28=\xF8\nInput=\xFF\xFF\n",
        "[Kivora]\n" + std::string(1000000, 'k') + "=1\n",
        "[Kivora]\nWallpaper=" + std::string(1000000, 'w'),
        "\xEF\xBB\xBF[Kivora\n[[Kivora]]\n=\n==\n[",
        std::string(700000, '[') + "Kivora]",
        "[Kivora]\n" + Repeat("VelocityLow x\n", 49'000),
        Repeat("[a]\n", 1'000'000),
        "[Kivora]\n" + Repeat("Tempo=99\n", 49'000)};
    for (const std::string& content : contents) {
        Write(content);
        engine.LoadSettings();
        EXPECT_TRUE(engine.SaveSettings() || Read() == content);
        EXPECT_GE(engine.GetTempo(), Kivora::CKivora::kMinTempo);
        EXPECT_LE(engine.GetTempo(), Kivora::CKivora::kMaxTempo);
        for (int slot = 0; slot < 3; ++slot) {
            EXPECT_GE(engine.GetPatch(slot), -1);
            EXPECT_LE(engine.GetPatch(slot), 127);
            EXPECT_GE(engine.GetVolume(slot), 0);
            EXPECT_LE(engine.GetVolume(slot), 127);
        }
    }
}

TEST_F(SettingsFile, AFullDiskLeavesTheOldFileAndReportsFalse) {
    Arrange(engine);
    ASSERT_TRUE(engine.SaveSettings());
    engine.SetTempo(77);
    const auto before = TakeSnapshot(rig.folder.GetPath());
    for (const rlim_t room : {0U, 1U, 300U}) {
        const CFileSizeLimit limit(room);
        EXPECT_FALSE(engine.SaveSettings());
    }
    EXPECT_EQ(TakeSnapshot(rig.folder.GetPath()), before);
    EXPECT_TRUE(engine.SaveSettings());
}

TEST_F(SettingsFile, AFolderInItsPlaceIsNeitherReadNorReplaced) {
    std::filesystem::create_directories(path);
    EXPECT_FALSE(engine.LoadSettings());
    EXPECT_FALSE(engine.SaveSettings());
    EXPECT_TRUE(std::filesystem::is_directory(path));
}

TEST_F(SettingsFile, AFileOfAStrangerInPlaceOfTheFolderIsLeftAlone) {
    WriteFileBytes(path.parent_path(), "mine");
    EXPECT_FALSE(engine.LoadSettings());
    EXPECT_FALSE(engine.SaveSettings());
    EXPECT_EQ(ReadFileBytes(path.parent_path()), "mine");
}

TEST_F(SettingsFile, AGateOf0InTheFileIsRaisedByTheFront) {
    Write("[Kivora]\n[Kivora_Arpeggiator0]\nNoteLength=0\n[Kivora_Arpeggiator1]\n");
    Kivora::EngineControls controls(engine);
    EXPECT_TRUE(controls.LoadSettings());
    EXPECT_EQ(engine.WithArpeggiator(0, [](auto& arpeggiator) { return arpeggiator.GetDurationPercent(); }),
              Kivora::EngineControls::kSmallestGatePercent);
}

namespace {
class SynthSettingsInTheFile : public testing::Test {
protected:
    SynthSettingsInTheFile() { rig.synth = synth; }

    const std::shared_ptr<FakeSynth> synth = std::make_shared<FakeSynth>();
    EngineRig rig;
    const std::filesystem::path path = rig.folder / "user/Kivora.ini";
};
}  // namespace

TEST_F(SynthSettingsInTheFile, AreLoadedAndSavedInASectionOfTheirOwn) {
    Kivora::CKivora& engine = rig.Create();
    EXPECT_EQ(engine.GetSynth(), synth.get());
    synth->settings.gain = 0.25;
    synth->settings.soundFont = L"/fonts/grand.sf2";
    const LibMidi::SynthSettings expected = synth->settings;
    EXPECT_TRUE(engine.SaveSettings());
    EXPECT_THAT(ReadFileBytes(path),
                testing::HasSubstr("\n[Kivora_Synthesizer]\nChorus=1\nReverb=1\nGain=0.25\nLatencyFrames=512\n"
                                   "SoundFont=/fonts/grand.sf2\nAudioDriver=\n"));
    synth->settings = {};
    EXPECT_TRUE(engine.LoadSettings());
    EXPECT_EQ(synth->settings, expected);
}

TEST_F(SynthSettingsInTheFile, WithoutTheSectionTheyStayAsTheyAre) {
    synth->settings.gain = 0.25;
    rig.Create().LoadSettings();
    EXPECT_EQ(synth->settings.gain, 0.25);
}

TEST_F(SynthSettingsInTheFile, AMissingSoundFontDoesNotCostTheOtherSettingsAndIsNotForgotten) {
    synth->missingFont = L"/removable/grand.sf2";
    WriteFileBytes(path, "[Kivora_Synthesizer]\nSoundFont=/removable/grand.sf2\nGain=0.25\n");
    Kivora::CKivora& engine = rig.Create();
    engine.LoadSettings();
    EXPECT_EQ(synth->settings.gain, 0.25);
    EXPECT_TRUE(synth->settings.soundFont.IsEmpty());
    EXPECT_TRUE(engine.SaveSettings());
    EXPECT_THAT(ReadFileBytes(path), testing::HasSubstr("SoundFont=/removable/grand.sf2\n"));
    synth->settings.gain = 0.5;
    EXPECT_TRUE(engine.SaveSettings());
    EXPECT_THAT(ReadFileBytes(path), testing::HasSubstr("SoundFont=\n")) << "the user has chosen anew";
}
