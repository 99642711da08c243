// PortMidi without the library: devices made up by the test, and a record of every call.
#pragma once

#include <algorithm>
#include <atomic>
#include <deque>
#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <vector>

#include "libmidi/portmidi/PortMidiApi.h"

namespace LibMidiTest {

struct FakeDevice {
    std::string name;
    bool input = false;
    bool output = false;
};

struct OpenCall {
    PmDeviceID device;
    void* driverInfo;
    std::int32_t bufferSize;
    PmTimeProcPtr timeProcedure;
    void* timeInfo;
    std::int32_t latency;  ///< -1 for an input
};

/// Thread-safe. A stream is the address of its device's entry.
class CFakePortMidi : public LibMidi::PortMidiApi {
public:
    explicit CFakePortMidi(std::vector<FakeDevice> devices) : devices_(std::move(devices)) {
        for (const FakeDevice& device : devices_) {
            infos_.push_back({0, "Fake", device.name.c_str(), device.input, device.output, 0});
        }
        inputs_.resize(devices_.size());
    }

    PmError Initialize() override {
        Record("Initialize");
        return initializeResult;
    }
    PmError Terminate() override {
        Record("Terminate");
        return pmNoError;
    }
    int CountDevices() override { return static_cast<int>(devices_.size()); }
    const PmDeviceInfo* GetDeviceInfo(PmDeviceID device) override {
        return device == missingInfo ? nullptr : &infos_.at(static_cast<std::size_t>(device));
    }
    PmError OpenInput(PortMidiStream** stream, PmDeviceID device, void* driverInfo, std::int32_t bufferSize,
                      PmTimeProcPtr timeProcedure, void* timeInfo) override {
        return OpenStream(stream, {device, driverInfo, bufferSize, timeProcedure, timeInfo, -1}, "OpenInput");
    }
    PmError OpenOutput(PortMidiStream** stream, PmDeviceID device, void* driverInfo, std::int32_t bufferSize,
                       PmTimeProcPtr timeProcedure, void* timeInfo, std::int32_t latency) override {
        return OpenStream(stream, {device, driverInfo, bufferSize, timeProcedure, timeInfo, latency}, "OpenOutput");
    }
    PmError Poll(PortMidiStream* stream) override {
        const std::lock_guard guard(mutex_);
        ++polls;
        if (pollError != pmNoError) {
            return pollError;
        }
        const std::deque<int>& input = inputs_.at(IndexOf(stream));
        return flood || (!input.empty() && input.front() != kHiddenOverflow) ? pmGotData : pmNoData;
    }
    int Read(PortMidiStream* stream, PmEvent* buffer, std::int32_t length) override {
        const std::lock_guard guard(mutex_);
        ++reads;
        if (onRead) {
            onRead();
        }
        lastReadLength = length;
        if (flood) {
            buffer->message = Pm_Message(0x90, 60, 1 + flooded++ % 127);
            return 1;
        }
        std::deque<int>& input = inputs_.at(IndexOf(stream));
        if (input.empty()) {
            return 0;
        }
        const int message = input.front();
        input.pop_front();
        if (message < 0) {
            return message == kHiddenOverflow ? pmBufferOverflow : message;
        }
        *buffer = {message, 12345};
        return 1;
    }
    PmError Write(PortMidiStream* stream, PmEvent* buffer, std::int32_t length) override {
        const std::lock_guard guard(mutex_);
        const std::size_t device = IndexOf(stream);
        ++writes;
        lastWriteLength = length;
        if (writes > goodWrites) {
            return pmHostError;
        }
        if (onWrite) {
            if (const PmError result = onWrite(static_cast<PmDeviceID>(device), buffer->message); result != pmNoError) {
                return result;
            }
        }
        if (keepWritten) {
            written.push_back(*buffer);
        }
        return pmNoError;
    }
    PmError Close(PortMidiStream* stream) override {
        const std::lock_guard guard(mutex_);
        calls_.push_back("Close " + std::to_string(IndexOf(stream)));
        open_.erase(stream);
        return pmNoError;
    }

    /// What the device receives next: a message, or a negative result of the reading.
    void Receive(std::size_t device, int messageOrError) {
        const std::lock_guard guard(mutex_);
        inputs_.at(device).push_back(messageOrError);
    }
    std::size_t GetUnread(std::size_t device) const {
        const std::lock_guard guard(mutex_);
        return inputs_.at(device).size();
    }
    std::vector<std::string> GetCalls() const {
        const std::lock_guard guard(mutex_);
        return calls_;
    }
    int GetFlooded() const {
        const std::lock_guard guard(mutex_);
        return flooded;
    }
    std::size_t GetOpenStreams() const {
        const std::lock_guard guard(mutex_);
        return open_.size();
    }

    /// An overflow that polling does not tell of, and that a reader is told.
    static constexpr int kHiddenOverflow = -1;

    PmError initializeResult = pmNoError;
    PmError openResult = pmNoError;
    PmError pollError = pmNoError;
    PmDeviceID missingInfo = -1;
    int goodWrites = 1000000000;
    std::atomic<bool> flood{false};  ///< a note whenever one is asked for
    bool keepWritten = true;
    std::function<void()> onRead;  ///< on the reading thread; set before a port is open
    // What comes of the opening and of each write; set before a port is open.
    std::function<PmError(PmDeviceID)> onOpen;
    std::function<PmError(PmDeviceID, PmMessage)> onWrite;  ///< on the writing thread

    // Guarded by the mutex while threads run.
    std::vector<OpenCall> opens;
    std::vector<PmEvent> written;
    int writes = 0;
    int polls = 0;
    int reads = 0;
    int flooded = 0;
    std::int32_t lastReadLength = 0;
    std::int32_t lastWriteLength = 0;

private:
    void Record(const char* call) {
        const std::lock_guard guard(mutex_);
        calls_.emplace_back(call);
    }

    PmError OpenStream(PortMidiStream** stream, const OpenCall& call, const char* name) {
        const std::lock_guard guard(mutex_);
        opens.push_back(call);
        calls_.push_back(std::string(name) + " " + std::to_string(call.device));
        // PortMidi leaves no valid stream behind when it fails.
        *stream = &infos_.at(static_cast<std::size_t>(call.device));
        const PmError result = openResult == pmNoError && onOpen ? onOpen(call.device) : openResult;
        if (result == pmNoError) {
            open_[*stream] = static_cast<std::size_t>(call.device);
        }
        return result;
    }

    /// Throws for a stream that is not open.
    std::size_t IndexOf(PortMidiStream* stream) const { return open_.at(stream); }

    mutable std::mutex mutex_;
    std::vector<FakeDevice> devices_;
    std::vector<PmDeviceInfo> infos_;
    std::vector<std::deque<int>> inputs_;
    std::map<PortMidiStream*, std::size_t> open_;
    std::vector<std::string> calls_;
};

}  // namespace LibMidiTest
