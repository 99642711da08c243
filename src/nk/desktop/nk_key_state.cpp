#include <xcb/xcb.h>

#include <cstddef>
#include <cstdlib>
#include <memory>

#include "nk/desktop/nk_key_state.h"
#include "nk/desktop/nk_xcb_xkb.h"

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

std::optional<std::uint32_t> AskKeyRepeatDelayMs(xcb_connection_t* server) {
    const xcb_query_extension_reply_t* const extension =
        server == nullptr ? nullptr : xcb_get_extension_data(server, &xcb_xkb_id);
    if (extension == nullptr || extension->present == 0) {
        return std::nullopt;
    }
    xcb_xkb_select_events_details_t details{};
    details.affectCtrls = XCB_XKB_BOOL_CTRL_REPEAT_KEYS;
    details.ctrlDetails = XCB_XKB_BOOL_CTRL_REPEAT_KEYS;
    xcb_xkb_select_events_aux(server, XCB_XKB_ID_USE_CORE_KBD, XCB_XKB_EVENT_TYPE_CONTROLS_NOTIFY, 0, 0, 0, 0,
                              &details);
    xcb_generic_error_t* error = nullptr;
    const std::unique_ptr<xcb_xkb_get_controls_reply_t, decltype(&std::free)> reply(
        xcb_xkb_get_controls_reply(server, xcb_xkb_get_controls(server, XCB_XKB_ID_USE_CORE_KBD), &error), &std::free);
    std::free(error);
    return reply ? std::optional<std::uint32_t>(reply->repeatDelay) : std::nullopt;
}

bool IsKeyRepeatChange(xcb_connection_t* server, const void* event) {
    const xcb_query_extension_reply_t* const extension = xcb_get_extension_data(server, &xcb_xkb_id);
    const auto& told = *static_cast<const xcb_xkb_controls_notify_event_t*>(event);
    return extension != nullptr && extension->present != 0 && (told.response_type & 0x7F) == extension->first_event &&
           told.xkbType == XCB_XKB_CONTROLS_NOTIFY;
}

}  // namespace NK
