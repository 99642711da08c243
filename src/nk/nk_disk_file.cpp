#include "nk/nk_disk_file.h"

#include "nk/platform/platform_files.h"

namespace NK {

namespace {

const wchar_t* ModeText(int openMode) {
    switch (openMode) {
        case CDiskFile::kRead:
            return L"rb";
        case CDiskFile::kWrite:
            return L"wb";
        case CDiskFile::kUpdate:
            return L"r+b";
        case CDiskFile::kCreate:
            return L"w+b";
        case CDiskFile::kAppend:
            return L"ab";
        case CDiskFile::kReadAppend:
            return L"a+b";
        default:
            throw CException(L"Bad file open mode constant.");
    }
}

}  // namespace

std::size_t CFILEFile::Read(void* buffer, std::size_t elementSize, std::size_t count) {
    return stream_ == nullptr ? 0 : std::fread(buffer, elementSize, count, stream_);
}

std::size_t CFILEFile::Write(const void* buffer, std::size_t elementSize, std::size_t count) {
    return stream_ == nullptr ? 0 : std::fwrite(buffer, elementSize, count, stream_);
}

int CFILEFile::Seek(std::int64_t offset, Origin origin) {
    if (stream_ == nullptr) {
        return -1;
    }
    const int systemOrigin = origin == kStart ? SEEK_SET : origin == kCurrent ? SEEK_CUR : SEEK_END;
    return Platform::SeekFile(stream_, offset, systemOrigin);
}

std::int64_t CFILEFile::GetPosition() {
    return stream_ == nullptr ? -1 : Platform::TellFile(stream_);
}

std::int64_t CFILEFile::GetLength() {
    const std::int64_t position = GetPosition();
    if (position < 0 || Seek(0, kEnd) != 0) {
        return -1;
    }
    const std::int64_t length = GetPosition();
    return Seek(position, kStart) == 0 ? length : -1;
}

bool CFILEFile::IsEOF() const {
    return stream_ == nullptr || std::feof(stream_) != 0;
}

int CFILEFile::Close() {
    if (stream_ == nullptr) {
        return 0;
    }
    std::FILE* const stream = stream_;
    stream_ = nullptr;
    return std::fclose(stream);
}

CDiskFile::CDiskFile(const CString& path, const wchar_t* mode)
    : CFILEFile(path.IsEmpty() || mode == nullptr ? nullptr : Platform::OpenFile(path, mode)) {
}

CDiskFile::CDiskFile(const CString& path, int openMode, std::uint32_t) : CDiskFile(path, ModeText(openMode)) {
}

int CTempFile::Close() {
    if (!IsOpen()) {
        return 0;
    }
    const int result = CDiskFile::Close();
    Platform::RemoveFile(path_);
    return result;
}

}  // namespace NK
