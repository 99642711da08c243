// The keymap of a compositor, which is a small one of the test's own.
#include "nk/desktop/nk_wayland_keyboard.h"

#include <gtest/gtest.h>
#include <poll.h>
#include <sys/mman.h>
#include <unistd.h>
#include <wayland-client.h>
#include <wayland-server.h>

#include <cstdlib>
#include <functional>
#include <string>

#include "support/SystemLayout.h"
#include "support/TemporaryFolder.h"

namespace {

using KivoraTest::SystemKeymap;

constexpr std::uint32_t kScanQ = 24;
constexpr std::uint32_t kScanZ = 52;

/// One seat with a keyboard, which shows no windows.
class Compositor {
public:
    explicit Compositor(std::string keymap) : keymap_(std::move(keymap)), display_(wl_display_create()) {
        socket_ = wl_display_add_socket_auto(display_);
        wl_global_create(display_, &wl_seat_interface, 5, this, &Compositor::Bind);
    }
    ~Compositor() { End(); }

    const char* GetSocket() const { return socket_.c_str(); }
    void Turn() {
        wl_event_loop_dispatch(wl_display_get_event_loop(display_), 0);
        wl_display_flush_clients(display_);
    }
    void SendKeymap(const std::string& text, std::uint32_t format = WL_KEYBOARD_KEYMAP_FORMAT_XKB_V1) {
        const int file = memfd_create("keymap", MFD_CLOEXEC);
        const auto size = static_cast<std::uint32_t>(text.size() + 1);
        ASSERT_EQ(write(file, text.c_str(), size), static_cast<ssize_t>(size));
        wl_keyboard_send_keymap(keyboard_, format, file, size);
        close(file);
    }
    /// The layout of that number is active now.
    void SendGroup(std::uint32_t number) { wl_keyboard_send_modifiers(keyboard_, 0, 0, 0, 0, number); }
    void TakeKeyboardAway() { wl_seat_send_capabilities(seat_, 0); }
    void End() {
        if (display_ != nullptr) {
            wl_display_destroy_clients(display_);
            wl_display_destroy(display_);
            display_ = nullptr;
        }
    }

private:
    static Compositor& Of(wl_resource* resource) {
        return *static_cast<Compositor*>(wl_resource_get_user_data(resource));
    }
    static void Bind(wl_client* client, void* self, std::uint32_t version, std::uint32_t id) {
        static const struct wl_seat_interface kSeat {
            [](wl_client*, wl_resource*, std::uint32_t) {}, &Compositor::GetKeyboard,
                [](wl_client*, wl_resource*, std::uint32_t) {}, [](wl_client*, wl_resource*) {}
        };
        auto& compositor = *static_cast<Compositor*>(self);
        compositor.seat_ = wl_resource_create(client, &wl_seat_interface, static_cast<int>(version), id);
        wl_resource_set_implementation(compositor.seat_, &kSeat, self, nullptr);
        wl_seat_send_capabilities(compositor.seat_, WL_SEAT_CAPABILITY_KEYBOARD);
    }
    static void GetKeyboard(wl_client* client, wl_resource* seat, std::uint32_t id) {
        static const struct wl_keyboard_interface kKeyboard {
            [](wl_client*, wl_resource*) {}
        };
        Compositor& compositor = Of(seat);
        compositor.keyboard_ = wl_resource_create(client, &wl_keyboard_interface, 1, id);
        wl_resource_set_implementation(compositor.keyboard_, &kKeyboard, &compositor, nullptr);
        compositor.SendKeymap(compositor.keymap_);
    }

    std::string keymap_;
    wl_display* display_;
    std::string socket_;
    wl_resource* seat_ = nullptr;
    wl_resource* keyboard_ = nullptr;
};

/// The connection of a program's windows, with what a toolkit does for it.
class Client {
public:
    explicit Client(const Compositor& compositor) : display_(wl_display_connect(compositor.GetSocket())) {}
    ~Client() { wl_display_disconnect(display_); }

    wl_display* Get() const { return display_; }
    void Turn() {
        while (wl_display_prepare_read(display_) != 0) {
            if (wl_display_dispatch_pending(display_) < 0) {
                return;
            }
        }
        pollfd readable{wl_display_get_fd(display_), POLLIN, 0};
        if (poll(&readable, 1, 0) > 0) {
            wl_display_read_events(display_);
        } else {
            wl_display_cancel_read(display_);
        }
    }

private:
    wl_display* display_;
};

class WaylandKeyboard : public testing::Test {
protected:
    WaylandKeyboard() { setenv("XDG_RUNTIME_DIR", folder_.GetPath().c_str(), 1); }
    ~WaylandKeyboard() override { unsetenv("XDG_RUNTIME_DIR"); }

