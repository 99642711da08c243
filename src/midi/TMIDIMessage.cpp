#include "midi/TMIDIMessage.h"

#include <algorithm>
#include <cmath>

namespace NK::MIDI {

int TMIDIMessage::GetLength(std::uint8_t status) noexcept {
    if (status >= kFirstRealTimeStatus) {
        return 1;
    }
    const std::uint8_t command = CommandOf(status);
    return command == kProgramChange || command == kChannelPressure ? 2 : 3;
}

int TMIDIMessage::Pack(std::uint8_t out[3]) const noexcept {
    const int length = GetLength();
    out[0] = channel == 0 ? status : static_cast<std::uint8_t>(status | (channel - 1));
    if (length > 1) {
        out[1] = data1;
    }
    if (length > 2) {
        out[2] = data2;
    }
    return length;
}

std::size_t TMIDIMessage::Pack(std::uint8_t* out, std::size_t size) const noexcept {
    std::uint8_t bytes[3];
    const std::size_t count = std::min(size, static_cast<std::size_t>(Pack(bytes)));
    std::copy_n(bytes, count, out);
    return count;
}

bool TMIDIMessage::Write(CFile& file) const {
    std::uint8_t bytes[3];
    const auto length = static_cast<std::size_t>(Pack(bytes));
    return file.Write(bytes, 1, length) == length;
}

bool TMIDIMessage::Read(CFile& file) {
    std::uint8_t first = 0;
    return file.Read(&first, 1, 1) == 1 && ReadAfterStatus(first, file);
}

bool TMIDIMessage::ReadAfterStatus(std::uint8_t firstByte, CFile& file) {
    std::uint8_t bytes[2] = {0, 0};
    const auto rest = static_cast<std::size_t>(GetLength(firstByte) - 1);
    if (rest > 0 && file.Read(bytes, 1, rest) != rest) {
        return false;
    }
    const bool isSystem = firstByte >= kFirstSystemStatus;
    status = isSystem ? firstByte : CommandOf(firstByte);
    channel = isSystem ? std::uint8_t{0} : static_cast<std::uint8_t>(ChannelOf(firstByte) + 1);
    data1 = bytes[0];
    data2 = bytes[1];
    return true;
}

void TMIDIMessage::SetPitchWheel(int raw) noexcept {
    status = kPitchWheel;
    data1 = DataOf(raw);
    data2 = DataOf(raw >> 7);
}

void TMIDIMessage::SetPitchWheelCentered(int value) noexcept {
    SetPitchWheel(std::clamp(value, -kPitchWheelCentre, kPitchWheelMaximum - kPitchWheelCentre) + kPitchWheelCentre);
}

void TMIDIMessage::SetPitchWheelFloat(float value) noexcept {
    const double steps = std::isnan(value) ? 0.0 : std::round(static_cast<double>(value) * kPitchWheelCentre);
    SetPitchWheelCentered(static_cast<int>(std::clamp(steps, -8192.0, 8191.0)));
}

}  // namespace NK::MIDI
