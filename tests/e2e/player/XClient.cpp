#include "e2e/player/XClient.h"

#include <poll.h>
#include <xcb/xtest.h>

#include <cstring>

#include "nk/desktop/nk_xcb_xkb.h"

namespace Player {

XClient::XClient(const std::string& display) : connection_(xcb_connect(display.c_str(), nullptr)) {
    if (!IsConnected()) {
        return;
    }
    root_ = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data->root;
    CReply<xcb_xkb_use_extension_reply_t>(
        xcb_xkb_use_extension_reply(connection_, xcb_xkb_use_extension(connection_, 1, 0), nullptr));
}

XClient::~XClient() {
    xcb_disconnect(connection_);
}

xcb_atom_t XClient::GetAtom(const char* name) const {
    const auto cookie = xcb_intern_atom(connection_, 0, static_cast<std::uint16_t>(std::strlen(name)), name);
    const CReply<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(connection_, cookie, nullptr));
    return reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
}

std::string XClient::GetProperty(xcb_window_t window, xcb_atom_t property) const {
    constexpr std::uint32_t kLongestInWords = 256;
    const auto cookie =
        xcb_get_property(connection_, 0, window, property, XCB_GET_PROPERTY_TYPE_ANY, 0, kLongestInWords);
    const CReply<xcb_get_property_reply_t> reply(xcb_get_property_reply(connection_, cookie, nullptr));
    if (!reply) {
        return {};
    }
    return {static_cast<const char*>(xcb_get_property_value(reply.get())),
            static_cast<std::size_t>(xcb_get_property_value_length(reply.get()))};
}

TPlace XClient::GetPlace(xcb_window_t window) const {
    const auto corner = xcb_translate_coordinates(connection_, window, root_, 0, 0);
    const auto extent = xcb_get_geometry(connection_, window);
    const CReply<xcb_translate_coordinates_reply_t> from(xcb_translate_coordinates_reply(connection_, corner, nullptr));
    const CReply<xcb_get_geometry_reply_t> size(xcb_get_geometry_reply(connection_, extent, nullptr));
    if (!from || !size) {
        return {};
    }
    return {from->dst_x, from->dst_y, size->width, size->height};
}

void XClient::MoveKey(int code, bool down) const {
    xcb_test_fake_input(connection_, down ? XCB_KEY_PRESS : XCB_KEY_RELEASE, static_cast<std::uint8_t>(code),
                        XCB_CURRENT_TIME, XCB_NONE, 0, 0, 0);
}

void XClient::MoveButton(int button, bool down) const {
    xcb_test_fake_input(connection_, down ? XCB_BUTTON_PRESS : XCB_BUTTON_RELEASE, static_cast<std::uint8_t>(button),
                        XCB_CURRENT_TIME, XCB_NONE, 0, 0, 0);
}

void XClient::MovePointer(int x, int y) const {
    constexpr std::uint8_t kAbsolute = 0;
    xcb_test_fake_input(connection_, XCB_MOTION_NOTIFY, kAbsolute, XCB_CURRENT_TIME, root_,
                        static_cast<std::int16_t>(x), static_cast<std::int16_t>(y), 0);
}

void XClient::LockGroup(int group) const {
    xcb_xkb_latch_lock_state(connection_, XCB_XKB_ID_USE_CORE_KBD, 0, 0, 1, static_cast<std::uint8_t>(group), 0, 0, 0);
}

void XClient::GrabKeys() const {
    CReply<xcb_grab_keyboard_reply_t>(xcb_grab_keyboard_reply(
        connection_,
        xcb_grab_keyboard(connection_, 0, root_, XCB_CURRENT_TIME, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC), nullptr));
}

void XClient::UngrabKeys() const {
    xcb_ungrab_keyboard(connection_, XCB_CURRENT_TIME);
}

void XClient::SendProtocol(xcb_window_t window, const char* protocol, std::uint32_t serial) const {
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = window;
    message.type = GetAtom("WM_PROTOCOLS");
    message.data.data32[0] = GetAtom(protocol);
    message.data.data32[1] = serial;
    message.data.data32[2] = window;
    xcb_send_event(connection_, 0, window, XCB_EVENT_MASK_NO_EVENT, reinterpret_cast<const char*>(&message));
    xcb_flush(connection_);
}

CReply<xcb_generic_event_t> XClient::WaitForEvent(int limitMs) const {
    xcb_flush(connection_);
    CReply<xcb_generic_event_t> event(xcb_poll_for_event(connection_));
    if (!event && limitMs > 0) {
        pollfd server{xcb_get_file_descriptor(connection_), POLLIN, 0};
        if (poll(&server, 1, limitMs) > 0) {
            event.reset(xcb_poll_for_event(connection_));
        }
    }
    return event;
}

void XClient::MeetServer() const {
    CReply<xcb_get_input_focus_reply_t>(
        xcb_get_input_focus_reply(connection_, xcb_get_input_focus(connection_), nullptr));
}

}  // namespace Player