    /// What both sides say to each other takes a few turns; nobody waits.
    static char32_t KeyOf(Compositor& compositor, Client& client, NK::CWaylandKeyboard& keyboard,
                          std::uint32_t scanCode) {
        constexpr int kTurns = 20;
        std::shared_ptr<const NK::TKeyboardLayout> layout;
        for (int turn = 0; turn < kTurns; ++turn) {
            compositor.Turn();
            client.Turn();
            layout = keyboard.GetLayout();
        }
        return layout ? (*layout)[scanCode].character : 0;
    }

private:
    KivoraTest::CTemporaryFolder folder_;
};

TEST_F(WaylandKeyboard, TellsWhatTheKeysTypeAndFollowsAnotherKeymap) {
    Compositor compositor(SystemKeymap("fr"));
    Client client(compositor);
    NK::CWaylandKeyboard keyboard(client.Get());
    EXPECT_EQ(keyboard.GetLayout(), nullptr) << "it has not told yet";
    EXPECT_EQ(KeyOf(compositor, client, keyboard, kScanQ), U'a');
    EXPECT_EQ(keyboard.GetLayout(), keyboard.GetLayout());
    compositor.SendKeymap(SystemKeymap("us"));
    EXPECT_EQ(KeyOf(compositor, client, keyboard, kScanQ), U'q');
    EXPECT_EQ(keyboard.GetLayout()->language, NK::kLanguageEnglishUs);
}

TEST_F(WaylandKeyboard, OfSeveralLayoutsTheCompositorTellsTheActiveOne) {
    Compositor compositor(SystemKeymap("us,gr,de", ",,"));
    Client client(compositor);
    NK::CWaylandKeyboard keyboard(client.Get());
    EXPECT_EQ(KeyOf(compositor, client, keyboard, kScanZ), U'z');
    compositor.SendGroup(1);
    EXPECT_EQ(KeyOf(compositor, client, keyboard, kScanZ), U'\u03B6');
    const auto greek = keyboard.GetLayout();
    compositor.SendGroup(2);
    compositor.SendGroup(1);
    EXPECT_EQ(KeyOf(compositor, client, keyboard, kScanZ), U'\u03B6');
    EXPECT_EQ(*keyboard.GetLayout(), *greek);
    compositor.SendGroup(2);
    EXPECT_EQ(KeyOf(compositor, client, keyboard, kScanZ), U'y');
    compositor.SendGroup(3);
    EXPECT_EQ(KeyOf(compositor, client, keyboard, kScanZ), 0U) << "there is no such layout";
    compositor.SendGroup(0);
    EXPECT_EQ(KeyOf(compositor, client, keyboard, kScanZ), U'z');
    compositor.SendGroup(0);
    const auto before = keyboard.GetLayout();
    EXPECT_EQ(KeyOf(compositor, client, keyboard, kScanZ), U'z');
    EXPECT_EQ(keyboard.GetLayout(), before) << "another object after a change only";
}

TEST_F(WaylandKeyboard, IsUnknownForAKeymapThatCannotBeRead) {
    Compositor compositor("no keymap");
    Client client(compositor);
    NK::CWaylandKeyboard keyboard(client.Get());
    EXPECT_EQ(KeyOf(compositor, client, keyboard, kScanZ), 0U);
    compositor.SendKeymap(SystemKeymap("de"));
    EXPECT_EQ(KeyOf(compositor, client, keyboard, kScanZ), U'y');
    compositor.SendKeymap(SystemKeymap("us"), WL_KEYBOARD_KEYMAP_FORMAT_NO_KEYMAP);
    EXPECT_EQ(KeyOf(compositor, client, keyboard, kScanZ), 0U);
    compositor.SendKeymap("");
    EXPECT_EQ(KeyOf(compositor, client, keyboard, kScanZ), 0U);
}

TEST_F(WaylandKeyboard, IsUnknownWithoutAKeyboardOrACompositor) {
    NK::CWaylandKeyboard nowhere(nullptr);
    EXPECT_EQ(nowhere.GetLayout(), nullptr);
    Compositor compositor(SystemKeymap("de"));
    Client client(compositor);
    NK::CWaylandKeyboard keyboard(client.Get());
    EXPECT_EQ(KeyOf(compositor, client, keyboard, kScanZ), U'y');
    compositor.TakeKeyboardAway();
    EXPECT_EQ(KeyOf(compositor, client, keyboard, kScanZ), 0U);
    compositor.End();
    client.Turn();
    EXPECT_EQ(keyboard.GetLayout(), nullptr);
    EXPECT_EQ(keyboard.GetLayout(), nullptr);
}

}  // namespace
