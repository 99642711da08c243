#include "nk/nk_paths.h"

#include "nk/platform/platform_paths.h"

namespace NK {

CString GetUserDataBaseDir() {
    return Platform::GetUserDataBaseFolder();
}

CString ComposeUserDataDir(const CString& maker, const CString& product) {
    return JoinPath(JoinPath(GetUserDataBaseDir(), maker), product);
}

CString GetMeetingDir(const CString& product) {
    const CString base = Platform::GetRuntimeBaseFolder();
    return base.IsEmpty() ? CString() : JoinPath(base, product);
}

CString GetExecutableDir() {
    return GetFolderName(Platform::GetExecutablePath());
}

CString JoinPath(const CString& folder, const CString& name) {
    if (folder.IsEmpty()) {
        return name;
    }
    return folder[folder.GetLength() - 1] == L'/' ? folder + name : folder + L"/" + name;
}

CString GetFileName(const CString& path) {
    return path.Mid(static_cast<std::uint32_t>(path.FindLast(L'/') + 1));
}

CString GetFolderName(const CString& path) {
    const std::int32_t slash = path.FindLast(L'/');
    return slash < 0 ? CString() : path.Left(slash == 0 ? 1 : static_cast<std::uint32_t>(slash));
}

CString GetFileExtension(const CString& path) {
    const CString name = GetFileName(path);
    const std::int32_t dot = name.FindLast(L'.');
    return dot <= 0 ? CString() : name.Mid(static_cast<std::uint32_t>(dot + 1));
}

CString GetFileStem(const CString& path) {
    const CString name = GetFileName(path);
    const std::int32_t dot = name.FindLast(L'.');
    return dot <= 0 ? name : name.Left(static_cast<std::uint32_t>(dot));
}

}  // namespace NK
