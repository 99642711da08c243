// The keyboard layouts of a Wayland compositor. [owner]
#pragma once

#include <memory>

#include "nk/desktop/nk_keyboard_layout.h"

struct wl_display;

namespace NK {

/// Follows the keymap of a compositor's first seat, and which of its layouts is active, on the connection of the
/// program's windows: a compositor tells the active one to the client with the focus only. Never waits for the
/// compositor; what it says is read by whoever reads for the windows. For one thread.
class CWaylandKeyboard {
public:
    /// `display` outlives this; null for none.
    explicit CWaylandKeyboard(wl_display* display);
    ~CWaylandKeyboard();
    CWaylandKeyboard(const CWaylandKeyboard&) = delete;
    CWaylandKeyboard& operator=(const CWaylandKeyboard&) = delete;

    /// Another object after a change only. Null until the compositor has told, when it has gone, and for a keymap that
    /// cannot be compiled.
    std::shared_ptr<const TKeyboardLayout> GetLayout();

private:
    class CSeat;
    std::unique_ptr<CSeat> seat_;  ///< null without a connection
};

}  // namespace NK
