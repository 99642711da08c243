// The capture of a performance, and the settings of the interface.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "unit/engine/EngineRig.h"

using namespace KivoraTest;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {
class Recording : public testing::Test {
protected:
    EngineRig rig;
    Kivora::CKivora& engine = rig.CreateOpen();
    SignalLog shown{engine};
};
}  // namespace

TEST_F(Recording, StartsWithASilentSynthesizerAndCapturesPatchesAndVolumesFirst) {
    const std::uint64_t before = rig.time.GetSleptMs();
    EXPECT_TRUE(engine.StartRecording());
    EXPECT_EQ(rig.time.GetSleptMs() - before, 250U);
    EXPECT_TRUE(engine.IsRecording());
    EXPECT_THAT(shown.Take(), ElementsAre("SynthSet", "PatchChanged", "PatchChanged", "RecordingStateChanged"));
    rig.RunPlayer();
    EXPECT_EQ(engine.GetRecordedCount(), 6);
    engine.PlayNoteOn(60, 100);
    rig.RunPlayer();
    EXPECT_EQ(engine.GetRecordedCount(), 7);
}

TEST_F(Recording, StartingTwiceAndStoppingTwiceAreFalse) {
    EXPECT_FALSE(engine.StopRecording());
    EXPECT_TRUE(engine.StartRecording());
    shown.Take();
    EXPECT_FALSE(engine.StartRecording());
    EXPECT_THAT(shown.Take(), IsEmpty());
    EXPECT_TRUE(engine.StopRecording());
    EXPECT_THAT(shown.Take(), ElementsAre("RecordingStateChanged"));
    EXPECT_FALSE(engine.IsRecording());
    EXPECT_FALSE(engine.StopRecording());
}

TEST_F(Recording, TellsItsLengthAndTheTimeSinceTheLastEvent) {
    EXPECT_EQ(engine.GetIdleTime(), -1);
    engine.StartRecording();
    rig.RunPlayer();
    const std::int64_t start = rig.time.GetTimeMs();
    rig.Run(1000);
    EXPECT_EQ(engine.GetRecordingTime(), 1000);
    EXPECT_EQ(engine.GetIdleTime(), 1000);
    engine.PlayNoteOn(60, 100);
    rig.RunPlayer();
    rig.Run(300);
    EXPECT_EQ(engine.GetRecordingTime(), 1300);
    EXPECT_EQ(engine.GetIdleTime(), 300);
    EXPECT_EQ(rig.time.GetTimeMs() - start, 1300);
    engine.StopRecording();
    rig.Run(100);
    EXPECT_EQ(engine.GetRecordingTime(), 1300);
    EXPECT_EQ(engine.GetRecordedCount(), 7);
}

TEST_F(Recording, WithoutASinkThereIsNothingToRecord) {
    engine.ShutdownMidi();
    EXPECT_FALSE(engine.StartRecording());
    EXPECT_FALSE(engine.StopRecording());
    EXPECT_FALSE(engine.IsRecording());
    EXPECT_EQ(engine.GetRecordingTime(), 0);
    EXPECT_EQ(engine.GetIdleTime(), -1);
    EXPECT_EQ(engine.GetRecordedCount(), 0);
}

TEST_F(Recording, AllNotesOffGoesOn) {
    engine.StartRecording();
    engine.AllNotesOff();
    EXPECT_TRUE(engine.IsRecording());
}

using InterfaceSettings = Recording;

TEST_F(InterfaceSettings, HaveTheirDefaults) {
    EXPECT_TRUE(engine.GetTranslatePatchNames());
    EXPECT_TRUE(engine.GetTranslateKeyNames());
    EXPECT_FALSE(engine.GetShowNoteNames());
    EXPECT_EQ(engine.GetKeyboardColoring(), 0);
    EXPECT_EQ(engine.GetUIColor(), QColor(110, 112, 93));
    EXPECT_EQ(engine.GetUIDisplayColor(), QColor(200, 200, 255));
    EXPECT_EQ(engine.GetUIDisplay2Color(), QColor(200, 255, 200));
    EXPECT_TRUE(engine.GetWallpaper().isEmpty());
    EXPECT_TRUE(engine.GetPresetName().IsEmpty());
    EXPECT_EQ(engine.GetVelocityLow(), 40);
    EXPECT_EQ(engine.GetVelocityNormal(), 80);
    EXPECT_EQ(engine.GetVelocityHigh(), 127);
    EXPECT_EQ(engine.GetTempo(), 120);
}

TEST_F(InterfaceSettings, FourOfThemEmitOnEveryCall) {
    engine.SetTranslatePatchNames(true);
    EXPECT_THAT(shown.Take(), ElementsAre("PatchChanged"));
    engine.SetTranslateKeyNames(true);
    EXPECT_THAT(shown.Take(), ElementsAre("KeyTranslationSettingChanged"));
    engine.SetShowNoteNames(false);
    EXPECT_THAT(shown.Take(), ElementsAre("KeyboardDisplayChanged"));
    engine.SetKeyboardColoring(0);
    EXPECT_THAT(shown.Take(), ElementsAre("KeyboardDisplayChanged"));
}

TEST_F(InterfaceSettings, TheSkinIsToldOnlyWhenAValueDiffers) {
    engine.SetUIColor(QColor(110, 112, 93));
    engine.SetUIDisplayColor(QColor(200, 200, 255));
    engine.SetUIDisplay2Color(QColor(200, 255, 200));
    engine.SetWallpaper({});
    EXPECT_THAT(shown.Take(), IsEmpty());
    engine.SetUIColor(QColor(1, 2, 3));
    engine.SetUIDisplayColor(QColor(1, 2, 3));
    engine.SetUIDisplay2Color(QColor(1, 2, 3));
    engine.SetWallpaper("picture.png");
    EXPECT_THAT(shown.Take(), ElementsAre("UISkinChanged", "UISkinChanged", "UISkinChanged", "UISkinChanged"));
    EXPECT_EQ(engine.GetWallpaper(), "picture.png");
    EXPECT_EQ(engine.GetUIColor(), QColor(1, 2, 3));
}
