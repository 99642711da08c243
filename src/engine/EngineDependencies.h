// What the engine is given from outside.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

#include "libmidi/MIDIPlayer.h"
#include "libmidi/PortFactory.h"
#include "libmidi/SynthSettings.h"
#include "nk/nk_paths.h"
#include "nk/nk_sleep.h"
#include "nk/nk_time_source.h"

namespace Kivora {

/// The engine's ties to devices, time and threads. What it refers to outlives the engine.
struct EngineDependencies {
    /// In the order in which their ports are listed. Null from every one of them means that there is no interface to
    /// the ports, an exception that its ports could not be listed.
    std::vector<LibMidi::BackendCreator> backends;
    /// Makes the player; null when there is none to be had.
    std::function<std::unique_ptr<LibMidi::MIDIPlayer>()> createPlayer;
    /// The settings of the built-in synthesizer; null where the program has none.
    std::shared_ptr<LibMidi::SynthControl> synth = nullptr;
    /// Where the settings file and the folder of the user's presets stand.
    NK::CString userDataDir = NK::ComposeUserDataDir(L"Brennholt", L"Kivora");
    NK::CString factoryPresetsDir = NK::JoinPath(NK::GetExecutableDir(), L"Presets");
    /// The time of day in milliseconds. [any]
    std::function<std::int64_t()> wallClockMs = [] { return NK::CWorldClockSource::Instance().GetTimeMs(); };
    /// For the waits that the engine's operations are made of.
    NK::CSleeper& sleeper = NK::SystemSleeper();
    /// Whether the engine runs its 1 ms tick thread; without it somebody calls CKivora::OnTimer().
    bool runTickTimer = true;
};

}  // namespace Kivora
