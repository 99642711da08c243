// The abstract file. [owner]
#pragma once

#include <cstddef>
#include <cstdint>

namespace NK {

/// A seekable byte store. Not for use from several threads at once. Failures are counts and results, never exceptions.
class CFile {
public:
    enum Origin : int { kStart = 0, kCurrent = 1, kEnd = 2 };

    virtual ~CFile() = default;
    /// Reads whole elements of `elementSize` bytes; returns how many were read.
    virtual std::size_t Read(void* buffer, std::size_t elementSize, std::size_t count) = 0;
    /// Writes whole elements of `elementSize` bytes; returns how many were written.
    virtual std::size_t Write(const void* buffer, std::size_t elementSize, std::size_t count) = 0;
    /// Offset in bytes; 0 on success.
    virtual int Seek(std::int64_t offset, Origin origin) = 0;
    /// True exactly when Seek() returned 0.
    virtual bool SetPosition(std::int64_t offset, Origin origin = kStart) { return Seek(offset, origin) == 0; }
    virtual bool SeekToStart() { return SetPosition(0, kStart); }
    virtual bool SeekToEnd() { return SetPosition(0, kEnd); }
    /// Whether the file keeps its content in memory.
    virtual bool IsInMemory() const { return false; }
    virtual std::int64_t GetPosition() = 0;
    virtual std::int64_t GetLength() = 0;
    virtual bool IsOpen() const = 0;
    virtual bool IsEOF() const = 0;
    /// Whether the file removes itself when closed.
    virtual bool IsTemporary() const { return false; }
};

/// High byte first; true when the whole number was written.
bool WriteUInt16(CFile& file, std::uint16_t value);
bool WriteUInt32(CFile& file, std::uint32_t value);
/// A zero-terminated tag, written without its terminator; true when all of it was written.
bool WriteTag(CFile& file, const char* tag);

}  // namespace NK
