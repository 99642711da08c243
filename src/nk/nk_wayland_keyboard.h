// The keyboard layouts of a Wayland compositor.
#pragma once

#include <cstdint>
#include <memory>

#include "nk/nk_keyboard_layout.h"

namespace NK {

/// Follows the keymap of a compositor's first seat on a connection of its own; never waits for the compositor. It tells
/// only the window with the focus which of several layouts is active, so what keys typed there decides. For one thread.
class CWaylandKeyboard {
public:
    /// `display` as WAYLAND_DISPLAY names it; null for that variable's.
    explicit CWaylandKeyboard(const char* display = nullptr);
    ~CWaylandKeyboard();
    CWaylandKeyboard(const CWaylandKeyboard&) = delete;
    CWaylandKeyboard& operator=(const CWaylandKeyboard&) = delete;

    /// Another object after a change only. Null until the compositor has told, when it has gone, and for a keymap that
    /// cannot be compiled.
    std::shared_ptr<const TKeyboardLayout> GetLayout();
    /// A key typed that symbol: its layout becomes the active one, unless the active one has it there too.
    void NoteKey(std::uint32_t scanCode, std::uint32_t keySymbol);

private:
    class CConnection;
    std::unique_ptr<CConnection> connection_;
};

}  // namespace NK
