#include "engine/takes/JournalFile.h"

#include <array>
#include <string>
#include <utility>
#include <vector>

#include "engine/takes/GridFile.h"
#include "nk/nk_damaged_file.h"
#include "nk/nk_directory.h"
#include "nk/nk_paths.h"

namespace Kivora {

using LibMidi::CapturedEvent;
using LibMidi::CaptureStore;
using NK::CString;

namespace {

constexpr int kNamesToTry = 100;
constexpr std::size_t kBytesAtOnce = 65536;

CString ComposeName(std::int64_t startedAt, int number) {
    return CString(L"take-" + std::to_wstring(startedAt) + L"-" + std::to_wstring(number) + L"." +
                   JournalFile::kExtension);
}

CString WithExtension(const CString& path, const wchar_t* extension) {
    return NK::JoinPath(NK::GetFolderName(path), NK::GetFileStem(path) + L"." + extension);
}

void RemoveGridOf(const CString& journal) {
    const CString path = WithExtension(journal, JournalFile::kGridExtension);
    if (NK::FileExists(path)) {
        NK::RemoveFile(path);
    }
}

std::int64_t GetPlaceOf(std::uint32_t record) {
    return static_cast<std::int64_t>(LibMidi::kCaptureHeaderSize + LibMidi::kCaptureRecordSize * record);
}

}  // namespace

std::unique_ptr<JournalFile> JournalFile::Create(const CString& folder, std::int64_t startedAt) {
    std::unique_ptr<NK::CLockedFile> file;
    NK::CreateFolder(folder);
    for (int number = 1; number <= kNamesToTry && !file; ++number) {
        file = NK::CLockedFile::Create(NK::JoinPath(folder, ComposeName(startedAt, number)));
    }
    std::array<std::uint8_t, LibMidi::kCaptureHeaderSize> header;
    LibMidi::EncodeCaptureHeader(startedAt, header.data());
    if (file && !file->WriteAt(0, header.data(), header.size())) {
        file->Remove();
        file.reset();
    }
    return file ? std::unique_ptr<JournalFile>(new JournalFile(std::move(file))) : nullptr;
}

std::unique_ptr<JournalFile> JournalFile::Claim(const CString& path) {
    std::unique_ptr<NK::CLockedFile> file = NK::CLockedFile::Claim(path);
    return file ? std::unique_ptr<JournalFile>(new JournalFile(std::move(file))) : nullptr;
}

LibMidi::CaptureFileContent JournalFile::Read(const Opener& open, CaptureStore& events) {
    LibMidi::CaptureFileContent content;
    const std::unique_ptr<NK::CFile> file = open(GetPath());
    if (!file || !file->IsOpen()) {
        content.isReadable = false;
        return content;
    }
    content = LibMidi::ReadCaptureFile(*file, [&events](const CapturedEvent& event) { events.Append(event); });
    written_ = events.GetCount();
    return content;
}

bool JournalFile::Append(const CaptureStore::View& events, std::optional<std::uint32_t> markMs) {
    if (written_ == events.GetCount() && mark_ == markMs) {
        return true;
    }
    std::vector<std::uint8_t> bytes;
    bytes.reserve(kBytesAtOnce);
    std::uint32_t number = written_;
    std::int64_t offset = GetPlaceOf(number);
    bool isWhole = true;
    const auto write = [&] {
        isWhole = isWhole && file_->WriteAt(offset, bytes.data(), bytes.size());
        offset += static_cast<std::int64_t>(bytes.size());
        bytes.clear();
    };
    const auto addRecord = [&bytes] {
        bytes.resize(bytes.size() + LibMidi::kCaptureRecordSize);
        return &bytes.back() + 1 - LibMidi::kCaptureRecordSize;
    };
    events.Visit(written_, [&](const CapturedEvent& event) {
        LibMidi::EncodeCapturedEvent(event, number++, addRecord());
        if (bytes.size() >= kBytesAtOnce) {
            write();
        }
    });
    if (markMs) {
        LibMidi::EncodeCaptureMark(*markMs, number, addRecord());
    }
    write();
    if (!isWhole || !file_->Flush()) {
        return false;
    }
    written_ = number;
    mark_ = markMs;
    return true;
}

bool JournalFile::KeepGrid(const TakeGrid& grid) {
    if (grid == keptGrid_) {
        return true;
    }
    if (!WriteGrid(grid, WithExtension(GetPath(), kGridExtension))) {
        return false;
    }
    keptGrid_ = grid;
    return true;
}

TakeGrid JournalFile::ReadGrid() const {
    return Kivora::ReadGrid(WithExtension(GetPath(), kGridExtension));
}

void JournalFile::RemoveGridAlone(const CString& path) {
    if (!NK::FileExists(WithExtension(path, kExtension))) {
        NK::RemoveFile(path);
    }
}

bool JournalFile::Remove() {
    RemoveGridOf(GetPath());
    return file_->Remove();
}

CString JournalFile::SetAside() {
    RemoveGridOf(GetPath());
    return NK::SetFileAside(GetPath());
}

}  // namespace Kivora
