#include "nk/nk_file_failure.h"

#include <algorithm>
#include <cstring>
#include <iterator>

#include "nk/nk_translate.h"
#include "nk/nk_translation_mark.h"
#include "nk/platform/platform_files.h"

namespace NK {

namespace {

constexpr const char* kContext = "Files";

/// The system's own words for what files meet most; the catalogues translate them.
constexpr const char* kTranslated[] = {
    KIVORA_TR_NOOP("Files", "Operation not permitted"),
    KIVORA_TR_NOOP("Files", "No such file or directory"),
    KIVORA_TR_NOOP("Files", "Input/output error"),
    KIVORA_TR_NOOP("Files", "Permission denied"),
    KIVORA_TR_NOOP("Files", "File exists"),
    KIVORA_TR_NOOP("Files", "Not a directory"),
    KIVORA_TR_NOOP("Files", "Is a directory"),
    KIVORA_TR_NOOP("Files", "Too many open files in system"),
    KIVORA_TR_NOOP("Files", "Too many open files"),
    KIVORA_TR_NOOP("Files", "Text file busy"),
    KIVORA_TR_NOOP("Files", "File too large"),
    KIVORA_TR_NOOP("Files", "No space left on device"),
    KIVORA_TR_NOOP("Files", "Read-only file system"),
    KIVORA_TR_NOOP("Files", "File name too long"),
    KIVORA_TR_NOOP("Files", "Too many levels of symbolic links"),
    KIVORA_TR_NOOP("Files", "Stale file handle"),
    KIVORA_TR_NOOP("Files", "Disk quota exceeded"),
    KIVORA_TR_NOOP("Files", "Device or resource busy"),
    KIVORA_TR_NOOP("Files", "Transport endpoint is not connected"),
    KIVORA_TR_NOOP("Files", "Host is down"),
};

FileFailure& Failure() noexcept {
    static thread_local FileFailure failure;
    return failure;
}

}  // namespace

const FileFailure& GetFileFailure() noexcept {
    return Failure();
}

void ForgetFileFailure() noexcept {
    Failure().path.Clear();
    Failure().error = 0;
}

void SetFileFailure(const CString& path, int error) {
    Failure() = {path, error};
}

CString DescribeFileError(int error) {
    switch (error) {
        case 0:
        case kErrorUnknown:
            return {};
        case kErrorNoRegularFile:
            return Translate(kContext, KIVORA_TR_NOOP("Files", "It is no regular file"));
        case kErrorTooLarge:
            return Translate(kContext, KIVORA_TR_NOOP("Files", "It is too large"));
        default:
            break;
    }
    const char* const text = Platform::GetErrorText(error);
    const bool isTranslated = std::any_of(std::begin(kTranslated), std::end(kTranslated), [text](const char* known) {
        return text != nullptr && std::strcmp(text, known) == 0;
    });
    return isTranslated ? Translate(kContext, text) : CString::FromUtf8(Platform::GetLocalErrorText(error));
}

}  // namespace NK
