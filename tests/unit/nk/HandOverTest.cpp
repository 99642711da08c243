#include "nk/nk_hand_over.h"

#include <gtest/gtest.h>
#include <poll.h>
#include <signal.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cstdlib>
#include <cstring>
#include <thread>

#include "nk/nk_paths.h"
#include "unit/nk/TempFolder.h"

namespace {

using namespace NK;

constexpr int kLimitMs = 30000;

bool IsReadable(int descriptor, int limitMs) {
    pollfd waited{descriptor, POLLIN, 0};
    return poll(&waited, 1, limitMs) == 1;
}

class HandingOver : public KivoraTest::CTempFolderTest {
protected:
    CString Place() { return Path("socket"); }
    /// Hands over from another thread, and takes here.
    bool HandAndTake(CHandOverListener& listener, const std::string& message, std::string& taken) {
        std::atomic<bool> isHanded = false;
        std::thread sender([&] { isHanded = HandOver(Place(), message, kLimitMs); });
        EXPECT_TRUE(IsReadable(listener.GetDescriptor(), kLimitMs));
        taken = listener.Take().value_or("nothing");
        sender.join();
        return isHanded;
    }
};

TEST_F(HandingOver, WhatIsGivenIsTakenWhole) {
    const auto listener = CHandOverListener::Listen(Place());
    ASSERT_TRUE(listener);
    EXPECT_FALSE(IsReadable(listener->GetDescriptor(), 0));
    EXPECT_FALSE(listener->Take());
    for (const std::string& message : {std::string("a\0b", 3), std::string("x"), std::string(kMaxHandOverBytes, 'm')}) {
        std::string taken;
        EXPECT_TRUE(HandAndTake(*listener, message, taken));
        EXPECT_EQ(taken, message);
    }
    EXPECT_FALSE(HandOver(Place(), std::string(kMaxHandOverBytes + 1, 'm'), kLimitMs));
    EXPECT_FALSE(IsReadable(listener->GetDescriptor(), 0));
}

TEST_F(HandingOver, NobodyThereIsToldAtOnce) {
    EXPECT_FALSE(HandOver(Place(), "x", kLimitMs));
    { const auto listener = CHandOverListener::Listen(Place()); }
    EXPECT_FALSE(HandOver(Place(), "x", kLimitMs));
    EXPECT_EQ(CountEntries(), 0) << "nothing is left";
    EXPECT_FALSE(HandOver(Path(std::string(200, 'p').c_str()), "x", kLimitMs));
    EXPECT_FALSE(CHandOverListener::Listen(Path(std::string(200, 'p').c_str())));
    EXPECT_FALSE(CHandOverListener::Listen(Path("missing/missing/socket")));
}

TEST_F(HandingOver, TheFolderIsMadeForThisUserAlone) {
    const auto listener = CHandOverListener::Listen(Path("folder/socket"));
    ASSERT_TRUE(listener);
    struct stat state {};
    ASSERT_EQ(stat(Native("folder").c_str(), &state), 0);
    EXPECT_EQ(state.st_mode, mode_t{S_IFDIR | S_IRWXU});
}

TEST_F(HandingOver, NobodyIsTrustedInAFolderThatOthersWriteTo) {
    const auto listener = CHandOverListener::Listen(Place());
    ASSERT_TRUE(listener);
    for (const mode_t others : {mode_t{S_IWGRP}, mode_t{S_IWOTH}}) {
        ASSERT_EQ(chmod(folder_.GetPath().c_str(), S_IRWXU | others), 0);
        EXPECT_FALSE(HandOver(Place(), "x", 0));
        EXPECT_FALSE(IsReadable(listener->GetDescriptor(), 0));
        EXPECT_FALSE(CHandOverListener::Listen(Path("another")));
    }
    ASSERT_EQ(chmod(folder_.GetPath().c_str(), S_IRWXU), 0);
    std::string taken;
    EXPECT_TRUE(HandAndTake(*listener, "x", taken));
}

TEST_F(HandingOver, ALinkIsNotFollowed) {
    const auto listener = CHandOverListener::Listen(Path("folder/socket"));
    ASSERT_TRUE(listener);
    std::filesystem::create_symlink(Native("folder"), Native("link"));
    std::filesystem::create_symlink(Native("folder/socket"), Native("socket"));
    EXPECT_FALSE(HandOver(Path("link/socket"), "x", 0));
    EXPECT_FALSE(HandOver(Place(), "x", 0));
    EXPECT_FALSE(IsReadable(listener->GetDescriptor(), 0));
    EXPECT_FALSE(CHandOverListener::Listen(Path("link/another")));
}

TEST_F(HandingOver, WhatIsAnotherUsersIsLeftAlone) {
    // Only the administrator gives a folder away; of the system's folders none is anybody else's.
    if (geteuid() != 0) {
        EXPECT_FALSE(CHandOverListener::Listen(L"/kivora-test/socket"));
        EXPECT_FALSE(CHandOverListener::Listen(L"/usr/kivora-test"));
        return;
    }
    constexpr uid_t kAnother = 1;
    const auto listener = CHandOverListener::Listen(Path("folder/socket"));
    ASSERT_TRUE(listener);
    ASSERT_EQ(lchown(Native("folder/socket").c_str(), kAnother, kAnother), 0);
    EXPECT_FALSE(HandOver(Path("folder/socket"), "x", 0));
    ASSERT_EQ(lchown(Native("folder/socket").c_str(), 0, 0), 0);
    ASSERT_EQ(lchown(Native("folder").c_str(), kAnother, kAnother), 0);
    EXPECT_FALSE(HandOver(Path("folder/socket"), "x", 0));
    EXPECT_FALSE(CHandOverListener::Listen(Path("folder/another")));
    EXPECT_FALSE(IsReadable(listener->GetDescriptor(), 0));
    ASSERT_EQ(lchown(folder_.GetPath().c_str(), kAnother, kAnother), 0);
    EXPECT_FALSE(CHandOverListener::Listen(Path("new/socket")));
    EXPECT_FALSE(std::filesystem::exists(Native("new"))) << "left in another's folder";
}

TEST_F(HandingOver, WhoGoesWithoutHavingTakenItKeepsNobodyWaiting) {
    auto listener = CHandOverListener::Listen(Place());
    std::atomic<bool> isHanded = true;
    std::thread sender([&] { isHanded = HandOver(Place(), "x", -1); });
    ASSERT_TRUE(IsReadable(listener->GetDescriptor(), kLimitMs));
    listener.reset();
    sender.join();
    EXPECT_FALSE(isHanded);
}

TEST_F(HandingOver, WhoDoesNotAnswerIsNotWaitedForLongerThanTheLimit) {
    const auto listener = CHandOverListener::Listen(Place());
    EXPECT_FALSE(HandOver(Place(), "x", 0));
    EXPECT_EQ(listener->Take(), "x") << "whose sender has gone";
}

TEST_F(HandingOver, OneListensAtATime) {
    auto first = CHandOverListener::Listen(Place());
    EXPECT_FALSE(CHandOverListener::Listen(Place()));
    std::string taken;
    EXPECT_TRUE(HandAndTake(*first, "still the first", taken));
    first.reset();
    EXPECT_TRUE(CHandOverListener::Listen(Place()));
}

TEST_F(HandingOver, WhatAKilledProgramLeftIsTakenOver) {
    const pid_t child = fork();
    if (child == 0) {
        const auto listener = CHandOverListener::Listen(Place());
        _exit(listener ? 0 : 1);  // without a destructor
    }
    int status = 0;
    waitpid(child, &status, 0);
    EXPECT_EQ(status, 0);
    EXPECT_EQ(CountEntries(), 1) << "the socket";
    EXPECT_FALSE(HandOver(Place(), "x", kLimitMs));
    const auto listener = CHandOverListener::Listen(Place());
    ASSERT_TRUE(listener);
    std::string taken;
    EXPECT_TRUE(HandAndTake(*listener, "anew", taken));
}

// What is sent by hand, as no program of this version sends it.
class HandingOverByHand : public HandingOver {
protected:
    void SetUp() override {
        listener = CHandOverListener::Listen(Place());
        ASSERT_TRUE(listener);
        const std::string place = Place().ToUtf8();
        address.sun_family = AF_UNIX;
        ASSERT_LT(place.size(), sizeof address.sun_path);
        std::memcpy(address.sun_path, place.data(), place.size());
        ASSERT_EQ(socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0, ends), 0);
    }
    void TearDown() override {
        close(ends[0]);
        close(sender);
    }

