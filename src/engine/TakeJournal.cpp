#include "engine/TakeJournal.h"

#include <algorithm>
#include <array>
#include <string>
#include <utility>

#include "engine/RecordedTrack.h"
#include "libmidi/CaptureFile.h"
#include "libmidi/RoundThread.h"
#include "nk/nk_directory.h"
#include "nk/nk_disk_file.h"
#include "nk/nk_locked_file.h"
#include "nk/nk_paths.h"
#include "nk/nk_thread_role.h"

namespace Kivora {

using LibMidi::CapturedEvent;
using LibMidi::CaptureStore;
using NK::CString;
using NK::MIDI::TMIDIMessage;

namespace {

constexpr const wchar_t* kExtension = L"kivtake";
constexpr int kNamesToTry = 100;
constexpr std::uint32_t kStopQuantumMs = 50;
constexpr std::size_t kBytesAtOnce = 65536;

/// Controllers of MIDI 1.0, table III.
constexpr std::uint8_t kChannelVolume = 7;
constexpr std::uint8_t kAllNotesOff = 123;

/// Whether a message tells of somebody who plays, and not only of what the instrument sends around a recording.
bool IsPlayed(TMIDIMessage message) {
    if (message.status == TMIDIMessage::kControlChange) {
        return message.data1 != kChannelVolume && message.data1 != kAllNotesOff &&
               (message.data1 != HeldKeys::kSustainController || message.data2 != 0);
    }
    return message.status < TMIDIMessage::kFirstSystemStatus && message.status != TMIDIMessage::kProgramChange;
}

CString ComposeName(std::int64_t startedAt, int number) {
    return CString(L"take-" + std::to_wstring(startedAt) + L"-" + std::to_wstring(number) + L"." + kExtension);
}

/// A new file of a free name with the header of a journal in it; null when none can be written.
std::unique_ptr<NK::CLockedFile> CreateJournal(const CString& folder, std::int64_t startedAt) {
    std::unique_ptr<NK::CLockedFile> file;
    NK::CreateFolder(folder);
    for (int number = 1; number <= kNamesToTry && !file; ++number) {
        file = NK::CLockedFile::Create(NK::JoinPath(folder, ComposeName(startedAt, number)));
    }
    std::array<std::uint8_t, LibMidi::kCaptureHeaderSize> header;
    LibMidi::EncodeCaptureHeader(startedAt, header.data());
    if (file && !file->WriteAt(0, header.data(), header.size())) {
        file->Remove();
        file.reset();
    }
    return file;
}

/// Writes the events from..end behind the header, each at its own place.
bool WriteEvents(NK::CLockedFile& file, const CaptureStore::View& events, std::uint32_t from) {
    std::vector<std::uint8_t> bytes;
    bytes.reserve(kBytesAtOnce);
    auto offset = static_cast<std::int64_t>(LibMidi::kCaptureHeaderSize + LibMidi::kCaptureRecordSize * from);
    bool written = true;
    const auto write = [&] {
        written = written && file.WriteAt(offset, bytes.data(), bytes.size());
        offset += static_cast<std::int64_t>(bytes.size());
        bytes.clear();
    };
    events.Visit(from, [&](const CapturedEvent& event) {
        bytes.resize(bytes.size() + LibMidi::kCaptureRecordSize);
        LibMidi::EncodeCapturedEvent(event, &bytes.back() + 1 - LibMidi::kCaptureRecordSize);
        if (bytes.size() >= kBytesAtOnce) {
            write();
        }
    });
    write();
    return written && file.Flush();
}

CaptureStore::View ReadJournal(const CString& path) {
    CaptureStore events;
    NK::CDiskFile file(path, NK::CDiskFile::kRead);
    std::int64_t startedAt = 0;
    if (LibMidi::ReadCaptureHeader(file, startedAt) == LibMidi::CaptureFileKind::kCapture) {
        LibMidi::ReadCapturedEvents(file, [&](const CapturedEvent& event) { events.Append(event); });
    }
    return events.GetView();
}

}  // namespace

/// What is not const is guarded by the journal's lock, except the last two, which are guarded by its lock of the files.
struct TakeJournal::Take {
    Take(int number, std::int64_t moment, bool isEarlier)
        : id(number), startedAt(moment), isFromEarlierRun(isEarlier) {}

