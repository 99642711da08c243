#include <vector>

#include "midi/CMIDIMessageX.h"

namespace NK::MIDI {

namespace {

constexpr int kMaximumQuantitySize = 5;

bool WriteBytes(CFile& file, const std::uint8_t* bytes, std::size_t size) {
    return file.Write(bytes, 1, size) == size;
}

bool ReadByte(CFile& file, std::uint8_t& byte) {
    return file.Read(&byte, 1, 1) == 1;
}

/// The bytes that follow `first`, up to and including the end mark.
bool ReadSysEx(CFile& file, std::uint8_t first, std::vector<std::uint8_t>& bytes) {
    bytes.assign(1, first);
    do {
        bytes.push_back(0);
        if (!ReadByte(file, bytes.back())) {
            return false;
        }
    } while (bytes.back() != TMIDIMessage::kEndOfExclusive);
    return true;
}

void SetBytes(CArray<std::uint8_t>& data, const std::vector<std::uint8_t>& bytes) {
    data.SetSize(static_cast<std::uint32_t>(bytes.size()), false);
    std::copy(bytes.begin(), bytes.end(), data.begin());
}

}  // namespace

bool CMIDIMessageX::Write(CFile& file) const {
    switch (kind) {
        case kShort:
            return message.Write(file);
        case kMeta: {
            const std::uint8_t head[] = {CMIDIMessageX::kMetaPrefix, metaType,
                                         static_cast<std::uint8_t>(data.GetSize())};
            return WriteBytes(file, head, sizeof(head)) && WriteBytes(file, data.GetData(), data.GetSize());
        }
        case kSysEx:
            return WriteBytes(file, data.GetData(), data.GetSize());
        case kEmpty:
            return true;
        default:
            throw CCoderException(L"Unknown MIDI message type.");
    }
}

bool CMIDIMessageX::Read(CFile& file) {
    std::uint8_t first = 0;
    if (!ReadByte(file, first)) {
        return false;
    }
    if (first == CMIDIMessageX::kMetaPrefix) {
        std::uint8_t head[2];
        if (file.Read(head, 1, sizeof(head)) != sizeof(head)) {
            return false;
        }
        std::vector<std::uint8_t> bytes(head[1]);
        if (file.Read(bytes.data(), 1, bytes.size()) != bytes.size()) {
            return false;
        }
        SetBytes(data, bytes);
        kind = kMeta;
        metaType = head[0];
        return true;
    }
    if (first >= TMIDIMessage::kFirstSystemStatus && first <= TMIDIMessage::kEndOfExclusive) {
        std::vector<std::uint8_t> bytes;
        if (!ReadSysEx(file, first, bytes)) {
            return false;
        }
        SetBytes(data, bytes);
        kind = kSysEx;
        return true;
    }
    TMIDIMessage shortMessage;
    if (!shortMessage.ReadAfterStatus(first, file)) {
        return false;
    }
    SetShort(shortMessage, time);
    return true;
}

int EncodeVariableLength(std::uint32_t value, std::uint8_t out[5]) noexcept {
    int size = 1;
    for (std::uint32_t rest = value >> 7; rest != 0; rest >>= 7) {
        ++size;
    }
    for (int i = size - 1; i >= 0; --i) {
        out[i] = static_cast<std::uint8_t>((value & 0x7FU) | (i == size - 1 ? 0U : kQuantityContinues));
        value >>= 7;
    }
    return size;
}

bool WriteVariableLength(CFile& file, std::uint32_t value) {
    std::uint8_t bytes[kMaximumQuantitySize];
    return WriteBytes(file, bytes, static_cast<std::size_t>(EncodeVariableLength(value, bytes)));
}

std::uint32_t ReadVariableLength(CFile& file, bool& error) {
    std::uint32_t value = 0;
    for (int i = 0; i < kMaximumQuantitySize; ++i) {
        std::uint8_t byte = 0;
        if (!ReadByte(file, byte)) {
            break;
        }
        value = (value << 7) | (byte & 0x7FU);
        if ((byte & kQuantityContinues) == 0) {
            error = false;
            return value;
        }
    }
    error = true;
    return 0;
}

}  // namespace NK::MIDI
