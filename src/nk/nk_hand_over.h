// What a program that is started hands over to the one that runs already.
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "nk/nk_string.h"

namespace NK {

/// Of one message.
inline constexpr std::size_t kMaxHandOverBytes = std::size_t{16} * 1024;
/// How long the other program's answer is waited for, at most.
inline constexpr int kHandOverLimitMs = 2000;

/// Gives a message to the program that listens at `path`. True once that has taken it; false when nobody listens, when
/// it ends before, or when the time is up: then it may still take the message. False, too, when the socket or its
/// folder is another user's, or the folder one that others write to. [any]
bool HandOver(const CString& path, std::string_view message, int limitMs = kHandOverLimitMs);

/// Listens at a path for what other programs of the same user hand over. One program at a time listens at a path; it is
/// free again when the listener goes or its program ends, however that ends.
class CHandOverListener {
public:
    /// The folder is made where it is missing in one of this user's. Null when another program listens there, or nobody
    /// can: the folder cannot be made or is not this user's alone, or the path is too long for the system (about 100
    /// bytes). [any]
    static std::unique_ptr<CHandOverListener> Listen(const CString& path);
    ~CHandOverListener();
    CHandOverListener(const CHandOverListener&) = delete;
    CHandOverListener& operator=(const CHandOverListener&) = delete;

    /// Readable while a message waits, for an event loop to wait for; not to be read or closed.
    int GetDescriptor() const noexcept { return descriptor_; }
    /// The next message, whose sender is told that it was taken; nothing when none waits, or it is longer than a
    /// message may be. Never waits.
    std::optional<std::string> Take();

private:
    CHandOverListener(int descriptor, std::string path) : descriptor_(descriptor), path_(std::move(path)) {}

    const int descriptor_;
    const std::string path_;
};

}  // namespace NK
