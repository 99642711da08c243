// An engine on a virtual clock, with fake ports and a player that the test drives.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "engine/CKivora.h"
#include "support/FakeBackend.h"
#include "support/FakePlayer.h"
#include "support/TemporaryFolder.h"
#include "support/VirtualTime.h"

namespace KivoraTest {

inline constexpr const wchar_t* kSynth = L"Software synthesizer";
inline constexpr const wchar_t* kOtherSynth = L"Other synthesizer";
inline constexpr const wchar_t* kKeyboard = L"Keyboard";
inline constexpr const wchar_t* kOtherKeyboard = L"Other keyboard";

/// By default two outputs and two inputs, none of them open. Whoever sleeps lets the player run a round.
class EngineRig {
public:
    EngineRig() {
        time.SetMs(1'000'000);
        time.onSleep = [this](std::uint32_t) { RunPlayer(); };
        backend.Plug(kSynth, LibMidi::kOutput);
        backend.Plug(kOtherSynth, LibMidi::kOutput);
        backend.Plug(kKeyboard, LibMidi::kInput);
        backend.Plug(kOtherKeyboard, LibMidi::kInput);
        backend.log = [this](const std::string& line) { log.push_back(line); };
    }

    Kivora::EngineDependencies GetDependencies() {
        return {.backends = {backend.GetCreator()},
                .createPlayer =
                    [this] {
                        if (noPlayer) {
                            return std::unique_ptr<FakePlayer>();
                        }
                        auto made = std::make_unique<FakePlayer>(time, time);
                        made->log = [this](const std::string& line) {
                            log.push_back(line);
                            player = nullptr;
                        };
                        made->onSend = onSend;
                        player = made.get();
                        return made;
                    },
                .synth = synth,
                .userDataDir = NK::CString::FromUtf8((folder / "user").native()),
                .factoryPresetsDir = NK::CString::FromUtf8(factoryPresets.native()),
                .wallClockMs = [this] { return time.GetTimeMs(); },
                .sleeper = time,
                .runTickTimer = false};
    }

    Kivora::CKivora& Create() {
        engine = std::make_unique<Kivora::CKivora>(GetDependencies());
        return *engine;
    }
    /// Creates the engine and opens the output kSynth; forgets what that wrote.
    Kivora::CKivora& CreateOpen() {
        Create().SetOutputPortByName(kSynth);
        TakeWritten();
        return *engine;
    }

    FakeDevice& GetDevice(const std::wstring& name) {
        for (const auto& device : backend.devices) {
            if (device->name == name) {
                return *device;
            }
        }
        throw NK::CException(L"no such device");
    }
    FakeInPort& GetKeyboard() { return *backend.GetIn(kKeyboard); }

    void RunPlayer() {
        if (player != nullptr) {
            player->RunRound();
        }
    }
    /// Everything that reached the output since the last call, the player's next round included.
    std::vector<std::string> TakeWritten(const std::wstring& name = kSynth) {
        RunPlayer();
        return GetDevice(name).TakeWritten();
    }
    /// Milliseconds go by, each with a tick of the engine and then a round of the player.
    void Run(int milliseconds) {
        for (int i = 0; i < milliseconds; ++i) {
            time.AdvanceMs(1);
            engine->OnTimer(0);
            RunPlayer();
        }
    }

    CTemporaryFolder folder;  ///< holds "user", the user's data, and "factory", the factory's presets
    std::filesystem::path factoryPresets = folder / "factory";
    CVirtualTime time;
    std::shared_ptr<LibMidi::SynthControl> synth;
    FakeBackend backend;
    FakePlayer* player = nullptr;
    bool noPlayer = false;
    /// FakePlayer::onSend of the players that are made.
    std::function<void(const LibMidi::MIDIEvent&, bool timed)> onSend;
    std::vector<std::string> log;
    std::unique_ptr<Kivora::CKivora> engine;
};

/// The names of the engine's signals in the order of their emission, "OnMIDIEvent" with its message.
class SignalLog : public QObject {
public:
    explicit SignalLog(Kivora::CKivora& engine) {
        using Kivora::CKivora;
        connect(&engine, &CKivora::OnMIDIEvent, this, [this](int word) {
            const auto message = NK::MIDI::TMIDIMessage::FromWord(static_cast<std::uint32_t>(word));
            messages.push_back(ToText(LibMidi::MIDIEvent::FromMessage(message, 0)));
            if (withMessages) {
                names.push_back(messages.back());
            }
        });
        const auto note = [&](auto signal, const char* name) {
            connect(&engine, signal, this, [this, name] { names.emplace_back(name); });
        };
        note(&CKivora::SynthSet, "SynthSet");
        note(&CKivora::PatchChanged, "PatchChanged");
        note(&CKivora::RecordingStateChanged, "RecordingStateChanged");
        note(&CKivora::VoiceSettingsChanged, "VoiceSettingsChanged");
        note(&CKivora::KeyTranslationSettingChanged, "KeyTranslationSettingChanged");
        note(&CKivora::KeyboardDisplayChanged, "KeyboardDisplayChanged");
        note(&CKivora::PresetChanged, "PresetChanged");
        note(&CKivora::UISkinChanged, "UISkinChanged");
        note(&CKivora::TempoChanged, "TempoChanged");
        note(&CKivora::MetronomeChanged, "MetronomeChanged");
        note(&CKivora::ArpeggiatingChanged, "ArpeggiatingChanged");
        note(&CKivora::Bar, "Bar");
        note(&CKivora::Beat, "Beat");
        note(&CKivora::OutputLost, "OutputLost");
        note(&CKivora::InputLost, "InputLost");
        note(&CKivora::DamagedFileSetAside, "DamagedFileSetAside");
    }

    std::vector<std::string> Take() { return std::exchange(names, {}); }
    std::vector<std::string> TakeMessages() { return std::exchange(messages, {}); }

    std::vector<std::string> names;
    std::vector<std::string> messages;
    bool withMessages = false;  ///< whether `names` holds the messages too
};

}  // namespace KivoraTest
