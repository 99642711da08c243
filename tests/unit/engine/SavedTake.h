// A saved take, read again.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "support/Files.h"

namespace KivoraTest {

struct SavedEvent {
    int tick;  ///< a millisecond
    int status;
    int data1;
    int data2;
};

/// The channel messages of a file that the recorder has written, which has a status byte with every event.
inline std::vector<SavedEvent> ReadSavedTake(const std::filesystem::path& path) {
    const std::string bytes = ReadFileBytes(path);
    std::vector<SavedEvent> events;
    std::size_t place = 22;
    const auto next = [&] { return static_cast<int>(static_cast<unsigned char>(bytes.at(place++))); };
    for (int tick = 0; place < bytes.size();) {
        int delta = 0;
        int byte = 0;
        do {
            byte = next();
            delta = delta << 7 | (byte & 0x7F);
        } while ((byte & 0x80) != 0);
        tick += delta;
        const int status = next();
        if (status == 0xFF) {
            ++place;
            const int size = next();
            place += static_cast<std::size_t>(size);
            continue;
        }
        const int data1 = next();
        events.push_back({tick, status, data1, (status & 0xE0) == 0xC0 ? 0 : next()});
    }
    return events;
}

/// The notes and pedals that nothing in the file ends by itself, as "status data1" in hexadecimal.
inline std::vector<std::string> FindOpen(const std::vector<SavedEvent>& events) {
    std::map<std::pair<int, int>, bool> open;
    for (const SavedEvent& event : events) {
        const int command = event.status & 0xF0;
        if (command == 0x90 || command == 0x80) {
            open[{0x90 | (event.status & 0x0F), event.data1}] = command == 0x90 && event.data2 != 0;
        } else if (command == 0xB0 &&
                   (event.data1 == 64 || event.data1 == 66 || event.data1 == 67 || event.data1 == 69)) {
            open[{event.status, event.data1}] = event.data2 != 0;
        }
    }
    std::vector<std::string> found;
    for (const auto& [key, isOpen] : open) {
        if (isOpen) {
            char text[16];
            std::snprintf(text, sizeof(text), "%02x %02x", static_cast<unsigned>(key.first),
                          static_cast<unsigned>(key.second));
            found.emplace_back(text);
        }
    }
    return found;
}

/// When a note or a pedal (its command and number) last ended; -1 for never.
inline int FindEnd(const std::vector<SavedEvent>& events, int status, int data1) {
    int tick = -1;
    for (const SavedEvent& event : events) {
        const bool isEnd = event.data2 == 0 || (event.status & 0xF0) == 0x80;
        if (isEnd && event.data1 == data1 &&
            (event.status == status || (status >> 4 == 9 && event.status == status - 16))) {
            tick = event.tick;
        }
    }
    return tick;
}

}  // namespace KivoraTest
