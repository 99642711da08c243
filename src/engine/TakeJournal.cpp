#include "engine/TakeJournal.h"

#include <algorithm>
#include <cerrno>
#include <optional>
#include <utility>

#include "engine/EngineExtras.h"
#include "engine/takes/ClosedTake.h"
#include "engine/takes/RecordedTrack.h"
#include "libmidi/OpenSounds.h"
#include "libmidi/RoundThread.h"
#include "midi/MIDIControllers.h"
#include "nk/nk_directory.h"
#include "nk/nk_disk_file.h"
#include "nk/nk_file_failure.h"
#include "nk/nk_paths.h"
#include "nk/nk_thread_role.h"
#include "nk/nk_wakeup.h"

namespace Kivora {

using LibMidi::CapturedEvent;
using LibMidi::CaptureStore;
using NK::CString;
using NK::MIDI::TMIDIMessage;

namespace {

/// Whether a message tells of somebody who plays, and not only of what the instrument sends around a recording.
bool IsPlayed(TMIDIMessage message) {
    if (message.status == TMIDIMessage::kControlChange) {
        return message.data1 != NK::MIDI::Controller::kVolume && message.data1 != NK::MIDI::Controller::kAllNotesOff &&
               (message.data1 != NK::MIDI::Controller::kSustain || message.data2 != 0);
    }
    return message.status < TMIDIMessage::kFirstSystemStatus && message.status != TMIDIMessage::kProgramChange;
}

/// Whether an operation on a file or folder failed, since ForgetFileFailure(), though something of its kind may be
/// there.
bool IsKeptFromUs() {
    const int error = NK::GetFileFailure().error;
    return error != 0 && error != ENOENT && error != ENOTDIR;
}

LostJournal SetAside(JournalFile& journal) {
    const CString path = journal.SetAside();
    return {path.IsEmpty() ? journal.GetPath() : path, !path.IsEmpty()};
}

}  // namespace

/// What is not const is guarded by the journal's lock, except the journal and whether its failure was told, which are
/// guarded by its lock of the files.
struct TakeJournal::Take {
    Take(int number, std::int64_t moment, bool isEarlier)
        : id(number), startedAt(moment), isFromEarlierRun(isEarlier) {}

    void Look(const CapturedEvent& event) {
        lengthMs = event.time;
        isPlayed = isPlayed || IsPlayed(event.message);
        open.Follow(event.message);
        ++count;
    }
    /// Takes in what has been captured since the last time.
    void Follow() {
        if (source) {
            endMs = source->GetCaptureTimeMs();
            grid = gridSource->Get();
            events = source->GetCaptured();
            events.Visit(count, [this](const CapturedEvent& event) { Look(event); });
        }
    }
    /// Once it has ended: neither of the two changes any more.
    CaptureStore::View GetClosed() const { return CloseTake(events, endMs); }
    /// When what is open was still held; nothing where nothing is.
    std::optional<std::uint32_t> GetMark() const {
        return open.IsAny() && endMs > lengthMs ? std::optional(endMs) : std::nullopt;
    }

    const int id;
    const std::int64_t startedAt;
    const bool isFromEarlierRun;
    std::shared_ptr<const LibMidi::MIDIPlayerQueue> source;  ///< while it is recorded
    std::shared_ptr<const RunningGrid> gridSource;           ///< while it is recorded
    CaptureStore::View events;
    TakeGrid grid;  ///< empty where it is not known
    LibMidi::OpenSounds open;
    std::uint32_t lengthMs = 0;  ///< to the last event
    std::uint32_t endMs = 0;
    std::uint32_t count = 0;
    std::uint32_t countOnDisk = 0;
    std::uint32_t missing = 0;
    bool isPlayed = false;
    bool isJournalDamaged = false;
    std::unique_ptr<JournalFile> journal;
    bool isComplete = false;  ///< it has ended, and all of it is in the journal
    bool isFailing = false;
    bool isFailureTold = false;
};

class TakeJournal::Thread : public LibMidi::RoundThread {
public:
    explicit Thread(TakeJournal& journal) : RoundThread(kLevelNormal, L"take journal"), journal_(journal) { Begin(); }
    ~Thread() override { End(); }

    void RequestStop() override {
        RoundThread::RequestStop();
        wakeup.Wake();
    }

    NK::CWakeup wakeup;  ///< a recording has begun or ended

private:
    void RunRounds() override {
        constexpr std::int64_t kPeriodNs = std::int64_t{kPeriodMs} * 1'000'000;
        std::int64_t nextNs = NK::CWakeup::kNever;
        while (!IsStopRequested()) {
            const std::int64_t nowNs = NK::CWakeup::NowNs();
            if (nowNs >= nextNs) {
                journal_.WriteOut();
                nextNs = NK::CWakeup::kNever;
            } else if (!journal_.IsBehind()) {
                nextNs = NK::CWakeup::kNever;
                wakeup.WaitUntil(NK::CWakeup::kNever);
            } else {
                nextNs = std::min(nextNs, nowNs + kPeriodNs);
                wakeup.WaitUntil(nextNs);
            }
        }
    }

