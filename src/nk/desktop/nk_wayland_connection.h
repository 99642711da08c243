// The connection to a Wayland compositor. [any]
#pragma once

struct wl_display;

namespace NK {

/// Whether the connection has failed for good: the compositor is gone, or has cut this program off.
bool HasWaylandFailed(wl_display* display);

}  // namespace NK
