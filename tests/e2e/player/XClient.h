// A connection to the program's X server, as another program and as the hands at keyboard and mouse.
#pragma once

#include <xcb/xcb.h>

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>

namespace Player {

struct TFree {
    void operator()(void* memory) const { std::free(memory); }
};
/// What XCB hands over to be freed: replies and events.
template <class T>
using CReply = std::unique_ptr<T, TFree>;

struct TPlace {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
};

class XClient {
public:
    /// `display` as in ":7".
    explicit XClient(const std::string& display);
    ~XClient();
    XClient(const XClient&) = delete;
    XClient& operator=(const XClient&) = delete;

    xcb_connection_t* Get() const { return connection_; }
    xcb_window_t GetRoot() const { return root_; }
    bool IsConnected() const { return xcb_connection_has_error(connection_) == 0; }
    xcb_atom_t GetAtom(const char* name) const;
    /// A property's bytes, empty when the window has none or is gone.
    std::string GetProperty(xcb_window_t window, xcb_atom_t property) const;
    /// On the screen; of no extent when the window is gone.
    TPlace GetPlace(xcb_window_t window) const;

    void MoveKey(int code, bool down) const;
    void MoveButton(int button, bool down) const;
    void MovePointer(int x, int y) const;
    /// Makes the keyboard layout of that number, from 0, the active one.
    void LockGroup(int group) const;
    /// Takes all keys, as a program does for a global shortcut.
    void GrabKeys() const;
    void UngrabKeys() const;
    /// Sends a message as ICCCM and EWMH have them; the server's time stamp stands for `serial`.
    void SendProtocol(xcb_window_t window, const char* protocol, std::uint32_t serial) const;

    /// The next event, waited for so long at most; none when that has passed.
    CReply<xcb_generic_event_t> WaitForEvent(int limitMs) const;
    /// Until the server has carried out what was asked of it.
    void MeetServer() const;

private:
    xcb_connection_t* connection_;
    xcb_window_t root_ = XCB_NONE;
};

}  // namespace Player
