#include "e2e/Sounding.h"

#include <cstdlib>
#include <map>

std::set<std::string> SoundingAfter(const std::vector<std::string>& messages) {
    std::map<int, std::set<std::string>> channels;
    for (const std::string& message : messages) {
        const auto byte = [&](std::size_t index) {
            return static_cast<int>(std::strtol(message.substr(3 * index, 2).c_str(), nullptr, 16));
        };
        const int status = byte(0);
        std::set<std::string>& sounding = channels[status & 0x0F];
        const std::string note = std::to_string(byte(1));
        switch (status == 0xFF ? 0xFF : status & 0xF0) {
            case 0x90:
                if (byte(2) > 0) {
                    sounding.insert(note);
                } else {
                    sounding.erase(note);
                }
                break;
            case 0x80:
                sounding.erase(note);
                break;
            case 0xB0:
                if (byte(1) == 64 && byte(2) > 0) {
                    sounding.insert("pedal");
                } else if (byte(1) == 64) {
                    sounding.erase("pedal");
                } else if (byte(1) == 123) {
                    std::erase_if(sounding, [](const std::string& name) { return name != "pedal"; });
                }
                break;
            case 0xFF:
                channels.clear();
                break;
            default:
                break;
        }
    }
    std::set<std::string> all;
    for (const auto& [channel, sounding] : channels) {
        for (const std::string& name : sounding) {
            all.insert(std::to_string(channel) + "/" + name);
        }
    }
    return all;
}
