// Files on disk. [owner]
#pragma once

#include <cstdio>

#include "nk/nk_file.h"
#include "nk/nk_string.h"

namespace NK {

/// A file over a stream of the C library. While it is not open, Read() and Write() return 0, Seek(), GetPosition() and
/// GetLength() return -1, and IsEOF() is true.
class CFILEFile : public CFile {
public:
    CFILEFile() = default;
    explicit CFILEFile(std::FILE* stream) : stream_(stream) {}  ///< takes the stream over; null means not open
    /// Closes the stream.
    ~CFILEFile() override { CFILEFile::Close(); }
    CFILEFile(const CFILEFile&) = delete;
    CFILEFile& operator=(const CFILEFile&) = delete;

    std::size_t Read(void* buffer, std::size_t elementSize, std::size_t count) override;
    std::size_t Write(const void* buffer, std::size_t elementSize, std::size_t count) override;
    int Seek(std::int64_t offset, Origin origin) override;
    std::int64_t GetPosition() override;
    /// In bytes; the position stays.
    std::int64_t GetLength() override;
    bool IsOpen() const override { return stream_ != nullptr; }
    bool IsEOF() const override;
    /// The C library's result of closing (0 on success); 0 when the file was not open.
    virtual int Close();

private:
    std::FILE* stream_ = nullptr;
};

/// A named file. One that cannot be opened is a closed object, no exception.
class CDiskFile : public CFILEFile {
public:
    /// "rb", "wb", "r+b", "w+b", "ab", "a+b".
    enum OpenMode : int { kRead = 0, kWrite = 1, kUpdate = 2, kCreate = 3, kAppend = 4, kReadAppend = 5 };

    /// A mode text of the C library; a null or empty path stays closed. Opening never waits: what is no regular file
    /// cannot be opened, see Platform::OpenFile().
    CDiskFile(const CString& path, const wchar_t* mode);
    /// Throws CException "Bad file open mode constant." for any other constant. The permission bits are accepted and
    /// not used: the C library gives 0666 less the user's mask.
    CDiskFile(const CString& path, int openMode, std::uint32_t permissions = 0664);
};

/// A named file that is removed when it is closed. One that could not be opened removes nothing.
class CTempFile : public CDiskFile {
public:
    CTempFile(const CString& path, const wchar_t* mode) : CDiskFile(path, mode), path_(path) {}
    CTempFile(const CString& path, int openMode, std::uint32_t permissions = 0664)
        : CDiskFile(path, openMode, permissions), path_(path) {}
    ~CTempFile() override { CTempFile::Close(); }

    bool IsTemporary() const override { return true; }
    int Close() override;

private:
    CString path_;
};

}  // namespace NK