    /// With that many copies of ends[1], which is closed here.
    void Send(std::string message, std::size_t copies) {
        iovec part{message.data(), message.size()};
        alignas(cmsghdr) std::array<char, CMSG_SPACE(sizeof ends)> control{};
        msghdr header{};
        header.msg_name = &address;
        header.msg_namelen = sizeof address;
        header.msg_iov = &part;
        header.msg_iovlen = 1;
        header.msg_control = control.data();
        header.msg_controllen = CMSG_SPACE(sizeof(int) * copies);
        cmsghdr* const enclosed = CMSG_FIRSTHDR(&header);
        enclosed->cmsg_level = SOL_SOCKET;
        enclosed->cmsg_type = SCM_RIGHTS;
        enclosed->cmsg_len = CMSG_LEN(sizeof(int) * copies);
        const int files[2] = {ends[1], ends[1]};
        std::memcpy(CMSG_DATA(enclosed), files, sizeof(int) * copies);
        EXPECT_EQ(sendmsg(sender, &header, 0), static_cast<ssize_t>(message.size()));
        close(ends[1]);
    }
    /// Whether nobody has the other end any more.
    bool IsClosed() const {
        char byte = 0;
        return read(ends[0], &byte, 1) == 0;
    }

    std::unique_ptr<CHandOverListener> listener;
    int ends[2] = {-1, -1};

private:
    sockaddr_un address{};
    const int sender = socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
};

