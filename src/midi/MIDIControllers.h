// The numbers of controllers (MIDI 1.0, tables III and IV).
#pragma once

#include <cstdint>

/// A controller of 14 bits has its high seven at the number given here and its low seven kLow above it. [any]
namespace NK::MIDI::Controller {

inline constexpr std::uint8_t kBank = 0;
inline constexpr std::uint8_t kModulation = 1;
inline constexpr std::uint8_t kDataEntry = 6;
inline constexpr std::uint8_t kVolume = 7;
inline constexpr std::uint8_t kBalance = 8;
inline constexpr std::uint8_t kPan = 10;
inline constexpr std::uint8_t kExpression = 11;
inline constexpr std::uint8_t kLow = 32;
inline constexpr std::uint8_t kBankLow = kLow + kBank;
inline constexpr std::uint8_t kDataEntryLow = kLow + kDataEntry;

// Switches: on from kSwitchOn on.
inline constexpr std::uint8_t kSustain = 64;
inline constexpr std::uint8_t kPortamento = 65;
inline constexpr std::uint8_t kSostenuto = 66;
inline constexpr std::uint8_t kSoftPedal = 67;
inline constexpr std::uint8_t kLegato = 68;
inline constexpr std::uint8_t kHold2 = 69;
inline constexpr std::uint8_t kSwitchOn = 64;

inline constexpr std::uint8_t kFirstSound = 70;  ///< variation, timbre, release, attack, brightness and five more
inline constexpr std::uint8_t kLastSound = 79;
inline constexpr std::uint8_t kReverb = 91;
inline constexpr std::uint8_t kChorus = 93;

// What kDataEntry sets.
inline constexpr std::uint8_t kDataIncrement = 96;
inline constexpr std::uint8_t kDataDecrement = 97;
inline constexpr std::uint8_t kUnregisteredLow = 98;
inline constexpr std::uint8_t kUnregistered = 99;
inline constexpr std::uint8_t kRegisteredLow = 100;
inline constexpr std::uint8_t kRegistered = 101;
inline constexpr std::uint8_t kNoParameter = 127;  ///< a value of both numbers of a parameter

// Messages about the mode of a channel; each from kAllNotesOff on ends its notes.
inline constexpr std::uint8_t kFirstMode = 120;
inline constexpr std::uint8_t kAllSoundOff = 120;
inline constexpr std::uint8_t kResetControllers = 121;  ///< puts all controllers to rest, the pedals too
inline constexpr std::uint8_t kLocalControl = 122;
inline constexpr std::uint8_t kAllNotesOff = 123;
inline constexpr std::uint8_t kOmniOff = 124;
inline constexpr std::uint8_t kOmniOn = 125;
inline constexpr std::uint8_t kMonoOn = 126;
inline constexpr std::uint8_t kPolyOn = 127;

}  // namespace NK::MIDI::Controller
