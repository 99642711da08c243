// A file in memory. [owner]
#pragma once

#include <string>
#include <string_view>

#include "nk/nk_file.h"

namespace NK {

/// A file whose content is a growing block of bytes; always open. Writing past the end fills the gap with zeros. What
/// memory cannot hold is not written.
class CMemoryFile : public CFile {
public:
    CMemoryFile() = default;
    explicit CMemoryFile(std::string_view content) : content_(content) {}  ///< a copy; stands at the start

    std::size_t Read(void* buffer, std::size_t elementSize, std::size_t count) override;
    std::size_t Write(const void* buffer, std::size_t elementSize, std::size_t count) override;
    /// Not before the start; past the end is allowed.
    int Seek(std::int64_t offset, Origin origin) override;
    bool IsInMemory() const override { return true; }
    std::int64_t GetPosition() override { return static_cast<std::int64_t>(position_); }
    std::int64_t GetLength() override { return static_cast<std::int64_t>(content_.size()); }
    bool IsOpen() const override { return true; }
    /// Whether a read has met the end since the last Seek().
    bool IsEOF() const override { return endMet_; }

    /// All that was written; valid until the next write.
    std::string_view GetContent() const { return content_; }

private:
    std::string content_;
    std::size_t position_ = 0;
    bool endMet_ = false;
};

}  // namespace NK
