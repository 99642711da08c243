// The system's files and folders. Paths cross to the system as UTF-8. Why something failed stands in errno, and where
// it says so in GetFileFailure(). [any]
#pragma once

#include <cstdint>
#include <cstdio>

#include "nk/nk_string.h"

namespace NK::Platform {

/// What stands at a path, links followed. kUnknown: the system does not tell, for example for want of a permission.
enum class PathKind { kAbsent, kFile, kFolder, kOther, kUnknown };

PathKind GetPathKind(const CString& path);

/// The one place where a named file is opened for reading or writing. As the C library's fopen(), but never waits for
/// what stands at the path: null, and the reason in GetFileFailure(), for folders, FIFOs, sockets and devices as well.
/// Of the devices only the system's memory (/dev/null and its like) can be opened. Not handed on to started programs.
std::FILE* OpenFile(const CString& path, const wchar_t* mode);
/// The flags for open() that keep it from waiting and from taking a terminal, and that hand nothing on to started
/// programs.
int GetOpenFlags();
/// The words of the C library for an error number: in English, or null where it has none; in the language of the
/// system.
const char* GetErrorText(int error);
const char* GetLocalErrorText(int error);
/// 0 on success; the origin is the C library's SEEK_SET, SEEK_CUR or SEEK_END.
int SeekFile(std::FILE* stream, std::int64_t offset, int origin);
std::int64_t TellFile(std::FILE* stream);

/// Creates an empty file beside `path`, with the permissions of the file at `path` where there is one, else 0664 less
/// what the user's mask takes away. Returns its path; empty when none can be created, or when the
/// user may not write the file at `path`.
CString CreateFileBeside(const CString& path);
/// Removes what CreateFileBeside() has made in the folder of `path` and a process has left that ended since: files of
/// this user, with its pattern of names, that were not written for kAbandonedSeconds and whose maker is no living
/// process. The time keeps those that other computers are writing in a shared folder.
void RemoveAbandonedBeside(const CString& path);
inline constexpr std::int64_t kAbandonedSeconds = 24 * 60 * 60;
/// The path with every link followed; the path itself when nothing stands there.
CString ResolveLinks(const CString& path);
/// Returns once the content has reached the disk; false on failure.
bool FlushFileToDisk(const CString& path);
/// The same for the entries of the folder that holds `path`.
bool FlushFolderOf(const CString& path);

/// Replaces the target where there is one. All of these are true on success.
bool RenamePath(const CString& from, const CString& to);
/// Removes a file, not a folder.
bool RemoveFile(const CString& path);
/// One level; permission bits 0755 less what the user's mask takes away.
bool CreateFolder(const CString& path);

/// Appends the names (without folder) of the files in `folder` in the system's order; false when it cannot be read.
bool ListFiles(const CString& folder, CStringArray& names);

}  // namespace NK::Platform