    void Look(const CapturedEvent& event) {
        lengthMs = event.time;
        isPlayed = isPlayed || IsPlayed(event.message);
        ++count;
    }
    /// Takes in what has been captured since the last time.
    void Follow() {
        if (source) {
            events = source->GetCaptured();
            events.Visit(count, [this](const CapturedEvent& event) { Look(event); });
        }
    }

    const int id;
    const std::int64_t startedAt;
    const bool isFromEarlierRun;
    std::shared_ptr<const LibMidi::MIDIPlayerQueue> source;  ///< while it is recorded
    CaptureStore::View events;                               ///< of this run
    std::uint32_t lengthMs = 0;
    std::uint32_t count = 0;
    std::uint32_t countOnDisk = 0;
    bool isPlayed = false;
    std::unique_ptr<NK::CLockedFile> journal;
    bool hasFailed = false;
};

class TakeJournal::Thread : public LibMidi::RoundThread {
public:
    explicit Thread(TakeJournal& journal) : RoundThread(kLevelNormal, L"take journal"), journal_(journal) { Begin(); }
    ~Thread() override { End(); }

private:
    void RunRounds() override {
        while (SleepInterruptible(kPeriodMs, kStopQuantumMs)) {
            journal_.WriteOut();
        }
    }

    TakeJournal& journal_;
};

TakeJournal::TakeJournal(CKivora& engine, CString folder) : TakeJournal(engine, std::move(folder), Settings()) {
}

TakeJournal::TakeJournal(CKivora& engine, CString folder, Settings settings)
    : engine_(&engine), folder_(std::move(folder)), settings_(std::move(settings)) {
    TakeUpJournals();
    engine.WithLock([&] {
        connect(&engine, &CKivora::RecordingStateChanged, this, &TakeJournal::FollowRecording, Qt::DirectConnection);
        FollowRecording();
    });
    connect(&engine, &CKivora::RecordingSaved, this, &TakeJournal::RefuseLatest, Qt::DirectConnection);
    if (settings_.runThread) {
        thread_ = std::make_unique<Thread>(*this);
    }
}

TakeJournal::~TakeJournal() {
    blockSignals(true);
    if (engine_) {
        // Under the lock with which the engine tells of its recordings: it is telling none to this object.
        engine_->WithLock([this] { disconnect(engine_, nullptr, this, nullptr); });
    }
    thread_.reset();
    {
        const CLockGuard guard(lock_);
        EndRecording();
    }
    WriteOut();
}

void TakeJournal::TakeUpJournals() {
    NK::CStringArray names;
    NK::ListFiles(folder_, names);
    const CLockGuard guard(lock_);
    for (const CString& name : names) {
        if (NK::GetFileExtension(name) == kExtension) {
            if (TakePointer take = TakeUp(NK::JoinPath(folder_, name))) {
                takes_.push_back(std::move(take));
            }
        }
    }
    std::sort(takes_.begin(), takes_.end(), [](const TakePointer& a, const TakePointer& b) {
        return std::pair(a->startedAt, a->id) < std::pair(b->startedAt, b->id);
    });
}

TakeJournal::TakePointer TakeJournal::TakeUp(const CString& path) {
    std::unique_ptr<NK::CLockedFile> journal = NK::CLockedFile::Claim(path);
    if (!journal) {
        return nullptr;
    }
    NK::CDiskFile file(path, NK::CDiskFile::kRead);
    std::int64_t startedAt = 0;
    const LibMidi::CaptureFileKind kind = LibMidi::ReadCaptureHeader(file, startedAt);
    if (!file.IsOpen() || kind == LibMidi::CaptureFileKind::kForeign) {
        return nullptr;
    }
    auto take = std::make_shared<Take>(++lastId_, startedAt, true);
    if (kind == LibMidi::CaptureFileKind::kCapture) {
        LibMidi::ReadCapturedEvents(file, [&take](const CapturedEvent& event) { take->Look(event); });
    }
    if (!take->isPlayed) {
        journal->Remove();
        return nullptr;
    }
    take->countOnDisk = take->count;
    take->journal = std::move(journal);
    return take;
}

void TakeJournal::FollowRecording() {
    bool waits = false;
    {
        const bool isRecording = engine_->IsRecording();
        const CLockGuard guard(lock_);
        waits = EndRecording();
        if (isRecording) {
            recorded_ = std::make_shared<Take>(++lastId_, settings_.now(), false);
            recorded_->source = engine_->GetCapture();
            takes_.push_back(recorded_);
        }
    }
    if (waits) {
        emit WaitingChanged();
    }
}

bool TakeJournal::EndRecording() {
    if (!recorded_ || !recorded_->source) {
        return false;
    }
    recorded_->Follow();
    recorded_->source.reset();
    if (!recorded_->isPlayed) {
        std::erase(takes_, recorded_);
    }
    return recorded_->isPlayed;
}

std::vector<WaitingTake> TakeJournal::GetWaiting() const {
    const CLockGuard guard(lock_);
    std::vector<WaitingTake> waiting;
    for (const TakePointer& take : takes_) {
        if (!take->source) {
            waiting.push_back({take->id, take->startedAt, static_cast<int>(take->lengthMs), take->isFromEarlierRun,
                               take->countOnDisk == take->count});
        }
    }
    return waiting;
}

TakeJournal::TakePointer TakeJournal::FindWaiting(int id) const {
    const CLockGuard guard(lock_);
    const auto found = std::find_if(takes_.begin(), takes_.end(),
                                    [id](const TakePointer& take) { return take->id == id && !take->source; });
    return found == takes_.end() ? nullptr : *found;
}

bool TakeJournal::Save(int id, const CString& path) {
    NK_ASSERT_THREAD_ROLE(gui);
    const TakePointer take = FindWaiting(id);
    if (!take) {
        return false;
    }
    // Neither changes once the take waits.
    const CaptureStore::View events = take->isFromEarlierRun ? ReadJournal(take->journal->GetPath()) : take->events;
    if (!SaveRecordedTrack(events, path)) {
        return false;
    }
    Forget(take);
    return true;
}

bool TakeJournal::Refuse(int id) {
    NK_ASSERT_THREAD_ROLE(gui);
    const TakePointer take = FindWaiting(id);
    if (take) {
        Forget(take);
    }
    return take != nullptr;
}

bool TakeJournal::RefuseLatest() {
    TakePointer latest;
    {
        const CLockGuard guard(lock_);
        latest = recorded_;
    }
    return latest && Refuse(latest->id);
}

void TakeJournal::Forget(const TakePointer& take) {
    {
        const CLockGuard files(fileLock_);
        {
            const CLockGuard guard(lock_);
            std::erase(takes_, take);
        }
        if (take->journal) {
            take->journal->Remove();
            take->journal.reset();
        }
    }
    emit WaitingChanged();
}

void TakeJournal::WriteOut() {
    bool failed = false;
    {
        const CLockGuard files(fileLock_);
        std::vector<std::pair<TakePointer, CaptureStore::View>> behind;
        {
            const CLockGuard guard(lock_);
            for (const TakePointer& take : takes_) {
                take->Follow();
                if (take->isPlayed && take->countOnDisk < take->count) {
                    behind.emplace_back(take, take->events);
                }
            }
        }
        for (const auto& [take, events] : behind) {
            if (!Append(*take, events) && !std::exchange(take->hasFailed, true)) {
                failed = true;
            }
        }
    }
    if (failed) {
        emit JournalFailed(tr("The recording goes on, but it cannot be kept safe on the disk meanwhile."));
    }
}

bool TakeJournal::Append(Take& take, const CaptureStore::View& events) {
    if (!take.journal) {
        take.journal = CreateJournal(folder_, take.startedAt);
    }
    if (!take.journal || !WriteEvents(*take.journal, events, take.countOnDisk)) {
        return false;
    }
    const CLockGuard guard(lock_);
    take.countOnDisk = events.GetCount();
    return true;
}

}  // namespace Kivora
