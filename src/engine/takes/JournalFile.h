// The journal of one take on disk. [owner]
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

#include "engine/takes/TakeGrid.h"
#include "libmidi/CaptureFile.h"
#include "libmidi/CaptureStore.h"
#include "nk/nk_file.h"
#include "nk/nk_locked_file.h"
#include "nk/nk_string.h"

namespace Kivora {

/// A file of captured events that this program holds; another one that runs leaves it alone. Not for use from several
/// threads at once.
class JournalFile {
public:
    static constexpr const wchar_t* kExtension = L"kivtake";
    using Opener = std::function<std::unique_ptr<NK::CFile>(const NK::CString& path)>;

    /// A new file of a free name in the folder, which is made where it is missing. Null when none can be written.
    static std::unique_ptr<JournalFile> Create(const NK::CString& folder, std::int64_t startedAt);
    /// Takes hold of one that is there. Null when it cannot be held, see NK::CLockedFile::Claim().
    static std::unique_ptr<JournalFile> Claim(const NK::CString& path);

    const NK::CString& GetPath() const { return file_->GetPath(); }
    /// Reads it whole through a file that `open` makes for reading. What was read counts as written.
    LibMidi::CaptureFileContent Read(const Opener& open, LibMidi::CaptureStore& events);

    std::uint32_t GetWrittenCount() const { return written_; }
    /// Writes the events that are not there yet and, where `markMs` has a value, that the take went on until then.
    /// Returns once they have reached the disk. False when they could not be written: another call makes it good.
    bool Append(const LibMidi::CaptureStore::View& events, std::optional<std::uint32_t> markMs);

    /// The grid of the take, in a file of its own beside this one: in the journal's own format it has no place, and
    /// versions that know nothing of it read the take all the same. What was kept last is not written again.
    bool KeepGrid(const TakeGrid& grid);
    /// Empty where none was kept.
    TakeGrid ReadGrid() const;
    static constexpr const wchar_t* kGridExtension = L"kivgrid";
    /// Removes the file of a grid whose journal is no more.
    static void RemoveGridAlone(const NK::CString& path);

    /// With the grid's file.
    bool Remove();
    /// Gives it a name that no journal has, and returns that; empty when it cannot.
    NK::CString SetAside();

private:
    explicit JournalFile(std::unique_ptr<NK::CLockedFile> file) : file_(std::move(file)) {}

    std::unique_ptr<NK::CLockedFile> file_;
    std::uint32_t written_ = 0;          ///< events
    std::optional<std::uint32_t> mark_;  ///< behind them
    TakeGrid keptGrid_;
};

}  // namespace Kivora
