// The keymap of a compositor, which is a small one of the test's own.
#include "nk/nk_wayland_keyboard.h"

#include <gtest/gtest.h>
#include <sys/mman.h>
#include <unistd.h>
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
constexpr std::uint32_t kGreekZeta = 0x07E6;
constexpr std::uint32_t kLatinZ = 0x7A;
constexpr std::uint32_t kShift = 0xFFE1;

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

class WaylandKeyboard : public testing::Test {
protected:
    WaylandKeyboard() { setenv("XDG_RUNTIME_DIR", folder_.GetPath().c_str(), 1); }
    ~WaylandKeyboard() override { unsetenv("XDG_RUNTIME_DIR"); }

    /// What both sides say to each other takes a few turns; nobody waits.
    static char32_t KeyOf(Compositor& compositor, NK::CWaylandKeyboard& keyboard, std::uint32_t scanCode) {
        constexpr int kTurns = 20;
        std::shared_ptr<const NK::TKeyboardLayout> layout;
        for (int turn = 0; turn < kTurns; ++turn) {
            compositor.Turn();
            layout = keyboard.GetLayout();
        }
        return layout ? (*layout)[scanCode].character : 0;
    }

private:
    KivoraTest::CTemporaryFolder folder_;
};

TEST_F(WaylandKeyboard, TellsWhatTheKeysTypeAndFollowsAnotherKeymap) {
    Compositor compositor(SystemKeymap("fr"));
    NK::CWaylandKeyboard keyboard(compositor.GetSocket());
    EXPECT_EQ(keyboard.GetLayout(), nullptr) << "it has not told yet";
    EXPECT_EQ(KeyOf(compositor, keyboard, kScanQ), U'a');
    EXPECT_EQ(keyboard.GetLayout(), keyboard.GetLayout());
    compositor.SendKeymap(SystemKeymap("us"));
    EXPECT_EQ(KeyOf(compositor, keyboard, kScanQ), U'q');
    EXPECT_EQ(keyboard.GetLayout()->language, NK::kLanguageEnglishUs);
}

TEST_F(WaylandKeyboard, OfSeveralLayoutsWhatAKeyTypedTellsTheActiveOne) {
    Compositor compositor(SystemKeymap("us,gr,de", ",,"));
    NK::CWaylandKeyboard keyboard(compositor.GetSocket());
    keyboard.NoteKey(kScanZ, kGreekZeta);  // before anything is known
    EXPECT_EQ(KeyOf(compositor, keyboard, kScanZ), U'z');
    keyboard.NoteKey(kScanZ, kGreekZeta);
    EXPECT_EQ(KeyOf(compositor, keyboard, kScanZ), U'\u03B6');
    keyboard.NoteKey(50, kShift);
    keyboard.NoteKey(kScanZ, 0);
    keyboard.NoteKey(0, kLatinZ);
    keyboard.NoteKey(kScanQ, kLatinZ);
    EXPECT_EQ(KeyOf(compositor, keyboard, kScanZ), U'\u03B6') << "what no layout types there tells nothing";
    keyboard.NoteKey(kScanZ, kLatinZ);
    EXPECT_EQ(KeyOf(compositor, keyboard, kScanZ), U'z');
}

TEST_F(WaylandKeyboard, IsUnknownForAKeymapThatCannotBeRead) {
    Compositor compositor("no keymap");
    NK::CWaylandKeyboard keyboard(compositor.GetSocket());
    EXPECT_EQ(KeyOf(compositor, keyboard, kScanZ), 0U);
    compositor.SendKeymap(SystemKeymap("de"));
    EXPECT_EQ(KeyOf(compositor, keyboard, kScanZ), U'y');
    compositor.SendKeymap(SystemKeymap("us"), WL_KEYBOARD_KEYMAP_FORMAT_NO_KEYMAP);
    EXPECT_EQ(KeyOf(compositor, keyboard, kScanZ), 0U);
    compositor.SendKeymap("");
    EXPECT_EQ(KeyOf(compositor, keyboard, kScanZ), 0U);
}

TEST_F(WaylandKeyboard, IsUnknownWithoutAKeyboardOrACompositor) {
    NK::CWaylandKeyboard nowhere("no-such-display");
    EXPECT_EQ(nowhere.GetLayout(), nullptr);
    nowhere.NoteKey(kScanZ, kLatinZ);
    Compositor compositor(SystemKeymap("de"));
    NK::CWaylandKeyboard keyboard(compositor.GetSocket());
    EXPECT_EQ(KeyOf(compositor, keyboard, kScanZ), U'y');
    compositor.TakeKeyboardAway();
    EXPECT_EQ(KeyOf(compositor, keyboard, kScanZ), 0U);
    compositor.End();
    EXPECT_EQ(keyboard.GetLayout(), nullptr);
    EXPECT_EQ(keyboard.GetLayout(), nullptr);
}

}  // namespace
