// A datagram carries the message and one end of a pair of sockets, in which the taker answers with a byte. The system
// closes that end when the taker ends without having taken it, so that nobody waits for the dead.
#include <poll.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <utility>

#include "nk/nk_folder_lock.h"
#include "nk/nk_hand_over.h"
#include "nk/nk_paths.h"

namespace NK {

namespace {

/// Closes what it holds.
class Descriptor {
public:
    explicit Descriptor(int number = -1) : number_(number) {}
    ~Descriptor() {
        if (number_ >= 0) {
            close(number_);
        }
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    int Get() const { return number_; }
    int Release() { return std::exchange(number_, -1); }

private:
    int number_;
};

std::optional<sockaddr_un> PlaceOf(const std::string& path) {
    sockaddr_un place{};
    place.sun_family = AF_UNIX;
    if (path.empty() || path.size() >= sizeof place.sun_path) {
        return std::nullopt;
    }
    std::memcpy(place.sun_path, path.data(), path.size());
    return place;
}

/// Whether that stands there, itself and not a link to it, and is this user's alone. In another's folder, or one that
/// others write to, a file would be handed to whoever listens.
bool IsOwn(const std::string& path, mode_t type) {
    struct stat state {};
    const bool isThere = lstat(path.c_str(), &state) == 0 && (state.st_mode & S_IFMT) == type;
    const bool isShared = type == S_IFDIR && (state.st_mode & (S_IWGRP | S_IWOTH)) != 0;
    return isThere && state.st_uid == geteuid() && !isShared;
}

/// True once the folder is there and this user's alone. It is made in a folder of this user's only: who has become
/// another user and kept the surroundings of the former leaves nothing there that shuts that one out.
bool MakeOwnFolder(const CString& folder) {
    struct stat parent {};
    const std::string name = folder.ToUtf8();
    if (stat(GetFolderName(folder).ToUtf8().c_str(), &parent) == 0 && parent.st_uid == geteuid()) {
        static_cast<void>(mkdir(name.c_str(), S_IRWXU));
    }
    return IsOwn(name, S_IFDIR);
}

int MakeSocket() {
    return socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
}

bool Connect(int descriptor, const sockaddr_un& place) {
    return connect(descriptor, reinterpret_cast<const sockaddr*>(&place), sizeof place) == 0;
}

/// A message with room for one descriptor beside its bytes.
struct Parcel {
    Parcel(void* bytes, std::size_t size) : part{bytes, size} {
        header.msg_iov = &part;
        header.msg_iovlen = 1;
        header.msg_control = control.data();
        header.msg_controllen = control.size();
    }

    iovec part;
    alignas(cmsghdr) std::array<char, CMSG_SPACE(sizeof(int))> control{};
    msghdr header{};
};

bool Send(int descriptor, std::string_view message, int enclosed) {
    Parcel parcel(const_cast<char*>(message.data()), message.size());
    cmsghdr* const control = CMSG_FIRSTHDR(&parcel.header);
    control->cmsg_level = SOL_SOCKET;
    control->cmsg_type = SCM_RIGHTS;
    control->cmsg_len = CMSG_LEN(sizeof enclosed);
    std::memcpy(CMSG_DATA(control), &enclosed, sizeof enclosed);
    return sendmsg(descriptor, &parcel.header, MSG_NOSIGNAL) == static_cast<ssize_t>(message.size());
}

bool IsAnswered(int descriptor, int limitMs) {
    pollfd waited{descriptor, POLLIN, 0};
    char answer = 0;
    return poll(&waited, 1, limitMs) == 1 && read(descriptor, &answer, 1) == 1;
}

}  // namespace

bool HandOver(const CString& path, std::string_view message, int limitMs) {
    const std::string name = path.ToUtf8();
    const std::optional<sockaddr_un> place = PlaceOf(name);
    const Descriptor sender(MakeSocket());
    int ends[2] = {-1, -1};
    if (!place || message.size() > kMaxHandOverBytes || !IsOwn(GetFolderName(path).ToUtf8(), S_IFDIR) ||
        !IsOwn(name, S_IFSOCK) || !Connect(sender.Get(), *place) ||
        socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0) {
        return false;
    }
    const Descriptor own(ends[0]);
    {
        const Descriptor others(ends[1]);
        if (!Send(sender.Get(), message, others.Get())) {
            return false;
        }
    }
    return IsAnswered(own.Get(), limitMs);
}

std::unique_ptr<CHandOverListener> CHandOverListener::Listen(const CString& path) {
    const std::string name = path.ToUtf8();
    const std::optional<sockaddr_un> place = PlaceOf(name);
    if (!place || !MakeOwnFolder(GetFolderName(path))) {
        return nullptr;
    }
    const auto lock = CFolderLock::Take(GetFolderName(path));
    if (!lock || Connect(Descriptor(MakeSocket()).Get(), *place)) {
        return nullptr;
    }
    unlink(name.c_str());  // of a program that was killed
    Descriptor listener(MakeSocket());
    if (bind(listener.Get(), reinterpret_cast<const sockaddr*>(&*place), sizeof *place) != 0) {
        return nullptr;
    }
    return std::unique_ptr<CHandOverListener>(new CHandOverListener(listener.Release(), name));
}

CHandOverListener::~CHandOverListener() {
    unlink(path_.c_str());  // while it still keeps others from listening there
    close(descriptor_);
}

std::optional<std::string> CHandOverListener::Take() {
    std::string message(kMaxHandOverBytes, '\0');
    Parcel parcel(message.data(), message.size());
    const ssize_t size = recvmsg(descriptor_, &parcel.header, MSG_CMSG_CLOEXEC);
    if (size < 0) {
        return std::nullopt;
    }
    message.resize(static_cast<std::size_t>(size));
    const bool isWhole = (parcel.header.msg_flags & MSG_TRUNC) == 0;
    const cmsghdr* const control = CMSG_FIRSTHDR(&parcel.header);
    if (control != nullptr && control->cmsg_level == SOL_SOCKET && control->cmsg_type == SCM_RIGHTS) {
        // The room for one holds two, by its alignment. What lay beyond it the system has closed.
        for (std::size_t end = CMSG_LEN(sizeof(int)); end <= control->cmsg_len; end += sizeof(int)) {
            int enclosed = -1;
            std::memcpy(&enclosed, CMSG_DATA(control) + (end - CMSG_LEN(sizeof enclosed)), sizeof enclosed);
            const Descriptor sender(enclosed);
            if (isWhole) {
                static_cast<void>(send(sender.Get(), "+", 1, MSG_NOSIGNAL | MSG_DONTWAIT));
            }
        }
    }
    return isWhole ? std::optional(std::move(message)) : std::nullopt;
}

}  // namespace NK
