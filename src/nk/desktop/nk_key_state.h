// What the X server knows of the keys: whether one is down, and when it repeats those that are held.
#pragma once

#include <cstdint>
#include <optional>

struct xcb_connection_t;

namespace NK {

/// Waits for the server's answer, which a server on the same machine gives in a fraction of a millisecond. Nothing
/// where it gives none, and for a scan code that no server has. Another thread may read from the connection. [gui]
std::optional<bool> AskWhetherKeyIsDown(xcb_connection_t* server, std::uint32_t scanCode);

/// From the press of a key that is held to its first repeat, in ms; nothing where the server does not tell. The
/// connection must use the keyboard extension (X Keyboard Extension, protocol 1.0), as the toolkit's does. From then on
/// the server tells it of changes. Waits for the server's answer as above. [gui]
std::optional<std::uint32_t> AskKeyRepeatDelayMs(xcb_connection_t* server);

/// Whether an event that the connection was sent (an xcb_generic_event_t) tells of another delay. [gui]
bool IsKeyRepeatChange(xcb_connection_t* server, const void* event);

}  // namespace NK
