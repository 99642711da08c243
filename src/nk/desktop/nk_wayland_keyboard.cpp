#include <sys/mman.h>
#include <unistd.h>
#include <wayland-client.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "nk/desktop/nk_keymap.h"
#include "nk/desktop/nk_wayland_keyboard.h"

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
    std::string text(characters, strnlen(characters, size));
    munmap(memory, size);
    return text;
}

}  // namespace

class CWaylandKeyboard::CSeat {
public:
    /// Events come in a queue of their own, so that they wait for this and not for the windows'.
    explicit CSeat(wl_display* display) : display_(display), queue_(wl_display_create_queue(display)) {
        const std::unique_ptr<void, TReleaser<&wl_proxy_wrapper_destroy>> wrapper(wl_proxy_create_wrapper(display));
        wl_proxy_set_queue(static_cast<wl_proxy*>(wrapper.get()), queue_.get());
        static constexpr wl_registry_listener kListener{&CSeat::OnGlobal, [](void*, wl_registry*, std::uint32_t) {}};
        registry_.reset(wl_display_get_registry(static_cast<wl_display*>(wrapper.get())));
        wl_registry_add_listener(registry_.get(), &kListener, this);
        wl_display_flush(display);
    }

    std::shared_ptr<const TKeyboardLayout> GetLayout() {
        const bool isThere = wl_display_dispatch_queue_pending(display_, queue_.get()) >= 0;
        wl_display_flush(display_);  // what the events asked for
        return isThere ? active_ : nullptr;
    }

private:
    void Choose() {
        if (group_ >= layouts_.size()) {
            active_.reset();
        } else if (!active_ || *active_ != layouts_[group_]) {
            active_ = std::make_shared<const TKeyboardLayout>(layouts_[group_]);
        }
    }

    void TakeKeymap(std::uint32_t format, int file, std::size_t size) {
        layouts_ = format == WL_KEYBOARD_KEYMAP_FORMAT_XKB_V1 ? ReadKeyboardLayouts(ReadText(file, size))
                                                              : std::vector<TKeyboardLayout>();
        close(file);
        Choose();
    }

    static void OnGlobal(void* self, wl_registry* registry, std::uint32_t name, const char* interface, std::uint32_t) {
        auto& seat = *static_cast<CSeat*>(self);
        if (seat.seat_ || std::strcmp(interface, wl_seat_interface.name) != 0) {
            return;
        }
        static constexpr wl_seat_listener kListener{&CSeat::OnCapabilities, [](void*, wl_seat*, const char*) {}};
        seat.seat_.reset(static_cast<wl_seat*>(wl_registry_bind(registry, name, &wl_seat_interface, kSeatVersion)));
        wl_seat_add_listener(seat.seat_.get(), &kListener, self);
    }

    static void OnCapabilities(void* self, wl_seat* handle, std::uint32_t capabilities) {
        auto& seat = *static_cast<CSeat*>(self);
        if ((capabilities & WL_SEAT_CAPABILITY_KEYBOARD) == 0) {
            seat.keyboard_.reset();
            seat.layouts_.clear();
            seat.Choose();
            return;
        }
        if (seat.keyboard_) {
            return;
        }
        static constexpr wl_keyboard_listener kListener{
            [](void* keyboard, wl_keyboard*, std::uint32_t format, int file, std::uint32_t size) {
                static_cast<CSeat*>(keyboard)->TakeKeymap(format, file, size);
            },
            [](void*, wl_keyboard*, std::uint32_t, wl_surface*, wl_array*) {},
            [](void*, wl_keyboard*, std::uint32_t, wl_surface*) {},
            [](void*, wl_keyboard*, std::uint32_t, std::uint32_t, std::uint32_t, std::uint32_t) {},
            [](void* keyboard, wl_keyboard*, std::uint32_t, std::uint32_t, std::uint32_t, std::uint32_t,
               std::uint32_t group) {
                static_cast<CSeat*>(keyboard)->group_ = group;
                static_cast<CSeat*>(keyboard)->Choose();
            },
            [](void*, wl_keyboard*, std::int32_t, std::int32_t) {},
        };
        seat.keyboard_.reset(wl_seat_get_keyboard(handle));
        wl_keyboard_add_listener(seat.keyboard_.get(), &kListener, self);
    }

    wl_display* display_;
    std::unique_ptr<wl_event_queue, TReleaser<&wl_event_queue_destroy>> queue_;
    std::unique_ptr<wl_registry, TReleaser<&wl_registry_destroy>> registry_;
    std::unique_ptr<wl_seat, TReleaser<&wl_seat_destroy>> seat_;
    std::unique_ptr<wl_keyboard, TReleaser<&wl_keyboard_destroy>> keyboard_;
    std::vector<TKeyboardLayout> layouts_;
    std::uint32_t group_ = 0;  ///< the number of the active one
    std::shared_ptr<const TKeyboardLayout> active_;
};

CWaylandKeyboard::CWaylandKeyboard(wl_display* display)
    : seat_(display != nullptr ? std::make_unique<CSeat>(display) : nullptr) {
}

CWaylandKeyboard::~CWaylandKeyboard() = default;

std::shared_ptr<const TKeyboardLayout> CWaylandKeyboard::GetLayout() {
    return seat_ ? seat_->GetLayout() : nullptr;
}

}  // namespace NK