    TakeJournal& journal_;
};

TakeJournal::TakeJournal(const CKivora& engine, CString folder) : TakeJournal(engine, std::move(folder), Settings()) {
}

TakeJournal::TakeJournal(const CKivora& engine, CString folder, Settings settings)
    : engine_(&engine), folder_(std::move(folder)), settings_(std::move(settings)) {
    TakeUpJournals();
    engine.WithLock([&] {
        connect(&engine, &CKivora::RecordingStateChanged, this, &TakeJournal::FollowRecording, Qt::DirectConnection);
        FollowRecording();
    });
    connect(&engine, &CKivora::RecordingSaved, this, &TakeJournal::ForgetLatest, Qt::DirectConnection);
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
    NK::ForgetFileFailure();
    const bool isListed = NK::ListFiles(folder_, names);
    const CLockGuard guard(lock_);
    if (!isListed && IsKeptFromUs()) {
        lost_.push_back({folder_, false});
    }
    for (const CString& name : names) {
        const CString path = NK::JoinPath(folder_, name);
        if (NK::GetFileExtension(name) == JournalFile::kGridExtension) {
            JournalFile::RemoveGridAlone(path);
        } else if (NK::GetFileExtension(name) == JournalFile::kExtension) {
            if (TakePointer take = TakeUp(path)) {
                takes_.push_back(std::move(take));
            }
        }
    }
    std::sort(takes_.begin(), takes_.end(), [](const TakePointer& a, const TakePointer& b) {
        return std::pair(a->startedAt, a->id) < std::pair(b->startedAt, b->id);
    });
}

TakeJournal::TakePointer TakeJournal::TakeUp(const CString& path) {
    NK::ForgetFileFailure();
    std::unique_ptr<JournalFile> journal = JournalFile::Claim(path);
    if (!journal) {
        if (IsKeptFromUs()) {
            lost_.push_back({path, false});
        }
        return nullptr;
    }
    CaptureStore events;
    const LibMidi::CaptureFileContent content = journal->Read(settings_.open, events);
    auto take = std::make_shared<Take>(++lastId_, content.startedAt.value_or(settings_.now()), true);
    take->events = events.GetView();
    take->events.Visit(0, [&take](const CapturedEvent& event) { take->Look(event); });
    if (!take->isPlayed) {
        if (!content.isReadable) {
            lost_.push_back({path, false});
        } else if (content.kind == LibMidi::CaptureFileKind::kForeign || content.isDamaged) {
            lost_.push_back(SetAside(*journal));
        } else if (content.kind != LibMidi::CaptureFileKind::kLater) {
            journal->Remove();
        }
        return nullptr;
    }
    take->endMs = content.endMs;
    take->grid = journal->ReadGrid();
    take->missing = content.missing;
    take->countOnDisk = take->count;
    take->isJournalDamaged = content.isDamaged;
    take->journal = std::move(journal);
    return take;
}

std::vector<LostJournal> TakeJournal::TakeLost() {
    const CLockGuard guard(lock_);
    return std::exchange(lost_, {});
}

std::unique_ptr<NK::CFile> TakeJournal::OpenForReading(const CString& path) {
    return std::make_unique<NK::CDiskFile>(path, NK::CDiskFile::kRead);
}

void TakeJournal::FollowRecording() {
    bool waits = false;
    {
        const bool isRecording = engine_->IsRecording();
        const auto grid = engine_->WithExtras([](const EngineExtras& extras) { return extras.GetGrid(); });
        const CLockGuard guard(lock_);
        waits = EndRecording();
        if (isRecording) {
            recorded_ = std::make_shared<Take>(++lastId_, settings_.now(), false);
            recorded_->source = engine_->GetCapture();
            recorded_->gridSource = grid;
            takes_.push_back(recorded_);
        }
    }
    if (thread_) {
        thread_->wakeup.Wake();
    }
    if (waits) {
        emit WaitingChanged();
    }
}

bool TakeJournal::IsBehind() const {
    const CLockGuard guard(lock_);
    return std::any_of(takes_.begin(), takes_.end(), [](const TakePointer& take) {
        return take->source != nullptr || !(take->isFromEarlierRun || take->isComplete);
    });
}

bool TakeJournal::EndRecording() {
    if (!recorded_ || !recorded_->source) {
        return false;
    }
    recorded_->Follow();
    recorded_->source.reset();
    recorded_->gridSource.reset();
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
                               take->countOnDisk == take->count, take->isFailing, static_cast<int>(take->missing)});
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

