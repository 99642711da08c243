// Keys of a virtual X server, pressed by the test extension.
#pragma once

#include <xcb/xcb.h>
#include <xcb/xtest.h>

#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>

#include "support/ChildProcess.h"

namespace KivoraBench {

/// An X server of its own, without a window manager and without auto-repeat of what is held shortly.
class CXKeyboard {
public:
    /// Throws std::runtime_error when the server does not start.
    explicit CXKeyboard(const std::string& display)
        : server_({"Xvfb", display, "-screen", "0", "1366x768x24", "-nolisten", "tcp", "-noreset"}) {
        for (int tries = 0; tries < 600; ++tries) {
            connection_ = xcb_connect(display.c_str(), nullptr);
            if (xcb_connection_has_error(connection_) == 0) {
                root_ = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data->root;
                return;
            }
            xcb_disconnect(connection_);
            std::this_thread::sleep_for(std::chrono::milliseconds(100));
        }
        throw std::runtime_error("Xvfb does not start");
    }
    ~CXKeyboard() { xcb_disconnect(connection_); }
    CXKeyboard(const CXKeyboard&) = delete;
    CXKeyboard& operator=(const CXKeyboard&) = delete;

    /// Waits until the window of that title is visible, and gives it the focus; false after a minute.
    bool FocusWindow(const std::string& title) {
        for (int tries = 0; tries < 600; ++tries) {
            if (const xcb_window_t window = FindWindow(title); window != XCB_NONE) {
                std::this_thread::sleep_for(std::chrono::seconds(2));  // until it has settled
                xcb_set_input_focus(connection_, XCB_INPUT_FOCUS_PARENT, window, XCB_CURRENT_TIME);
                xcb_flush(connection_);
                return true;
            }
            std::this_thread::sleep_for(std::chrono::milliseconds(100));
        }
        return false;
    }

    /// `code` as evdev's keyboards have it: 52 is the key of the letter Z.
    void Move(std::uint8_t code, bool down) {
        xcb_test_fake_input(connection_, down ? XCB_KEY_PRESS : XCB_KEY_RELEASE, code, XCB_CURRENT_TIME, root_, 0, 0,
                            0);
        xcb_flush(connection_);
    }

    /// The visible window of that title, or none.
    xcb_window_t FindWindow(const std::string& title) {
        const ReplyPointer<xcb_query_tree_reply_t> tree(
            xcb_query_tree_reply(connection_, xcb_query_tree(connection_, root_), nullptr), &std::free);
        for (int i = 0; tree && i < xcb_query_tree_children_length(tree.get()); ++i) {
            const xcb_window_t window = xcb_query_tree_children(tree.get())[i];
            if (IsVisible(window) && GetTitle(window) == title) {
                return window;
            }
        }
        return XCB_NONE;
    }

private:
    template <class Reply>
    using ReplyPointer = std::unique_ptr<Reply, decltype(&std::free)>;

    bool IsVisible(xcb_window_t window) {
        const ReplyPointer<xcb_get_window_attributes_reply_t> attributes(
            xcb_get_window_attributes_reply(connection_, xcb_get_window_attributes(connection_, window), nullptr),
            &std::free);
        return attributes && attributes->map_state == XCB_MAP_STATE_VIEWABLE;
    }
    std::string GetTitle(xcb_window_t window) {
        constexpr std::uint32_t kLongest = 64;
        const ReplyPointer<xcb_get_property_reply_t> name(
            xcb_get_property_reply(
                connection_,
                xcb_get_property(connection_, 0, window, XCB_ATOM_WM_NAME, XCB_GET_PROPERTY_TYPE_ANY, 0, kLongest),
                nullptr),
            &std::free);
        return name ? std::string(static_cast<const char*>(xcb_get_property_value(name.get())),
                                  static_cast<std::size_t>(xcb_get_property_value_length(name.get())))
                    : std::string();
    }

    KivoraTest::CChildProcess server_;
    xcb_connection_t* connection_ = nullptr;
    xcb_window_t root_ = XCB_NONE;
};

}  // namespace KivoraBench
