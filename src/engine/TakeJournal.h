// Recordings that are kept until the user has saved or refused them.
#pragma once

#include <QObject>
#include <QPointer>
#include <QString>

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "engine/CKivora.h"
#include "engine/takes/JournalFile.h"
#include "engine/takes/TakeGrid.h"
#include "nk/nk_critical_section.h"
#include "nk/nk_string.h"
#include "nk/nk_time.h"

namespace Kivora {

/// A recording that has ended and was neither saved nor refused.
struct WaitingTake {
    int id = 0;                  ///< as TakeJournal::Save() and Refuse() want it; never used again in this run
    std::int64_t startedAt = 0;  ///< seconds since 1970-01-01 UTC
    int lengthMs = 0;            ///< from the start of the recording to its last event
    bool isFromEarlierRun = false;
    bool isOnDisk = false;   ///< all of it; otherwise it is lost at the end of the program unless it gets there
    bool isFailing = false;  ///< its journal could not be written when that was tried last
    int missing = 0;         ///< events that its damaged journal does not give back
};

/// A journal that tells nobody what it holds.
struct LostJournal {
    NK::CString path;  ///< of the folder when that could not be read
    bool isSetAside =
        false;  ///< damaged, and kept under this name; otherwise it could not be read, and stays for later
};

/// Follows the engine's recordings by itself, whoever starts and stops them. While one runs, what was captured is
/// appended to a journal, a file in the folder, once a second, by the thread "take journal", which waits while there is
/// nothing to append; no file is touched by the threads that play or under the engine's lock. However a recording ends
/// (stop, reset, a change of port, the engine's or this object's end), it waits, with those that waited before, until
/// it is saved or refused; both remove its journal. CKivora::SaveRecording() counts as saving. What waits at the end of
/// the program, or was being recorded when it crashed, is there at the next start.
///
/// A take in which nothing was played does not wait: one that holds nothing but program changes, channel volumes, ends
/// of the pedal and "all notes off". Journals that another running program holds are not touched.
///
/// For the window's thread, and its signals may come from others, so they are to be connected as Qt does by default.
/// Not to be called with the engine's lock held. [gui]
class TakeJournal : public QObject {
    Q_OBJECT

public:
    static constexpr int kPeriodMs = 1000;  ///< between two appends

    struct Settings {
        std::function<std::int64_t()> now = &NK::CurrentTime;  ///< seconds since 1970-01-01 UTC [any]
        bool runThread = true;                                 ///< without it somebody calls WriteOut()
        JournalFile::Opener open = &OpenForReading;            ///< how journals of earlier runs are read
    };
    static std::unique_ptr<NK::CFile> OpenForReading(const NK::CString& path);

    /// Takes up the journals of earlier runs. `folder`, "Takes" in the user's data folder, is made when it is first
    /// needed. The engine is not owned; whichever of the two may end first. Throws nothing on account of the disk.
    TakeJournal(const CKivora& engine, NK::CString folder, Settings settings);
    TakeJournal(const CKivora& engine, NK::CString folder);
    /// A running recording ends for the journal here. Writes out what is left and emits nothing; what waits is there at
    /// the next start.
    ~TakeJournal() override;
    TakeJournal(const TakeJournal&) = delete;
    TakeJournal& operator=(const TakeJournal&) = delete;

    /// The oldest first, so that a recording that has just ended is the last, if it waits at all. One that runs is not
    /// among them.
    std::vector<WaitingTake> GetWaiting() const;
    /// The take as it would be saved, closed; no events when none of that number waits.
    LibMidi::CaptureStore::View GetTake(int id) const;
    /// The same of the recording of this run that ended last, whether it waits or not. No events while one runs.
    LibMidi::CaptureStore::View GetLatestTake() const;
    /// Writes the take as a MIDI file, as CKivora::SaveRecording() does but closed, and on the grid where that is
    /// wanted and known, and forgets it. False when no such take waits and when the file could not be written: then it
    /// waits on, and an older file of that name is as it was.
    bool Save(int id, const NK::CString& path, bool onGrid = false);
    /// The same for the recording of this run that ended last, whether it waits or not. False while one runs.
    bool SaveLatest(const NK::CString& path, bool onGrid = false);
    /// Whether it is known to what bars and beats the take was played: of one of an earlier run, where its journal has
    /// kept it.
    bool HasGrid(int id) const;
    /// The recording of this run that ended last, if it waits; else 0, and while one runs.
    int GetLatest() const;
    /// Forgets the take. False when no such take waits.
    bool Refuse(int id);
    /// Forgets the recording of this run that ended last. False when it does not wait: it was saved or refused already,
    /// nothing was played in it, or there is none.
    bool ForgetLatest();
    /// Whether the journal of any take could not be written when that was tried last.
    bool IsFailing() const;
    /// What the user is told of that, translated.
    static QString GetFailureText();
    /// The journals that were found lost since the last call.
    std::vector<LostJournal> TakeLost();

    /// Appends to the journals what has been captured, and returns once it has reached the disk. [any], but not for a
    /// thread that must not wait
    void WriteOut();

signals:
    /// A recording has ended, one that waited was saved or refused, or one that could not be written is on the disk
    /// now.
    void WaitingChanged();
    /// Once for a recording: it goes on, but its journal could not be written. `text` is GetFailureText(). From the
    /// journal's thread.
    void JournalFailed(const QString& text);

private:
    struct Take;
    class Thread;
    using TakePointer = std::shared_ptr<Take>;

    void TakeUpJournals();
    TakePointer TakeUp(const NK::CString& path) NK_REQUIRES(lock_);
    void FollowRecording();
    /// The recording that runs ends. True when it waits from now on.
    bool EndRecording() NK_REQUIRES(lock_);
    /// Whether a recording runs or one that has ended is not wholly in its journal.
    bool IsBehind() const;
    TakePointer FindWaiting(int id) const;
    /// Null while it runs, and without one.
    TakePointer FindLatest() const;
    bool Save(const TakePointer& take, const NK::CString& path, bool onGrid);
    void Forget(const TakePointer& take);
    bool Append(Take& take, const LibMidi::CaptureStore::View& events, std::optional<std::uint32_t> markMs,
                const TakeGrid& grid) NK_REQUIRES(fileLock_);

    QPointer<const CKivora> engine_;
    const NK::CString folder_;
    const Settings settings_;
    mutable NK::CCriticalSection fileLock_;  ///< held while journals are written or removed; before the other lock
    mutable NK::CCriticalSection lock_;      ///< after the engine's
    std::vector<TakePointer> takes_ NK_GUARDED_BY(lock_);
    TakePointer recorded_ NK_GUARDED_BY(lock_);  ///< the latest of this run, running or not
    std::vector<LostJournal> lost_ NK_GUARDED_BY(lock_);
    int lastId_ NK_GUARDED_BY(lock_) = 0;
    std::unique_ptr<Thread> thread_;
};

}  // namespace Kivora
