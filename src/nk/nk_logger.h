// Writing lines of text to the process's current logger.
#pragma once

#include <cstdint>

#include "nk/nk_critical_section.h"
#include "nk/nk_string.h"

namespace NK {

/// Base of the loggers; serialises its output. [any]
/// A class that other threads may be logging through calls ResetCurrentLogger(this) in its own destructor: the base's
/// comes too late for an Output() in progress.
class CLogger {
public:
    CLogger() = default;
    /// If this is the current logger, the current logger becomes none.
    virtual ~CLogger();
    CLogger(const CLogger&) = delete;
    CLogger& operator=(const CLogger&) = delete;

    virtual bool IsShortTimestamp() const;
    virtual void SetShortTimestamp(bool on);
    /// Short: "<MM/DD hh:mm:ss>" in local time. Long: the C library's ctime() text in angle brackets.
    /// A time that the calendar cannot hold gives "NULL \"tm\"" and "<>".
    virtual void FormatTimestamp(CString& text) const;
    /// Takes the lock, stamps the line and outputs it, so that lines stand in the order of their time stamps.
    void Write(const CString& message);

protected:
    /// Writes one line; called with the logger's lock held.
    virtual void Output(const CString& timestamp, const CString& message) NK_REQUIRES(lock_) = 0;
    /// The time that the next line is stamped with: seconds since 1970-01-01 UTC.
    virtual std::int64_t GetNow() const;

    mutable CCriticalSection lock_{1, 100, 100};

private:
    bool shortTimestamp_ NK_GUARDED_BY(lock_) = false;
};

/// Prints "%s %s\n" (time stamp, message) as UTF-8 on the standard output.
class CConsoleLogger : public CLogger {
public:
    ~CConsoleLogger() override;

protected:
    void Output(const CString& timestamp, const CString& message) override NK_REQUIRES(lock_);
};

/// [any] These wait for a line that another thread is writing with Log(): once they return, a logger that they replaced
/// is out of use. An Output() may log and may call them itself.
void SetCurrentLogger(CLogger* logger);    ///< not owned; null for none
void ResetCurrentLogger(CLogger* logger);  ///< none, if it is `logger`
/// The current logger, else the default console logger (created on first use; it does not become current).
CLogger& GetCurrentLogger();

/// Writes a line through the current logger. [any]
void Log(const CString& message);
void Log(const wchar_t* message);
void Log(const char* message);

/// Whether lines about each written and received event are wanted (KIVORA_LOG=1 in the environment).
bool IsEventLogEnabled();

}  // namespace NK
