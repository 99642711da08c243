#include "libmidi/alsa/AlsaClient.h"

#include <cerrno>
#include <limits>

#include "libmidi/alsa/AlsaNames.h"
#include "libmidi/PortNames.h"
#include "libmidi/RoundThread.h"
#include "nk/nk_thread_role.h"
#include "nk/platform/platform_descriptor_wait.h"

namespace LibMidi {

namespace {

constexpr unsigned int kSends = SND_SEQ_PORT_CAP_READ;
constexpr unsigned int kReceives = SND_SEQ_PORT_CAP_WRITE;
constexpr unsigned int kSendsToAll = kSends | SND_SEQ_PORT_CAP_SUBS_READ;
constexpr unsigned int kReceivesFromAll = kReceives | SND_SEQ_PORT_CAP_SUBS_WRITE;
constexpr unsigned int kType =
    SND_SEQ_PORT_TYPE_MIDI_GENERIC | SND_SEQ_PORT_TYPE_SOFTWARE | SND_SEQ_PORT_TYPE_APPLICATION;

constexpr std::size_t kPoolSize = 2000;  ///< the kernel's limit: events that wait for a thread that does not get to run
/// The longest system message that the pool takes: one that did not fit would never be read, and nothing behind it.
constexpr std::size_t kBufferSize = (kPoolSize + 1) * sizeof(snd_seq_event_t);
constexpr std::size_t kMostAtOnce = 4096;

constexpr snd_seq_addr_t kSystemAnnouncements{SND_SEQ_CLIENT_SYSTEM, SND_SEQ_PORT_SYSTEM_ANNOUNCE};

/// Whether it is the client itself that is no more, not the receiver that does not take an event: of a receiver whose
/// device is being pulled out the driver says -ENODEV.
bool IsClientGone(int result) {
    return result == -EBADFD || result == -EBADF;
}

}  // namespace

/// Sleeps until something arrives.
class AlsaClient::InputThread : public RoundThread {
public:
    InputThread(AlsaClient& client, std::vector<int> descriptors)
        : RoundThread(kLevelHighest, L"MIDI input"), client_(client), wait_(std::move(descriptors)) {}

    void WakeAndEnd() {
        RequestStop();
        wait_.Wake();
        End();
    }

private:
    void RunRounds() override {
        NK_REGISTER_THREAD_ROLE(input);
        using Outcome = NK::Platform::CDescriptorWait::Outcome;
        for (;;) {
            const Outcome outcome = wait_.Wait();
            if (outcome == Outcome::kWoken) {
                return;
            }
            if (outcome == Outcome::kBroken) {
                client_.Fail();
                return;
            }
            while (client_.RunInputRound()) {
                if (IsStopRequested()) {
                    return;
                }
            }
            if (!client_.Works()) {
                return;
            }
        }
    }

