// A file on disk that is held by one owner at a time, among all programs. [owner]
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

#include "nk/nk_string.h"

namespace NK {

/// Writes bytes at given places of a file that nobody else can hold meanwhile. The hold ends with the object, and with
/// the process however that ends; who reads or removes the file without holding it is not kept from it. On a file
/// system that knows no locks everybody gets a hold. Not handed on to started programs. Not for use from several
/// threads at once.
class CLockedFile {
public:
    /// Makes a new, empty file, permission bits 0664 less the user's mask, and returns once its name has reached the
    /// disk. Null when something has that name already and when no file can be made there.
    static std::unique_ptr<CLockedFile> Create(const CString& path);
    /// Takes hold of a file that is there. Null when another owner holds it, in this process or another, or has removed
    /// it meanwhile, which leaves GetFileFailure() as it was; and, with the reason there, when it is absent, no regular
    /// file or a link, or cannot be opened for reading and writing.
    static std::unique_ptr<CLockedFile> Claim(const CString& path);
    ~CLockedFile();
    CLockedFile(const CLockedFile&) = delete;
    CLockedFile& operator=(const CLockedFile&) = delete;

    const CString& GetPath() const { return path_; }
    /// True when all bytes were accepted; otherwise any part of them may have been written.
    bool WriteAt(std::int64_t offset, const void* bytes, std::size_t size);
    /// Returns once the content has reached the disk; false on failure.
    bool Flush();
    /// Removes the name from its folder, on the disk too; the hold goes on. False when that fails.
    bool Remove();

private:
    CLockedFile(int descriptor, CString path);

    int descriptor_;
    CString path_;
};

}  // namespace NK
