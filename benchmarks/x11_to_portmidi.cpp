// The shortest way from a key of the X server to PortMidi: a window, and a write for each key event. What the program's
// own way is held against. Usage: x11_to_portmidi <part of the output's name>
#include <portmidi.h>
#include <xcb/xcb.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>

namespace {

PortMidiStream* OpenOutput(const char* name) {
    Pm_Initialize();
    for (PmDeviceID device = 0; device < Pm_CountDevices(); ++device) {
        const PmDeviceInfo* info = Pm_GetDeviceInfo(device);
        PortMidiStream* stream = nullptr;
        if (info->output != 0 && std::strstr(info->name, name) != nullptr) {
            return Pm_OpenOutput(&stream, device, nullptr, 1024, nullptr, nullptr, 0) == pmNoError ? stream : nullptr;
        }
    }
    return nullptr;
}

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
    PortMidiStream* output = argc > 1 ? OpenOutput(argv[1]) : nullptr;
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
        const int note = event->pad0 & 0x7F;  // the key's code
        Pm_WriteShort(output, 0, Pm_Message(type == XCB_KEY_PRESS ? 0x90 : 0x80, note, 100));
    }
}
