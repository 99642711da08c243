#include <poll.h>
#include <sys/mman.h>
#include <unistd.h>
#include <wayland-client.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "nk/nk_wayland_keyboard.h"
#include "nk/platform/platform_keymap.h"

namespace NK {
namespace {

constexpr std::uint32_t kSeatVersion = 1;  // which tells all that is needed

/// Empty when it cannot be read.
std::string ReadText(int file, std::size_t size) {
    void* const memory = size > 0 ? mmap(nullptr, size, PROT_READ, MAP_PRIVATE, file, 0) : MAP_FAILED;
    if (memory == MAP_FAILED) {
        return {};
    }
    const auto* const characters = static_cast<const char*>(memory);
    const std::string text(characters, strnlen(characters, size));
    munmap(memory, size);
    return text;
}

}  // namespace

class CWaylandKeyboard::CConnection {
public:
    explicit CConnection(const char* name) : display_(wl_display_connect(name)) {
        if (!display_) {
            return;
        }
        static constexpr wl_registry_listener kListener{&CConnection::OnGlobal,
                                                        [](void*, wl_registry*, std::uint32_t) {}};
        registry_.reset(wl_display_get_registry(display_.get()));
        wl_registry_add_listener(registry_.get(), &kListener, this);
    }

    std::shared_ptr<const TKeyboardLayout> GetLayout() {
        if (!display_ || !TakeEvents()) {
            return nullptr;
        }
        return active_;
    }

    void NoteKey(std::uint32_t scanCode, std::uint32_t keySymbol) {
        if (!display_ || !TakeEvents()) {  // the keymap may have come with the key
            return;
        }
        const char32_t typed = GetPrintedOf(keySymbol);
        const auto types = [&](const TKeyboardLayout& layout) {
            return layout[scanCode].character == typed || layout[scanCode].shifted == typed;
        };
        if (typed == 0 || group_ >= layouts_.size() || types(layouts_[group_])) {
            return;
        }
        const auto found = std::find_if(layouts_.begin(), layouts_.end(), types);
        if (found != layouts_.end()) {
            group_ = static_cast<std::size_t>(found - layouts_.begin());
            Choose();
        }
    }

private:
    /// False when the compositor has gone.
    bool TakeEvents() {
        wl_display* const display = display_.get();
        while (wl_display_prepare_read(display) != 0) {
            if (wl_display_dispatch_pending(display) < 0) {
                return false;
            }
        }
        wl_display_flush(display);
        pollfd readable{wl_display_get_fd(display), POLLIN, 0};
        if (poll(&readable, 1, 0) > 0) {
            wl_display_read_events(display);
        } else {
            wl_display_cancel_read(display);
        }
        const bool isThere = wl_display_dispatch_pending(display) >= 0;
        wl_display_flush(display);  // what the events asked for
        return isThere;
    }

    void Choose() {
        if (group_ < layouts_.size()) {
            active_ = std::make_shared<const TKeyboardLayout>(layouts_[group_]);
        } else {
            active_.reset();
        }
    }

    void TakeKeymap(std::uint32_t format, int file, std::size_t size) {
        layouts_ = format == WL_KEYBOARD_KEYMAP_FORMAT_XKB_V1 ? ReadKeyboardLayouts(ReadText(file, size))
                                                              : std::vector<TKeyboardLayout>();
        close(file);
        group_ = 0;
        Choose();
    }

    static void OnGlobal(void* self, wl_registry* registry, std::uint32_t name, const char* interface, std::uint32_t) {
        auto& connection = *static_cast<CConnection*>(self);
        if (connection.seat_ || std::strcmp(interface, wl_seat_interface.name) != 0) {
            return;
        }
        static constexpr wl_seat_listener kListener{&CConnection::OnCapabilities, [](void*, wl_seat*, const char*) {}};
        connection.seat_.reset(
            static_cast<wl_seat*>(wl_registry_bind(registry, name, &wl_seat_interface, kSeatVersion)));
        wl_seat_add_listener(connection.seat_.get(), &kListener, self);
    }

    static void OnCapabilities(void* self, wl_seat* seat, std::uint32_t capabilities) {
        auto& connection = *static_cast<CConnection*>(self);
        if ((capabilities & WL_SEAT_CAPABILITY_KEYBOARD) == 0) {
            connection.keyboard_.reset();
            connection.layouts_.clear();
            connection.Choose();
            return;
        }
        if (connection.keyboard_) {
            return;
        }
        static constexpr wl_keyboard_listener kListener{
            [](void* keyboard, wl_keyboard*, std::uint32_t format, int file, std::uint32_t size) {
                static_cast<CConnection*>(keyboard)->TakeKeymap(format, file, size);
            },
            [](void*, wl_keyboard*, std::uint32_t, wl_surface*, wl_array*) {},
            [](void*, wl_keyboard*, std::uint32_t, wl_surface*) {},
            [](void*, wl_keyboard*, std::uint32_t, std::uint32_t, std::uint32_t, std::uint32_t) {},
            [](void*, wl_keyboard*, std::uint32_t, std::uint32_t, std::uint32_t, std::uint32_t, std::uint32_t) {},
            [](void*, wl_keyboard*, std::int32_t, std::int32_t) {},
        };
        connection.keyboard_.reset(wl_seat_get_keyboard(seat));
        wl_keyboard_add_listener(connection.keyboard_.get(), &kListener, self);
    }

    std::unique_ptr<wl_display, TReleaser<&wl_display_disconnect>> display_;
    std::unique_ptr<wl_registry, TReleaser<&wl_registry_destroy>> registry_;
    std::unique_ptr<wl_seat, TReleaser<&wl_seat_destroy>> seat_;
    std::unique_ptr<wl_keyboard, TReleaser<&wl_keyboard_destroy>> keyboard_;
    std::vector<TKeyboardLayout> layouts_;
    std::size_t group_ = 0;  ///< the number of the active one
    std::shared_ptr<const TKeyboardLayout> active_;
};

CWaylandKeyboard::CWaylandKeyboard(const char* display) : connection_(std::make_unique<CConnection>(display)) {
}

CWaylandKeyboard::~CWaylandKeyboard() = default;

std::shared_ptr<const TKeyboardLayout> CWaylandKeyboard::GetLayout() {
    return connection_->GetLayout();
}

void CWaylandKeyboard::NoteKey(std::uint32_t scanCode, std::uint32_t keySymbol) {
    connection_->NoteKey(scanCode, keySymbol);
}

}  // namespace NK
