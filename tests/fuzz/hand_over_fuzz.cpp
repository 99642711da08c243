// Any bytes, with any number of open files beside them, as what a program hands over to the one that runs: it comes out
// as it went in or not at all, whoever waits is answered, and no file stays open.
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <array>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <string>
#include <string_view>

#include "nk/nk_hand_over.h"
#include "nk/nk_paths.h"

namespace {

constexpr std::size_t kMostEnclosed = 3;

void Require(bool holds) {
    if (!holds) {
        std::abort();
    }
}

class Meeting {
public:
    Meeting() {
        Require(mkdtemp(folder_.data()) != nullptr);
        place_ = folder_ + "/open";
        listener = NK::CHandOverListener::Listen(NK::CString::FromUtf8(place_));
        Require(listener != nullptr);
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        std::memcpy(address.sun_path, place_.data(), place_.size());
        Require(connect(sender_, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0);
    }
    ~Meeting() {
        close(sender_);
        listener.reset();
        std::filesystem::remove_all(folder_);
    }

    bool Send(std::string_view message, const int* files, std::size_t count) const {
        iovec part{const_cast<char*>(message.data()), message.size()};
        alignas(cmsghdr) std::array<char, CMSG_SPACE(sizeof(int) * kMostEnclosed)> control{};
        msghdr header{};
        header.msg_iov = &part;
        header.msg_iovlen = 1;
        if (count > 0) {
            header.msg_control = control.data();
            header.msg_controllen = CMSG_SPACE(sizeof(int) * count);
            cmsghdr* const enclosed = CMSG_FIRSTHDR(&header);
            enclosed->cmsg_level = SOL_SOCKET;
            enclosed->cmsg_type = SCM_RIGHTS;
            enclosed->cmsg_len = CMSG_LEN(sizeof(int) * count);
            std::memcpy(CMSG_DATA(enclosed), files, sizeof(int) * count);
        }
        return sendmsg(sender_, &header, MSG_NOSIGNAL) == static_cast<ssize_t>(message.size());
    }

    std::unique_ptr<NK::CHandOverListener> listener;

private:
    std::string folder_ = "/tmp/kivora-hand-over-XXXXXX";
    std::string place_;
    const int sender_ = socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const Meeting meeting;
    if (size == 0) {
        return 0;
    }
    const std::size_t count = data[0] % (kMostEnclosed + 1);
    const std::string message(reinterpret_cast<const char*>(data) + 1, size - 1);
    int ends[2] = {-1, -1};
    Require(socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0, ends) == 0);
    const std::array<int, kMostEnclosed> files{ends[1], ends[1], ends[1]};
    Require(meeting.Send(message, files.data(), count));
    close(ends[1]);

    const std::optional<std::string> taken = meeting.listener->Take();
    Require(taken.has_value() == (message.size() <= NK::kMaxHandOverBytes) && (!taken || *taken == message));
    Require(!meeting.listener->Take());
    char answer = 0;
    std::size_t answers = 0;
    ssize_t result = 0;
    while ((result = read(ends[0], &answer, 1)) == 1) {
        ++answers;
    }
    Require(result == 0);  // closed: no file stayed open
    Require((answers > 0) == (taken && count > 0) && answers <= count);
    close(ends[0]);
    return 0;
}
