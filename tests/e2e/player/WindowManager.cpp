#include "e2e/player/WindowManager.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <string_view>

#include <QElapsedTimer>

namespace Player {

namespace {

constexpr std::uint8_t kEventMask = 0x7F;  ///< without the mark of events that clients send
constexpr int kMomentMs = 5;

/// Of the dialogs that reach any file of whoever runs the test.
constexpr std::string_view kFileTitles[] = {
    "Save MIDI File",        "Select sound font",  "Select wallpaper image",      "Play a MIDI File",
    "Сохранение MIDI-файла", "Выбор банка звуков", "Выбор изображения на панель", "Воспроизвести MIDI-файл",
};

constexpr std::string_view kSongPlayerTitles[] = {"Player", "Проигрыватель"};

bool IsOneOf(const XClient& client, xcb_window_t window, std::initializer_list<const char*> types) {
    const std::string bytes = client.GetProperty(window, client.GetAtom("_NET_WM_WINDOW_TYPE"));
    xcb_atom_t first = XCB_ATOM_NONE;
    if (bytes.size() >= sizeof(first)) {
        std::copy_n(bytes.data(), sizeof(first), reinterpret_cast<char*>(&first));
    }
    return std::any_of(types.begin(), types.end(), [&](const char* type) { return client.GetAtom(type) == first; });
}

}  // namespace

WindowManager::WindowManager(XClient& client, xcb_window_t panel)
    : client_(client),
      panel_(panel),
      stranger_(xcb_generate_id(client.Get())),
      windows_{{panel, EKind::kPanel}},
      pingAtom_(client.GetAtom("_NET_WM_PING")) {
    // Of the windows, and, as Qt sends them, of the answers to pings.
    const std::uint32_t events[] = {XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_STRUCTURE_NOTIFY};
    xcb_change_window_attributes(client_.Get(), client_.GetRoot(), XCB_CW_EVENT_MASK, events);
    const std::uint32_t unmanaged[] = {1};
    xcb_create_window(client_.Get(), XCB_COPY_FROM_PARENT, stranger_, client_.GetRoot(), 0, 0, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, XCB_CW_OVERRIDE_REDIRECT, unmanaged);
    xcb_map_window(client_.Get(), stranger_);
    client_.MeetServer();
}

void WindowManager::Attend() {
    client_.MeetServer();
    while (const CReply<xcb_generic_event_t> event = client_.WaitForEvent(0)) {
        Take(*event);
    }
}

void WindowManager::Take(const xcb_generic_event_t& event) {
    switch (event.response_type & kEventMask) {
        case XCB_MAP_NOTIFY:
            OnShown(reinterpret_cast<const xcb_map_notify_event_t&>(event).window);
            break;
        case XCB_UNMAP_NOTIFY:
            OnHidden(reinterpret_cast<const xcb_unmap_notify_event_t&>(event).window);
            break;
        case XCB_CLIENT_MESSAGE:
            if (const auto& message = reinterpret_cast<const xcb_client_message_event_t&>(event);
                message.data.data32[0] == pingAtom_) {
                pong_ = message.data.data32[1];
            }
            break;
        default:
            break;
    }
}

void WindowManager::OnShown(xcb_window_t window) {
    if (window == stranger_ ||
        std::any_of(windows_.begin(), windows_.end(), [window](const TWindow& shown) { return shown.id == window; })) {
        return;
    }
    if (IsOneOf(client_, window, {"_NET_WM_WINDOW_TYPE_TOOLTIP"})) {
        return;
    }
    windows_.push_back({window, GetKindOf(window)});
    if (windows_.back().kind != EKind::kPopUp) {
        GiveFocus();
    }
}

WindowManager::EKind WindowManager::GetKindOf(xcb_window_t window) const {
    if (IsOneOf(client_, window,
                {"_NET_WM_WINDOW_TYPE_POPUP_MENU", "_NET_WM_WINDOW_TYPE_DROPDOWN_MENU", "_NET_WM_WINDOW_TYPE_COMBO"})) {
        return EKind::kPopUp;
    }
    const std::string title = client_.GetProperty(window, client_.GetAtom("_NET_WM_NAME"));
    const auto begins = [&title](std::string_view name) { return std::string_view(title).starts_with(name); };
    if (std::any_of(std::begin(kFileTitles), std::end(kFileTitles), begins)) {
        return EKind::kFileDialog;
    }
    return std::any_of(std::begin(kSongPlayerTitles), std::end(kSongPlayerTitles), begins) ? EKind::kSongPlayer
                                                                                           : EKind::kDialog;
}

void WindowManager::OnHidden(xcb_window_t window) {
    if (window == panel_) {
        isGone_ = true;
        return;
    }
    if (std::erase_if(windows_, [window](const TWindow& shown) { return shown.id == window; }) > 0) {
        GiveFocus();
    }
}

void WindowManager::GiveFocus() {
    if (isAway_) {
        return;
    }
    const auto taker = std::find_if(windows_.rbegin(), windows_.rend(),
                                    [](const TWindow& window) { return window.kind != EKind::kPopUp; });
    SetFocus(taker->id);
}

void WindowManager::SetFocus(xcb_window_t window) const {
    xcb_set_input_focus(client_.Get(), XCB_INPUT_FOCUS_PARENT, window, XCB_CURRENT_TIME);
}

void WindowManager::Leave() {
    isAway_ = true;
    SetFocus(stranger_);
}

void WindowManager::Return() {
    isAway_ = false;
    GiveFocus();
}

bool WindowManager::Meet(int limitMs) {
    // The first answer comes when the events are read, the second after they were handled.
    constexpr int kAnswers = 2;
    QElapsedTimer timer;
    timer.start();
    for (int answer = 0; answer < kAnswers; ++answer) {
        client_.SendProtocol(panel_, "_NET_WM_PING", ++ping_);
        while (pong_ != ping_) {
            if (isGone_ || !client_.IsConnected() || timer.hasExpired(limitMs)) {
                return false;
            }
            if (const CReply<xcb_generic_event_t> event = client_.WaitForEvent(kMomentMs)) {
                Take(*event);
            }
        }
    }
    return true;
}

void WindowManager::Wait() {
    if (const CReply<xcb_generic_event_t> event = client_.WaitForEvent(kMomentMs)) {
        Take(*event);
    }
}

void WindowManager::Close(xcb_window_t window) const {
    client_.SendProtocol(window, "WM_DELETE_WINDOW", XCB_CURRENT_TIME);
}

bool WindowManager::HasSongPlayer() const {
    return std::any_of(windows_.begin(), windows_.end(),
                       [](const TWindow& window) { return window.kind == EKind::kSongPlayer; });
}

void WindowManager::CloseSongPlayer() const {
    for (const TWindow& window : windows_) {
        if (window.kind == EKind::kSongPlayer) {
            Close(window.id);
        }
    }
}

}  // namespace Player
