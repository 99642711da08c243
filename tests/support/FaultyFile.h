// A file in memory that fails when the test wants it to.
#pragma once

#include "nk/nk_memory_file.h"

namespace KivoraTest {

/// Counts its writes and seeks, and refuses the Nth of them and all that follow.
class CFaultyFile : public NK::CMemoryFile {
public:
    static constexpr int kNever = 0;

    int failingWrite = kNever;  ///< 1-based
    int failingSeek = kNever;   ///< 1-based

    int GetWriteCount() const { return writes_; }
    int GetSeekCount() const { return seeks_; }

    std::size_t Write(const void* buffer, std::size_t elementSize, std::size_t count) override {
        ++writes_;
        return IsFailing(writes_, failingWrite) ? 0 : CMemoryFile::Write(buffer, elementSize, count);
    }
    int Seek(std::int64_t offset, Origin origin) override {
        ++seeks_;
        return IsFailing(seeks_, failingSeek) ? -1 : CMemoryFile::Seek(offset, origin);
    }

private:
    static bool IsFailing(int call, int failing) { return failing != kNever && call >= failing; }

    int writes_ = 0;
    int seeks_ = 0;
};

}  // namespace KivoraTest
