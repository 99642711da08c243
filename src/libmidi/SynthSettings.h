// What a user can set on the built-in synthesizer, and the interface through which a dialog does it.
#pragma once

#include <cstdint>
#include <vector>

#include "libmidi/Result.h"
#include "nk/nk_string.h"

namespace LibMidi {

/// The settings of the built-in synthesizer. Values outside a range are clamped when they are applied.
struct SynthSettings {
    static constexpr std::uint32_t kMinLatencyFrames = 128;
    static constexpr std::uint32_t kMaxLatencyFrames = 4096;
    static constexpr std::uint32_t kDefaultLatencyFrames = 512;
    static constexpr double kMaxGain = 2.0;
    static constexpr double kDefaultGain = 0.6;

    NK::CString audioDriver;  ///< one of SynthControl::GetAudioDrivers(); empty: the first that starts
    NK::CString soundFont;    ///< path of an .sf2 or .sf3 file; empty: the system's default
    std::uint32_t latencyFrames = kDefaultLatencyFrames;  ///< buffered frames; rounded down to a multiple of 64
    double gain = kDefaultGain;                           ///< 0..kMaxGain
    bool reverb = true;
    bool chorus = true;

    friend bool operator==(const SynthSettings&, const SynthSettings&) = default;
};

/// The built-in synthesizer as a settings dialog sees it. It works while its port is closed too, and where there is no
/// sound font yet and thus no port. [gui]
class SynthControl {
public:
    virtual ~SynthControl() = default;
    /// Under which it is listed among the outputs while there is a sound font.
    virtual NK::CString GetPortName() const = 0;
    /// The audio systems that can be asked for on this machine, in the order in which they are tried.
    virtual std::vector<NK::CString> GetAudioDrivers() const = 0;
    virtual SynthSettings GetSettings() const = 0;
    /// Takes the settings; while the port is open they are in force on return, and the programs and controllers of the
    /// channels are kept. Where the open port has failed for good they are for its next opening. kDeviceError, with the
    /// reason in GetLastError(), leaves the former settings in force: the sound font cannot be read or is still being
    /// loaded, or the audio system does not start.
    virtual Result ApplySettings(const SynthSettings& settings) = 0;
    /// The milliseconds of sound that so many frames hold.
    virtual double GetLatencyMs(std::uint32_t latencyFrames) const = 0;
    /// The file that Open() would play with the settings in force; empty where none is found.
    virtual NK::CString GetSoundFontPath() const = 0;
    /// Plays a short note, also while the port is closed, and returns at once. The result says in words why nothing can
    /// sound; it is empty when the note plays.
    virtual NK::CString Test() = 0;
    /// Why the last opening, applying or writing failed, in words; empty after one that succeeded. [any]
    virtual NK::CString GetLastError() const = 0;
};

}  // namespace LibMidi
