#include "nk/nk_logger.h"

#include <cstdio>
#include <cstdlib>
#include <cwctype>
#include <iterator>
#include <string_view>

#include "nk/nk_time.h"
#include "nk/platform/platform_clock.h"

namespace NK {
namespace {

// Read and written with the framework-wide lock held.
CLogger* currentLogger = nullptr;

CLogger& DefaultLogger() {
    // Never destroyed: code that runs while the process ends may still log.
    static CConsoleLogger& logger = *new CConsoleLogger;
    return logger;
}

}  // namespace

CLogger::~CLogger() {
    ResetCurrentLogger(this);
}

bool CLogger::IsShortTimestamp() const {
    const CLockGuard guard(lock_);
    return shortTimestamp_;
}

void CLogger::SetShortTimestamp(bool on) {
    const CLockGuard guard(lock_);
    shortTimestamp_ = on;
}

void CLogger::FormatTimestamp(CString& text) const {
    Platform::TLocalTime local;
    const bool known = Platform::ToLocalTime(GetNow(), local);
    wchar_t buffer[80] = L"";
    if (IsShortTimestamp()) {
        if (!known) {
            text = L"NULL \"tm\"";
            return;
        }
        std::swprintf(buffer, std::size(buffer), L"<%02d/%02d %02d:%02d:%02d>", local.time.tm_mon + 1,
                      local.time.tm_mday, local.time.tm_hour, local.time.tm_min, local.time.tm_sec);
        text = buffer;
        return;
    }
    std::wstring_view line;
    if (known) {
        line = {buffer, Platform::FormatCTime(local, buffer, std::size(buffer))};
        const std::wint_t last = line.empty() ? WEOF : std::char_traits<wchar_t>::to_int_type(line.back());
        if (std::iswspace(last) != 0 || std::iswcntrl(last) != 0) {
            line.remove_suffix(1);
        }
    }
    text = L"<";
    text += line;
    text += L">";
}

std::int64_t CLogger::GetNow() const {
    return CurrentTime();
}

void CLogger::Write(const CString& message) {
    const CLockGuard guard(lock_);
    CString timestamp;
    FormatTimestamp(timestamp);
    Output(timestamp, message);
}

CConsoleLogger::~CConsoleLogger() {
    ResetCurrentLogger(this);
}

void CConsoleLogger::Output(const CString& timestamp, const CString& message) {
    const CString line = timestamp + L" " + message + L"\n";
    const std::string utf8 = line.ToUtf8();
    std::fwrite(utf8.data(), 1, utf8.size(), stdout);
    std::fflush(stdout);
}

void SetCurrentLogger(CLogger* logger) {
    const CGlobalLockGuard guard;
    currentLogger = logger;
}

void ResetCurrentLogger(CLogger* logger) {
    const CGlobalLockGuard guard;
    if (currentLogger == logger) {
        currentLogger = nullptr;
    }
}

CLogger& GetCurrentLogger() {
    const CGlobalLockGuard guard;
    return currentLogger != nullptr ? *currentLogger : DefaultLogger();
}

void Log(const CString& message) {
    // Held while the line is written, so that nobody can take the logger away from under it.
    const CGlobalLockGuard guard;
    GetCurrentLogger().Write(message);
}

void Log(const wchar_t* message) {
    Log(CString(message));
}
void Log(const char* message) {
    Log(CString(message));
}

bool IsEventLogEnabled() {
    static const bool enabled = [] {
        const char* const value = std::getenv("KIVORA_LOG");
        return value != nullptr && std::string_view(value) == "1";
    }();
    return enabled;
}

}  // namespace NK
