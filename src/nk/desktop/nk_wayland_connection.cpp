#include "nk/desktop/nk_wayland_connection.h"

#include <wayland-client.h>

bool NK::HasWaylandFailed(wl_display* display) {
    return wl_display_get_error(display) != 0;
}
