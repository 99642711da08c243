#include "e2e/player/LentDevices.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <stdexcept>

namespace Player {

using Standin::TSharedDevices;

LentDevices::LentDevices(const std::string& path) {
    constexpr int kOwnersAlone = 0600;
    const int file = open(path.c_str(), O_RDWR | O_CREAT | O_TRUNC | O_CLOEXEC, kOwnersAlone);
    void* memory = MAP_FAILED;
    if (file >= 0 && ftruncate(file, sizeof(TSharedDevices)) == 0) {
        memory = mmap(nullptr, sizeof(TSharedDevices), PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
    }
    close(file);
    if (memory == MAP_FAILED) {
        throw std::runtime_error("no devices can be lent at " + path);
    }
    shared_ = static_cast<TSharedDevices*>(memory);  // a new file is full of zeros: nothing is plugged in
    for (int device = 0; device < Standin::kDeviceCount; ++device) {
        PlugIn(device);
    }
}

LentDevices::~LentDevices() {
    munmap(shared_, sizeof(TSharedDevices));
}

bool LentDevices::IsPluggedIn(int device) const {
    return shared_->presence[device] % 2 == 1;
}

void LentDevices::PlugIn(int device) {
    if (!IsPluggedIn(device)) {
        ++shared_->presence[device];
    }
}

void LentDevices::Unplug(int device) {
    if (IsPluggedIn(device)) {
        ++shared_->presence[device];
    }
}

void LentDevices::FailNextWrite() {
    shared_->writesToFail = 1;
}

void LentDevices::Overflow() {
    if (IsPluggedIn(Standin::kInput)) {
        ++shared_->overflows;
    }
}

void LentDevices::Play(std::uint32_t message) {
    if (IsPluggedIn(Standin::kInput) && shared_->played - shared_->read < Standin::kInputSize) {
        shared_->input[shared_->played % Standin::kInputSize] = message;
        ++shared_->played;
    }
}

void LentDevices::Listen(Sounding& sounding) {
    for (const std::uint32_t end = shared_->writtenCount; heard_ != end; ++heard_) {
        const std::uint32_t message = shared_->written[heard_];
        sounding.Take(static_cast<int>(message >> 24U), static_cast<std::uint8_t>(message),
                      static_cast<std::uint8_t>(message >> 8U), static_cast<std::uint8_t>(message >> 16U));
    }
    for (int output = 0; output < Standin::kOutputCount; ++output) {
        if (!IsPluggedIn(output)) {
            sounding.Forget(output);
        }
    }
}

bool LentDevices::IsReached(int device) const {
    return IsPluggedIn(device) && shared_->openAs[device] == shared_->presence[device];
}

bool LentDevices::IsAnyOutputReached() const {
    for (int output = 0; output < Standin::kOutputCount; ++output) {
        if (IsReached(output)) {
            return true;
        }
    }
    return false;
}

bool LentDevices::IsInputStale() const {
    const std::uint32_t openAs = shared_->openAs[Standin::kInput];
    return openAs != 0 && openAs != shared_->presence[Standin::kInput];
}

bool LentDevices::IsInputRead() const {
    return !IsReached(Standin::kInput) ||
           (shared_->read == shared_->played && shared_->overflowsTold == shared_->overflows);
}

std::string LentDevices::GetLastWritten(std::uint32_t count) const {
    const std::uint32_t end = shared_->writtenCount;
    std::string text;
    for (std::uint32_t i = end - std::min(count, end); i != end; ++i) {
        const std::uint32_t message = shared_->written[i];
        std::array<char, 64> line{};
        std::snprintf(line.data(), line.size(), "%02X %02X %02X to output %u\n", message & 0xFFU,
                      (message >> 8U) & 0xFFU, (message >> 16U) & 0xFFU, message >> 24U);
        text += line.data();
    }
    return text;
}

}  // namespace Player
