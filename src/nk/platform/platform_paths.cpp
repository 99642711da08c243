#include "nk/platform/platform_paths.h"

#include <pwd.h>
#include <unistd.h>

#include <cstdlib>
#include <string>

namespace NK::Platform {

namespace {

std::string HomeFolder() {
    const char* const home = std::getenv("HOME");
    if (home != nullptr && home[0] != '\0') {
        return home;
    }
    passwd user{};
    passwd* found = nullptr;
    std::string buffer(16384, '\0');
    if (getpwuid_r(getuid(), &user, buffer.data(), buffer.size(), &found) == 0 && found != nullptr) {
        return found->pw_dir;
    }
    return ".";
}

std::string WithoutSlashAtEnd(std::string path) {
    while (path.size() > 1 && path.back() == '/') {
        path.pop_back();
    }
    return path;
}

}  // namespace

CString GetUserDataBaseFolder() {
    const char* const data = std::getenv("XDG_DATA_HOME");
    if (data != nullptr && data[0] == '/') {
        return CString::FromUtf8(WithoutSlashAtEnd(data));
    }
    return CString::FromUtf8(WithoutSlashAtEnd(HomeFolder()) + "/.local/share");
}

CString GetRuntimeBaseFolder() {
    const char* const runtime = std::getenv("XDG_RUNTIME_DIR");
    if (runtime == nullptr || runtime[0] != '/') {
        return CString();
    }
    const char* const application = std::getenv("FLATPAK_ID");
    const std::string folder = WithoutSlashAtEnd(runtime);
    return CString::FromUtf8(application == nullptr ? folder : folder + "/app/" + application);
}

CString GetExecutablePath() {
    std::string path(256, '\0');
    for (;;) {
        const ssize_t length = readlink("/proc/self/exe", path.data(), path.size());
        if (length < 0) {
            return CString();
        }
        if (static_cast<std::size_t>(length) < path.size()) {
            return CString::FromUtf8(std::string_view(path).substr(0, static_cast<std::size_t>(length)));
        }
        path.resize(path.size() * 2);
    }
}

}  // namespace NK::Platform
