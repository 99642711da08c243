#include <xcb/xcb.h>
#include <xcb/xcbext.h>

#include <cstdlib>
#include <memory>

#include "nk/desktop/nk_pressed_input.h"

namespace NK {
namespace {

struct TFree {
    void operator()(void* memory) const noexcept { std::free(memory); }
};

/// Null when there is no answer but an error.
template <class TReply>
using ReplyPointer = std::unique_ptr<TReply, TFree>;

template <class TReply>
bool Poll(xcb_connection_t* server, unsigned request, ReplyPointer<TReply>& reply) {
    void* answer = nullptr;
    xcb_generic_error_t* error = nullptr;
    const bool come = xcb_poll_for_reply(server, request, &answer, &error) != 0;
    std::free(error);
    reply.reset(static_cast<TReply*>(answer));
    return come;
}

int TypeOf(const void* xcbEvent) noexcept {
    constexpr int kWithoutTheMarkOfSentOnes = 0x7F;
    return static_cast<const xcb_generic_event_t*>(xcbEvent)->response_type & kWithoutTheMarkOfSentOnes;
}

}  // namespace

void CPressedInputQuery::Ask() {
    if (server_ == nullptr || xcb_connection_has_error(server_) != 0) {
        asked_ = {};
        return;
    }
    asked_.push(
        {.keys = xcb_query_keymap(server_).sequence,
         .pointer = xcb_query_pointer(server_, xcb_setup_roots_iterator(xcb_get_setup(server_)).data->root).sequence});
    xcb_flush(server_);
}

std::optional<TPressedInput> CPressedInputQuery::TakeAnswer() {
    ReplyPointer<xcb_query_pointer_reply_t> pointer;
    ReplyPointer<xcb_query_keymap_reply_t> keymap;
    bool keysCome = false;
    do {
        // Answers come in the order of their requests.
        if (asked_.empty() || !Poll(server_, asked_.front().pointer, pointer)) {
            return std::nullopt;
        }
        keysCome = Poll(server_, asked_.front().keys, keymap);
        asked_.pop();
    } while (!asked_.empty());
    if (!keysCome || !keymap || !pointer) {
        return std::nullopt;
    }
    TPressedInput down;
    constexpr std::size_t kBits = 8;
    for (std::size_t key = 0; key < down.keys.size(); ++key) {
        down.keys[key] = (keymap->keys[key / kBits] >> (key % kBits) & 1) != 0;
    }
    constexpr int kFirstButtonsBit = 8;
    down.buttons = static_cast<std::uint8_t>(pointer->mask >> kFirstButtonsBit & 0x1F);
    return down;
}

bool IsFocusIn(const void* xcbEvent) noexcept {
    return TypeOf(xcbEvent) == XCB_FOCUS_IN;
}

std::optional<TKeyRelease> AsKeyRelease(const void* xcbEvent) noexcept {
    if (TypeOf(xcbEvent) != XCB_KEY_RELEASE) {
        return std::nullopt;
    }
    const auto& release = *static_cast<const xcb_key_release_event_t*>(xcbEvent);
    return TKeyRelease{.scanCode = release.detail, .atMs = release.time};
}

}  // namespace NK
