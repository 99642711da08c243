// Whether one key is down, asked of the X server.
#pragma once

#include <cstdint>
#include <optional>

struct xcb_connection_t;

namespace NK {

/// Waits for the server's answer, which a server on the same machine gives in a fraction of a millisecond. Nothing
/// where it gives none, and for a scan code that no server has. Another thread may read from the connection. [gui]
std::optional<bool> AskWhetherKeyIsDown(xcb_connection_t* server, std::uint32_t scanCode);

}  // namespace NK
