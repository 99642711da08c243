#include "midi/arpeggiator/ArpeggiatorSettings.h"

#include <algorithm>

#include "midi/TMIDIMessage.h"

namespace NK::MIDI {

namespace {

void Require(bool condition, const wchar_t* otherwise) {
    if (!condition) {
        throw CInvalidParameterException(otherwise);
    }
}

constexpr const wchar_t* kLatch = L"Latch";
constexpr const wchar_t* kSwing = L"Swing";

void SaveUnlessDefault(CIniFile& section, const wchar_t* key, int value, int defaultValue) {
    if (value != defaultValue || section.GetString(key)) {
        section.SetInt(key, value);
    }
}

bool IsWithin(int value, int end) {
    return value >= 0 && value < end;
}

}  // namespace

void ArpeggiatorSettings::CheckChannel(int channel) {
    if (channel == 0 || channel > 16) {
        throw CInvalidMIDIChannelException();
    }
}

void ArpeggiatorSettings::CheckNoteLength(double noteLength) {
    Require(noteLength >= 0, L"Note length cannot be negative.");
}

void ArpeggiatorSettings::CheckNoteStep(int noteStep) {
    Require(noteStep >= 1, L"Note step must be positive.");
}

void ArpeggiatorSettings::CheckDirection(int direction) {
    Require(IsWithin(direction, kDirections), L"Invalid arpeggiator direction.");
}

void ArpeggiatorSettings::CheckMultiplication(int multiplication) {
    Require(IsWithin(multiplication, kOctaveModes), L"Invalid arpeggiator multiplication mode.");
}

void ArpeggiatorSettings::CheckExtension(int extension) {
    Require(IsWithin(extension, kOctaveModes), L"Invalid arpeggiator range extension mode.");
}

void ArpeggiatorSettings::CheckVelocityMode(int velocityMode) {
    Require(IsWithin(velocityMode, kVelocityModes), L"Invalid arpeggiator velocity mode.");
}

void ArpeggiatorSettings::Check() const {
    CheckChannel(inChannel);
    CheckChannel(outChannel);
    CheckNoteLength(noteLength);
    CheckNoteStep(noteStep);
    CheckDirection(direction);
    CheckMultiplication(multiplication);
    CheckExtension(extension);
    CheckVelocityMode(velocityMode);
}

void ArpeggiatorSettings::Save(CIniFile& section) const {
    section.SetInt(L"InChannel", inChannel);
    section.SetInt(L"OutChannel", outChannel);
    section.SetDouble(L"NoteLength", noteLength);
    section.SetInt(L"NoteStep", noteStep);
    section.SetInt(L"Direction", direction);
    section.SetInt(L"Repeat", repeat ? 1 : 0);
    section.SetInt(L"Multiplication", multiplication);
    section.SetInt(L"Extension", extension);
    section.SetInt(L"VelocityMode", velocityMode);
    section.SetInt(L"Velocity", velocity);
    SaveUnlessDefault(section, kLatch, latch ? 1 : 0, 0);
    SaveUnlessDefault(section, kSwing, swing, kStraight);
}

ArpeggiatorSettings ArpeggiatorSettings::Load(CIniFile& section) {
    ArpeggiatorSettings loaded;
    loaded.inChannel = section.GetInt(L"InChannel", loaded.inChannel);
    loaded.outChannel = section.GetInt(L"OutChannel", loaded.outChannel);
    section.GetDouble(L"NoteLength", loaded.noteLength);
    loaded.noteStep = section.GetInt(L"NoteStep", loaded.noteStep);
    loaded.direction = section.GetInt(L"Direction", loaded.direction);
    section.GetBool(L"Repeat", loaded.repeat);
    loaded.multiplication = section.GetInt(L"Multiplication", loaded.multiplication);
    loaded.extension = section.GetInt(L"Extension", loaded.extension);
    loaded.velocityMode = section.GetInt(L"VelocityMode", loaded.velocityMode);
    loaded.velocity = static_cast<std::uint8_t>(section.GetInt(L"Velocity", loaded.velocity));
    section.GetBool(kLatch, loaded.latch);
    loaded.swing = std::clamp(section.GetInt(kSwing, kStraight), kStraight, kMostSwing);
    return loaded;
}

}  // namespace NK::MIDI
