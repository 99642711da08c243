// Another program on the ALSA sequencer.
#pragma once

#include <alsa/asoundlib.h>
#include <poll.h>
#include <pthread.h>
#include <sched.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <filesystem>
#include <mutex>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace KivoraTest {

/// Whether this machine has a sequencer.
inline bool HasSequencer() {
    return std::filesystem::exists("/dev/snd/seq");
}

/// Has one port that others play to and one that others listen to, and takes the time of every note that arrives. Other
/// programs see the ports from its construction to its end. [any]
class CSequencerClient {
public:
    struct Note {
        bool on;
        std::uint8_t channel;  ///< 0..15
        std::uint8_t note;
        std::uint8_t velocity;
        std::chrono::steady_clock::time_point arrival;
        std::int64_t wallUs;  ///< the time of day at the arrival
    };

    /// The names of the port that receives and of the one that sends. Throws std::runtime_error without a sequencer.
    CSequencerClient(const std::string& receiving, const std::string& sending) {
        Open(receiver_, SND_SEQ_OPEN_INPUT, receiving, SND_SEQ_PORT_CAP_WRITE | SND_SEQ_PORT_CAP_SUBS_WRITE);
        senderPort_ = Open(sender_, SND_SEQ_OPEN_OUTPUT, sending, SND_SEQ_PORT_CAP_READ | SND_SEQ_PORT_CAP_SUBS_READ);
        thread_ = std::thread([this] { Receive(); });
    }
    ~CSequencerClient() {
        stop_ = true;
        thread_.join();
        snd_seq_close(sender_);
        snd_seq_close(receiver_);
    }
    CSequencerClient(const CSequencerClient&) = delete;
    CSequencerClient& operator=(const CSequencerClient&) = delete;

    /// Sends at once to every listener. Velocity 0 is a note-off.
    void Send(std::uint8_t channel, std::uint8_t note, std::uint8_t velocity) {
        snd_seq_event_t event{};
        event.type = velocity != 0 ? SND_SEQ_EVENT_NOTEON : SND_SEQ_EVENT_NOTEOFF;
        event.data.note.channel = channel;
        event.data.note.note = note;
        event.data.note.velocity = velocity;
        event.source.port = static_cast<unsigned char>(senderPort_);
        event.dest.client = SND_SEQ_ADDRESS_SUBSCRIBERS;
        event.dest.port = SND_SEQ_ADDRESS_UNKNOWN;
        event.queue = SND_SEQ_QUEUE_DIRECT;
        snd_seq_event_output_direct(sender_, &event);
    }
    std::vector<Note> GetNotes() const {
        const std::lock_guard guard(mutex_);
        return notes_;
    }
    std::size_t GetCount() const {
        const std::lock_guard guard(mutex_);
        return notes_.size();
    }
    /// Waits without taking the processor until that many notes are there; false when they are not within the limit.
    bool WaitForCount(std::size_t count, std::chrono::milliseconds limit) const {
        std::unique_lock guard(mutex_);
        return arrived_.wait_for(guard, limit, [&] { return notes_.size() >= count; });
    }
    void Clear() {
        const std::lock_guard guard(mutex_);
        notes_.clear();
    }

private:
    static int Open(snd_seq_t*& handle, int direction, const std::string& name, unsigned capabilities) {
        if (snd_seq_open(&handle, "default", direction, SND_SEQ_NONBLOCK) < 0) {
            throw std::runtime_error("cannot open the ALSA sequencer");
        }
        snd_seq_set_client_name(handle, name.c_str());
        return snd_seq_create_simple_port(handle, name.c_str(), capabilities,
                                          SND_SEQ_PORT_TYPE_MIDI_GENERIC | SND_SEQ_PORT_TYPE_APPLICATION);
    }

    void Receive() {
        // Where that is allowed, so that programs that compute do not delay the taking of the time.
        constexpr sched_param kAboveThePrograms{50};
        pthread_setschedparam(pthread_self(), SCHED_FIFO, &kAboveThePrograms);
        pollfd descriptor{};
        snd_seq_poll_descriptors(receiver_, &descriptor, 1, POLLIN);
        while (!stop_) {
            constexpr int kStopSeenMs = 50;
            if (poll(&descriptor, 1, kStopSeenMs) <= 0) {
                continue;
            }
            for (snd_seq_event_t* event = nullptr; snd_seq_event_input(receiver_, &event) >= 0;) {
                Keep(*event);
            }
        }
    }

    void Keep(const snd_seq_event_t& event) {
        if (event.type != SND_SEQ_EVENT_NOTEON && event.type != SND_SEQ_EVENT_NOTEOFF) {
            return;
        }
        const snd_seq_ev_note_t& note = event.data.note;
        const auto wall = std::chrono::system_clock::now().time_since_epoch();
        const std::lock_guard guard(mutex_);
        notes_.push_back({event.type == SND_SEQ_EVENT_NOTEON && note.velocity != 0, note.channel, note.note,
                          note.velocity, std::chrono::steady_clock::now(),
                          std::chrono::duration_cast<std::chrono::microseconds>(wall).count()});
        arrived_.notify_all();
    }

    snd_seq_t* receiver_ = nullptr;
    snd_seq_t* sender_ = nullptr;
    int senderPort_ = 0;
    mutable std::mutex mutex_;
    mutable std::condition_variable arrived_;
    std::vector<Note> notes_;
    std::atomic<bool> stop_{false};
    std::thread thread_;
};

}  // namespace KivoraTest
