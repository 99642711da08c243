#include <xcb/xcb.h>

#include <cstddef>
#include <cstdlib>
#include <memory>

#include "nk/nk_key_state.h"

namespace NK {

std::optional<bool> AskWhetherKeyIsDown(xcb_connection_t* server, std::uint32_t scanCode) {
    constexpr std::size_t kBits = 8;
    if (server == nullptr || scanCode == 0 || scanCode / kBits >= sizeof(xcb_query_keymap_reply_t::keys)) {
        return std::nullopt;
    }
    xcb_generic_error_t* error = nullptr;
    const std::unique_ptr<xcb_query_keymap_reply_t, decltype(&std::free)> reply(
        xcb_query_keymap_reply(server, xcb_query_keymap(server), &error), &std::free);
    std::free(error);
    if (!reply) {
        return std::nullopt;
    }
    return (reply->keys[scanCode / kBits] >> (scanCode % kBits) & 1) != 0;
}

}  // namespace NK
