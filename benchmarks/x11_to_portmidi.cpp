// The shortest way from a key of the X server to PortMidi: a window, and a write for each key event. What the program's
// own way is held against. Usage: x11_to_portmidi <part of the output's name>
#include <xcb/xcb.h>

#include <cstdint>
#include <cstdlib>
#include <memory>

#include "BareOutput.h"

namespace {

void OpenWindow(xcb_connection_t* server) {
    const xcb_screen_t* screen = xcb_setup_roots_iterator(xcb_get_setup(server)).data;
    const xcb_window_t window = xcb_generate_id(server);
    const std::uint32_t events = XCB_EVENT_MASK_KEY_PRESS | XCB_EVENT_MASK_KEY_RELEASE;
    xcb_create_window(server, XCB_COPY_FROM_PARENT, window, screen->root, 0, 0, 300, 100, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, screen->root_visual, XCB_CW_EVENT_MASK, &events);
    constexpr char kTitle[] = "Bare";
    xcb_change_property(server, XCB_PROP_MODE_REPLACE, window, XCB_ATOM_WM_NAME, XCB_ATOM_STRING, 8, sizeof kTitle - 1,
                        kTitle);
    xcb_map_window(server, window);
    xcb_flush(server);
}

}  // namespace

int main(int argc, char** argv) {
    PortMidiStream* output = argc > 1 ? KivoraBench::OpenBareOutput(argv[1]) : nullptr;
    xcb_connection_t* server = xcb_connect(nullptr, nullptr);
    if (output == nullptr || xcb_connection_has_error(server) != 0) {
        return 1;
    }
    OpenWindow(server);
    while (const std::unique_ptr<xcb_generic_event_t, decltype(&std::free)> event{xcb_wait_for_event(server),
                                                                                  &std::free}) {
        const int type = event->response_type & 0x7F;
        if (type != XCB_KEY_PRESS && type != XCB_KEY_RELEASE) {
            continue;
        }
        KivoraBench::WriteKey(output, type == XCB_KEY_PRESS, event->pad0);  // the key's code
    }
}
