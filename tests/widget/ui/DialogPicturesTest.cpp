// Dialogs, menus and boxes as pictures, in both languages.
#include "widget/ui/PanelRig.h"

#include <filesystem>
#include <QScrollArea>
#include <QScrollBar>
#include <QtTest/QTest>

#include "midi/reader/SMFDamage.h"
#include "nk/qt/nk_qt_string.h"
#include "ui/dialogs/LatchAndSwing.h"
#include "ui/dialogs/MetronomeSettings.h"
#include "ui/dialogs/MidiLearn.h"
#include "ui/dialogs/MidiRemote.h"
#include "ui/dialogs/PlayerWindow.h"
#include "ui/dialogs/PresetList.h"
#include "ui/dialogs/SongFile.h"
#include "ui/dialogs/SoundCheck.h"
#include "ui/dialogs/VelocitySettings.h"
#include "ui/parts/MessageBoxes.h"
#include "unit/engine/SongRig.h"
#include "widget/ui/GoldenWindow.h"
#include "widget/ui/SoundFindingsOf.h"

using namespace KivoraTest;
using Kivora::SongPlayer;

namespace {

class DialogPictures : public PanelTest {
protected:
    void SetUp() override {
        PanelTest::SetUp();
        AddPresets();
    }
    void AddPresets() {
        const auto factory = rig.folder / "factory";
        std::filesystem::create_directories(factory);
        for (const wchar_t* name : {L"Cathedral Organ", L"Grand Piano", L"Vibraphone and Upright Bass"}) {
            ASSERT_TRUE(Engine().SavePreset(name));
            const auto file = std::filesystem::path(name).string() + ".kivoraLXPreset";
            std::filesystem::rename(rig.folder / "user" / "Presets" / file, factory / file);
        }
        ASSERT_TRUE(Engine().SavePreset(L"Evening"));
        ASSERT_TRUE(Engine().SavePreset(L"Lead for the second verse"));
        ASSERT_TRUE(controls->LoadPreset(L"Evening", false));
    }
    void ExpectLike(QWidget& dialog, const QString& name) {
        dialog.show();
        QApplication::processEvents();
        ExpectLikeReviewed(dialog.grab().toImage(), name);
    }
    /// Runs the check in English, then in Russian, whose pictures end in "_ru".
    void InBothLanguages(const std::function<void(const QString& suffix)>& check) {
        check("");
        Kivora::SetLocale("ru_RU", false);
        QApplication::processEvents();
        check("_ru");
    }
};

TEST_F(DialogPictures, ThePresetsLookAsReviewed) {
    InBothLanguages([this](const QString& language) {
        PresetList load(controls.get(), false);
        ExpectLike(load, "presets_load" + language);
        PresetList save(controls.get(), true);
        ExpectLike(save, "presets_save" + language);
    });
}

TEST_F(DialogPictures, TheDialogsOfTimeAndTouchLookAsReviewed) {
    Engine().SetClick({.sound = Kivora::ClickSettings::Sound::kOutput, .countInBars = 2});
    InBothLanguages([this](const QString& language) {
        MetronomeSettings metronome(*controls);
        ExpectLike(metronome, "metronome" + language);
        LatchAndSwing arpeggios(*controls);
        ExpectLike(arpeggios, "latch_and_swing" + language);
        VelocitySettings velocity(*controls);
        ExpectLike(velocity, "velocity" + language);
    });
}

TEST_F(DialogPictures, MidiLearnLooksAsReviewed) {
    auto& remote = *panel->findChild<MidiRemote*>();
    ASSERT_TRUE(remote.change([](Kivora::MidiBindings& bindings) {
        using Kind = Kivora::MidiControl::Kind;
        using Kivora::EPanelFunction;
        bindings.Bind({L"MPK mini 3", {Kind::kController, 0, 70}, EPanelFunction::kVolume1, false});
        bindings.Bind({L"nanoKONTROL2", {Kind::kController, 0, 0}, EPanelFunction::kVolume1, false});
        bindings.Bind({L"MPK mini 3", {Kind::kController, 0, 71}, EPanelFunction::kTempo, false});
        bindings.Bind({L"MPK mini 3", {Kind::kNote, 9, 36}, EPanelFunction::kRecord, false});
    }));
    InBothLanguages([&](const QString& language) {
        MidiLearn dialog(remote);
        ExpectLike(dialog, "midi_learn" + language);
    });
}

TEST_F(DialogPictures, BoxesLookAsReviewed) {
    InBothLanguages([](const QString& language) {
        ModalAnswers answers;
        const auto show = [&](QMessageBox::Icon icon, const QString& name, QMessageBox::StandardButtons buttons) {
            answers.Then([name](QDialog& box) {
                ExpectLikeReviewed(box.grab().toImage(), name);
                box.reject();
            });
            MessageBoxes::Show(nullptr, icon, "Kivora LX", "Overwrite preset \"Evening\"?", buttons);
        };
        show(QMessageBox::Question, "box_question" + language, QMessageBox::Yes | QMessageBox::No);
        show(QMessageBox::Warning, "box_warning" + language, QMessageBox::Ok);
        show(QMessageBox::Critical, "box_critical" + language, QMessageBox::Ok);
    });
}

TEST_F(DialogPictures, TheSoundCheckLooksAsReviewed) {
    InBothLanguages([this](const QString& language) {
        bool hasLooked = false;
        SoundFindings findings = FindNoSound();
        findings.drivers = {{"pulseaudio", "(Connection refused)"}};
        SoundCheck page({[&hasLooked, &findings] {
                             hasLooked = true;
                             return findings;
                         },
                         [](bool) {}});
        page.show();
        const QScrollBar& bar = *page.findChild<QScrollArea*>()->verticalScrollBar();
        ASSERT_TRUE(QTest::qWaitFor(
            [&] {
                QApplication::processEvents();
                return hasLooked && bar.isVisible() == (bar.maximum() > 0);
            },
            30000));
        ExpectLike(page, "sound_check" + language);
    });
}

TEST_F(DialogPictures, ThePlayerLooksAsReviewed) {
    InBothLanguages([this](const QString& language) {
        PlayerWindow& player = panel->player();
        player.openSong({MakeSong({{0, {0x90, 5, 60, 100}}}, 225'000), "Prelude in C.mid",
                         NK::ToQt(NK::MIDI::Describe({NK::MIDI::SMFDefect::kFileCutShort, 1210}))});
        SongPlayer(*controls).Seek(83'000'000);
        SongPlayer(*controls).SetLoop(SongPlayer::Loop{80'000'000, 96'000'000});
        QEvent look(QEvent::WindowActivate);
        QApplication::sendEvent(&player, &look);
        ExpectLike(player, "player" + language);
        player.close();
    });
}

}  // namespace