CaptureStore::View TakeJournal::GetTake(int id) const {
    NK_ASSERT_THREAD_ROLE(gui);
    const TakePointer take = FindWaiting(id);
    return take ? take->GetClosed() : CaptureStore::View();
}

TakeJournal::TakePointer TakeJournal::FindLatest() const {
    const CLockGuard guard(lock_);
    return recorded_ && !recorded_->source ? recorded_ : nullptr;
}

CaptureStore::View TakeJournal::GetLatestTake() const {
    NK_ASSERT_THREAD_ROLE(gui);
    const TakePointer latest = FindLatest();
    return latest ? latest->GetClosed() : CaptureStore::View();
}

bool TakeJournal::HasGrid(int id) const {
    NK_ASSERT_THREAD_ROLE(gui);
    const TakePointer take = FindWaiting(id);
    return take && !take->grid.IsEmpty();
}

bool TakeJournal::Save(int id, const CString& path, bool onGrid) {
    NK_ASSERT_THREAD_ROLE(gui);
    return Save(FindWaiting(id), path, onGrid);
}

bool TakeJournal::SaveLatest(const CString& path, bool onGrid) {
    NK_ASSERT_THREAD_ROLE(gui);
    return Save(FindLatest(), path, onGrid);
}

bool TakeJournal::Save(const TakePointer& take, const CString& path, bool onGrid) {
    if (!take) {
        return false;
    }
    const bool saved = onGrid && !take->grid.IsEmpty() ? SaveTrackOnGrid(take->GetClosed(), take->grid, path)
                                                       : SaveRecordedTrack(take->GetClosed(), path);
    if (!saved) {
        return false;
    }
    Forget(take);
    return true;
}

int TakeJournal::GetLatest() const {
    TakePointer latest;
    {
        const CLockGuard guard(lock_);
        latest = recorded_;
    }
    return latest && FindWaiting(latest->id) ? latest->id : 0;
}

bool TakeJournal::Refuse(int id) {
    NK_ASSERT_THREAD_ROLE(gui);
    const TakePointer take = FindWaiting(id);
    if (take) {
        Forget(take);
    }
    return take != nullptr;
}

bool TakeJournal::ForgetLatest() {
    const int latest = GetLatest();
    return latest != 0 && Refuse(latest);
}

void TakeJournal::Forget(const TakePointer& take) {
    {
        const CLockGuard files(fileLock_);
        {
            const CLockGuard guard(lock_);
            std::erase(takes_, take);
        }
        if (take->journal && take->isJournalDamaged) {
            const LostJournal kept = SetAside(*take->journal);
            const CLockGuard guard(lock_);
            lost_.push_back(kept);
        } else if (take->journal) {
            take->journal->Remove();
        }
        take->journal.reset();
    }
    emit WaitingChanged();
}

void TakeJournal::WriteOut() {
    bool failed = false;
    bool recovered = false;
    {
        const CLockGuard files(fileLock_);
        struct Behind {
            TakePointer take;
            CaptureStore::View events;
            std::optional<std::uint32_t> markMs;
            TakeGrid grid;
            bool isLast;  ///< nothing more comes
        };
        std::vector<Behind> behind;
        {
            const CLockGuard guard(lock_);
            for (const TakePointer& take : takes_) {
                take->Follow();
                if (take->isPlayed && !take->isFromEarlierRun) {
                    behind.push_back({take, take->events, take->GetMark(), take->grid, take->source == nullptr});
                }
            }
        }
        for (const auto& [take, events, markMs, grid, isLast] : behind) {
            const bool isFailing = !Append(*take, events, markMs, grid);
            const CLockGuard guard(lock_);
            recovered = recovered || (take->isFailing && !isFailing);
            take->isFailing = isFailing;
            take->isComplete = isLast && !isFailing;
            failed = failed || (isFailing && !std::exchange(take->isFailureTold, true));
        }
    }
    if (failed) {
        emit JournalFailed(GetFailureText());
    }
    if (recovered) {
        emit WaitingChanged();
    }
}

bool TakeJournal::IsFailing() const {
    const CLockGuard guard(lock_);
    return std::any_of(takes_.begin(), takes_.end(), [](const TakePointer& take) { return take->isFailing; });
}

QString TakeJournal::GetFailureText() {
    return tr("The recording goes on, but it cannot be kept safe on the disk meanwhile.");
}

bool TakeJournal::Append(Take& take, const CaptureStore::View& events, std::optional<std::uint32_t> markMs,
                         const TakeGrid& grid) {
    if (!take.journal) {
        take.journal = JournalFile::Create(folder_, take.startedAt);
    }
    if (!take.journal || !take.journal->Append(events, markMs)) {
        return false;
    }
    static_cast<void>(take.journal->KeepGrid(grid));  // without it the take is whole
    const CLockGuard guard(lock_);
    take.countOnDisk = events.GetCount();
    return true;
}

}  // namespace Kivora