    AlsaClient& client_;
    NK::Platform::CDescriptorWait wait_;
};

AlsaClient::AlsaClient(AlsaSeqApi& api, NK::CSleeper& sleeper, Threads threads)
    : api_(api), sleeper_(sleeper), receivers_(sleeper), watchers_(sleeper) {
    Open();
    if (IsOpen() && threads == Threads::kRun) {
        thread_ = std::make_unique<InputThread>(*this, api_.GetPollDescriptors(sequencer_));
        if (!thread_->Begin()) {
            thread_.reset();
            hasFailed_ = true;
        }
    }
}

AlsaClient::~AlsaClient() {
    if (thread_ != nullptr) {
        thread_->WakeAndEnd();
    }
    if (sequencer_ != nullptr) {
        api_.Close(sequencer_);
    }
}

void AlsaClient::Open() {
    if (api_.Open(&sequencer_) < 0) {
        sequencer_ = nullptr;
        return;
    }
    id_ = api_.GetClientId(sequencer_);
    TakeName();
    api_.SetClientPoolInput(sequencer_, kPoolSize);
    api_.SetInputBufferSize(sequencer_, kBufferSize);
    const auto sender = CreatePort(AlsaNames::kPublicSender, kSendsToAll);
    const auto receiver = CreatePort(AlsaNames::kPublicReceiver, kReceivesFromAll);
    const auto announcements = CreatePort("Announcements", kReceives | SND_SEQ_PORT_CAP_NO_EXPORT);
    if (!sender || !receiver || !announcements || !Connect(kSystemAnnouncements, *announcements)) {
        api_.Close(sequencer_);
        sequencer_ = nullptr;
        return;
    }
    publicSender_ = *sender;
    publicReceiver_ = *receiver;
    announcements_ = *announcements;
}

void AlsaClient::TakeName() {
    constexpr int kAny = std::numeric_limits<int>::max();
    std::string name;
    do {
        name = FindFreeName(NK::CString::FromUtf8(AlsaNames::kClient), [this](const NK::CString& free) {
                   return IsNameTaken(free.ToUtf8(), kAny);
               }).ToUtf8();
        api_.SetClientName(sequencer_, name.c_str());
    } while (IsNameTaken(name, id_));  // by an instance that started in the same moment, which keeps it
}

bool AlsaClient::IsNameTaken(const std::string& name, int highestClient) const {
    AlsaClientInfo info;
    while (api_.QueryNextClient(sequencer_, info) >= 0 && info.client < highestClient) {
        if (info.client != id_ && info.name == name) {
            return true;
        }
    }
    return false;
}

std::vector<AlsaListedPort> AlsaClient::ListPorts() const {
    std::vector<AlsaListedPort> ports;
    AlsaClientInfo client;
    while (IsOpen() && api_.QueryNextClient(sequencer_, client) >= 0) {
        if (client.client == SND_SEQ_CLIENT_SYSTEM || client.client == id_) {
            continue;
        }
        AlsaPortInfo port;
        for (int last = -1; api_.QueryNextPort(sequencer_, client.client, last, port) >= 0; last = port.address.port) {
            const bool isHidden = (port.capabilities & SND_SEQ_PORT_CAP_NO_EXPORT) != 0;
            const bool sends = !isHidden && (port.capabilities & kSendsToAll) == kSendsToAll;
            const bool receives = !isHidden && (port.capabilities & kReceivesFromAll) == kReceivesFromAll;
            if (sends || receives) {
                ports.push_back({port.address, client.name, port.name, sends, receives});
            }
        }
    }
    return ports;
}

bool AlsaClient::IsThere(snd_seq_addr_t address) const {
    AlsaPortInfo info;
    return IsOpen() && api_.GetAnyPortInfo(sequencer_, address, info) >= 0;
}

std::optional<snd_seq_addr_t> AlsaClient::CreatePort(const char* name, unsigned int capabilities) {
    const int port = api_.CreateSimplePort(sequencer_, name, capabilities, kType);
    if (port < 0) {
        return std::nullopt;
    }
    return snd_seq_addr_t{static_cast<unsigned char>(id_), static_cast<unsigned char>(port)};
}

std::optional<snd_seq_addr_t> AlsaClient::CreateReceiver() {
    return CreatePort("Input", kReceives | SND_SEQ_PORT_CAP_NO_EXPORT);
}

std::optional<snd_seq_addr_t> AlsaClient::CreateSender() {
    return CreatePort("Output", kSends | SND_SEQ_PORT_CAP_NO_EXPORT);
}

void AlsaClient::DeletePort(snd_seq_addr_t own) {
    api_.DeleteSimplePort(sequencer_, own.port);
}

bool AlsaClient::Connect(snd_seq_addr_t sender, snd_seq_addr_t receiver) {
    return api_.SubscribePort(sequencer_, sender, receiver) >= 0 || IsConnected(sender, receiver);
}

bool AlsaClient::IsConnected(snd_seq_addr_t sender, snd_seq_addr_t receiver) const {
    return api_.GetPortSubscription(sequencer_, sender, receiver) >= 0;
}

bool AlsaClient::Send(snd_seq_event_t& event) {
    event.queue = SND_SEQ_QUEUE_DIRECT;
    const int result = api_.EventOutputDirect(sequencer_, &event);
    if (IsClientGone(result)) {
        hasFailed_ = true;  // the reading thread tells of it when it finds out
    }
    return result >= 0;
}

bool AlsaClient::IsNews(const snd_seq_event_t& event) const {
    switch (event.type) {
        case SND_SEQ_EVENT_CLIENT_START:
        case SND_SEQ_EVENT_CLIENT_EXIT:
        case SND_SEQ_EVENT_CLIENT_CHANGE:
        case SND_SEQ_EVENT_PORT_START:
        case SND_SEQ_EVENT_PORT_EXIT:
        case SND_SEQ_EVENT_PORT_CHANGE:
            return event.data.addr.client != id_;
        case SND_SEQ_EVENT_PORT_UNSUBSCRIBED:
            return event.data.connect.sender.client == id_ || event.data.connect.dest.client == id_;
        default:
            return false;
    }
}

void AlsaClient::HandOver() {
    if (!arrived_.empty()) {
        receivers_.ForEach([this](AlsaReceiver& receiver) { receiver.Take(arrived_); });
        arrived_.clear();
    }
}

bool AlsaClient::RunInputRound() {
    NK_ASSERT_THREAD_ROLE(input);
    bool hasNews = false;
    int result = 0;
    std::size_t count = 0;
    for (; count < kMostAtOnce; ++count) {
        snd_seq_event_t* event = nullptr;
        result = api_.EventInput(sequencer_, &event);
        if (result == -ENOSPC) {
            HandOver();
            receivers_.ForEach([](AlsaReceiver& receiver) { receiver.TakeLoss(); });
            hasNews = true;  // announcements may be among what is lost
        } else if (result < 0 && result != -EINTR) {
            break;
        } else if (result >= 0 && event != nullptr) {
            if (event->dest.port == announcements_.port) {
                hasNews = hasNews || IsNews(*event);
            } else {
                arrived_.push_back(*event);
            }
        }
    }
    HandOver();
    if (hasNews) {
        receivers_.ForEach([](AlsaReceiver& receiver) { receiver.TakeNews(); });
    }
    receivers_.ForEach([](AlsaReceiver& receiver) { receiver.Deliver(); });
    if (hasNews) {
        watchers_.ForEach([](AlsaWatcher& watcher) { watcher.OnNews(); });
    }
    if (count < kMostAtOnce && result != -EAGAIN) {
        Fail();
    }
    return count == kMostAtOnce;
}

void AlsaClient::Fail() {
    hasFailed_ = true;
    receivers_.ForEach([](AlsaReceiver& receiver) { receiver.TakeNews(); });
    receivers_.ForEach([](AlsaReceiver& receiver) { receiver.Deliver(); });
    watchers_.ForEach([](AlsaWatcher& watcher) { watcher.OnNews(); });
}

}  // namespace LibMidi