TEST_F(HandingOverByHand, NothingThatLiesInAMessageStaysOpen) {
    Send("x", 2);
    EXPECT_EQ(listener->Take(), "x");
    char answer = 0;
    EXPECT_EQ(read(ends[0], &answer, 1), 1);
    EXPECT_EQ(read(ends[0], &answer, 1), 1) << "each is answered";
    EXPECT_TRUE(IsClosed());
}

TEST_F(HandingOverByHand, AMessageThatIsTooLongIsNotTakenCutShort) {
    Send(std::string(kMaxHandOverBytes + 1, 'm'), 1);
    EXPECT_EQ(listener->Take(), std::nullopt);
    EXPECT_TRUE(IsClosed()) << "and nobody is told that it was taken";
}

TEST_F(HandingOver, MeetsInTheRuntimeFolder) {
    const char* const former = std::getenv("XDG_RUNTIME_DIR");
    const std::string kept = former != nullptr ? former : "";
    setenv("XDG_RUNTIME_DIR", "/run/user/1/", 1);
    EXPECT_EQ(GetMeetingDir(L"kivora"), L"/run/user/1/kivora");
    setenv("FLATPAK_ID", "example.a", 1);
    EXPECT_EQ(GetMeetingDir(L"kivora"), L"/run/user/1/app/example.a/kivora");
    unsetenv("FLATPAK_ID");
    for (const char* none : {"", "relative"}) {
        setenv("XDG_RUNTIME_DIR", none, 1);
        EXPECT_EQ(GetMeetingDir(L"kivora"), L"");
    }
    unsetenv("XDG_RUNTIME_DIR");
    EXPECT_EQ(GetMeetingDir(L"kivora"), L"");
    if (former != nullptr) {
        setenv("XDG_RUNTIME_DIR", kept.c_str(), 1);
    }
}

}  // namespace
