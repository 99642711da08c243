#include <xcb/xcb.h>
#include <xkbcommon/xkbcommon-x11.h>
#include <xkbcommon/xkbcommon.h>

#include <cstdlib>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

#include "nk/desktop/nk_keyboard_layout.h"
#include "nk/desktop/nk_keymap.h"
#include "nk/desktop/nk_xcb_xkb.h"

namespace NK {
namespace {

using ConnectionPointer = std::unique_ptr<xcb_connection_t, TReleaser<&xcb_disconnect>>;
template <class T>
using ReplyPointer = std::unique_ptr<T, TReleaser<&std::free>>;

/// The part of `text` with number `index` between the separators; empty beyond the last.
std::string_view PartOf(std::string_view text, char separator, std::uint32_t index) {
    for (; index > 0; --index) {
        const std::size_t end = text.find(separator);
        if (end == std::string_view::npos) {
            return {};
        }
        text.remove_prefix(end + 1);
    }
    return text.substr(0, text.find(separator));
}

/// A connection of its own to the X server of DISPLAY, which tells of every change of the layouts: the server is asked
/// after a change only, so that a key does not wait for a server that is busy.
class CKeyboardDisplay {
public:
    CKeyboardDisplay() : connection_(xcb_connect(nullptr, nullptr)) {
        if (xcb_connection_has_error(connection_.get()) != 0 ||
            xkb_x11_setup_xkb_extension(connection_.get(), XKB_X11_MIN_MAJOR_XKB_VERSION, XKB_X11_MIN_MINOR_XKB_VERSION,
                                        XKB_X11_SETUP_XKB_EXTENSION_NO_FLAGS, nullptr, nullptr, &xkbEvent_,
                                        nullptr) == 0) {
            return;
        }
        device_ = xkb_x11_get_core_keyboard_device_id(connection_.get());
        constexpr std::string_view kName = "_XKB_RULES_NAMES";
        const ReplyPointer<xcb_intern_atom_reply_t> atom(xcb_intern_atom_reply(
            connection_.get(), xcb_intern_atom(connection_.get(), 1, kName.size(), kName.data()), nullptr));
        namesAtom_ = atom ? atom->atom : static_cast<xcb_atom_t>(XCB_ATOM_NONE);
        root_ = xcb_setup_roots_iterator(xcb_get_setup(connection_.get())).data->root;
        context_.reset(xkb_context_new(XKB_CONTEXT_NO_FLAGS));
        if (context_) {
            xkb_context_set_log_level(context_.get(), XKB_LOG_LEVEL_CRITICAL);  // a refusal is a result
        }
        usable_ = device_ >= 0 && namesAtom_ != XCB_ATOM_NONE && context_;
        if (usable_) {
            SelectEvents();
        }
    }

    /// Null while it is not known.
    std::shared_ptr<const TKeyboardLayout> GetLayout() {
        const std::lock_guard guard(mutex_);
        if (!usable_) {
            return nullptr;
        }
        const bool told = TakeEvents();
        if (xcb_connection_has_error(connection_.get()) != 0) {
            return nullptr;
        }
        if (stale_) {
            stale_ = false;
            AskLayouts();
        }
        if (told) {
            Choose();
        }
        return active_;
    }

    /// The display answers after it has told of all that was before.
    void Sync() {
        const std::lock_guard guard(mutex_);
        if (usable_) {
            std::free(xcb_get_input_focus_reply(connection_.get(), xcb_get_input_focus_unchecked(connection_.get()),
                                                nullptr));
        }
    }

    EKeyboardLayoutEvent Classify(const xcb_generic_event_t& event) const {
        const int type = event.response_type & 0x7F;
        const auto& property = reinterpret_cast<const xcb_property_notify_event_t&>(event);
        const auto& state = reinterpret_cast<const xcb_xkb_state_notify_event_t&>(event);
        if (usable_ && type == XCB_PROPERTY_NOTIFY && property.atom == namesAtom_) {
            return EKeyboardLayoutEvent::kOtherLayouts;
        }
        if (!usable_ || type != xkbEvent_) {
            return EKeyboardLayoutEvent::kNone;
        }
        if (state.xkbType == XCB_XKB_NEW_KEYBOARD_NOTIFY || state.xkbType == XCB_XKB_MAP_NOTIFY) {
            return EKeyboardLayoutEvent::kOtherLayouts;
        }
        const bool isOtherGroup =
            state.xkbType == XCB_XKB_STATE_NOTIFY && (state.changed & XCB_XKB_STATE_PART_GROUP_STATE) != 0;
        return isOtherGroup ? EKeyboardLayoutEvent::kOtherActive : EKeyboardLayoutEvent::kNone;
    }

private:
    void SelectEvents() {
        const std::uint32_t properties = XCB_EVENT_MASK_PROPERTY_CHANGE;
        xcb_change_window_attributes(connection_.get(), root_, XCB_CW_EVENT_MASK, &properties);
        constexpr auto kMaps = std::uint16_t{XCB_XKB_EVENT_TYPE_NEW_KEYBOARD_NOTIFY | XCB_XKB_EVENT_TYPE_MAP_NOTIFY};
        constexpr std::uint16_t kAllParts = 0xFF;  // of a map
        xcb_xkb_select_events_details_t details{};
        details.affectState = XCB_XKB_STATE_PART_GROUP_STATE;
        details.stateDetails = XCB_XKB_STATE_PART_GROUP_STATE;
        xcb_xkb_select_events_aux(connection_.get(), static_cast<std::uint16_t>(device_),
                                  kMaps | XCB_XKB_EVENT_TYPE_STATE_NOTIFY, 0, kMaps, kAllParts, kAllParts, &details);
        xcb_flush(connection_.get());
    }

    /// Whether the server has told of a change since the last call; true for the first one.
    bool TakeEvents() {
        bool told = stale_;
        while (const ReplyPointer<xcb_generic_event_t> event{xcb_poll_for_event(connection_.get())}) {
            const int type = event->response_type & 0x7F;
            const auto* const property = reinterpret_cast<const xcb_property_notify_event_t*>(event.get());
            const auto* const state = reinterpret_cast<const xcb_xkb_state_notify_event_t*>(event.get());
            if (type == xkbEvent_ && state->xkbType == XCB_XKB_STATE_NOTIFY) {
                group_ = state->group;
                told = true;
            } else if (type == xkbEvent_ || (type == XCB_PROPERTY_NOTIFY && property->atom == namesAtom_)) {
                stale_ = true;
                told = true;
            }
        }
        return told;
    }

    void AskLayouts() {
        layouts_.clear();
        const XkbKeymapPointer keymap(
            xkb_x11_keymap_new_from_device(context_.get(), connection_.get(), device_, XKB_KEYMAP_COMPILE_NO_FLAGS));
        const XkbStatePointer state(keymap ? xkb_x11_state_new_from_device(keymap.get(), connection_.get(), device_)
                                           : nullptr);
        if (!state) {
            return;
        }
        group_ = xkb_state_serialize_layout(state.get(), XKB_STATE_LAYOUT_EFFECTIVE);
        layouts_ = ReadLayoutsOfKeymap(keymap.get());
        const std::string names = ReadNames();
        constexpr std::uint32_t kLayouts = 2;
        constexpr std::uint32_t kVariants = 3;
        for (std::uint32_t group = 0; group < layouts_.size(); ++group) {
            layouts_[group].language = GetLanguageOfLayout(PartOf(PartOf(names, '\0', kLayouts), ',', group),
                                                           PartOf(PartOf(names, '\0', kVariants), ',', group));
        }
    }

    void Choose() {
        if (group_ >= layouts_.size()) {
            active_.reset();
        } else if (!active_ || *active_ != layouts_[group_]) {
            active_ = std::make_shared<const TKeyboardLayout>(layouts_[group_]);
        }
    }

    /// Rules, model, layouts, variants and options, each with a terminating zero.
    std::string ReadNames() const {
        constexpr std::uint32_t kLongestInWords = 1024;
        const ReplyPointer<xcb_get_property_reply_t> property(xcb_get_property_reply(
            connection_.get(),
            xcb_get_property(connection_.get(), 0, root_, namesAtom_, XCB_ATOM_STRING, 0, kLongestInWords), nullptr));
        if (!property || property->format != 8) {
            return {};
        }
        return {static_cast<const char*>(xcb_get_property_value(property.get())),
                static_cast<std::size_t>(xcb_get_property_value_length(property.get()))};
    }

    std::mutex mutex_;
    ConnectionPointer connection_;
    XkbContextPointer context_;
    std::vector<TKeyboardLayout> layouts_;  ///< of the server's keymap
    std::uint32_t group_ = 0;               ///< the number of the active one
    std::shared_ptr<const TKeyboardLayout> active_;
    std::int32_t device_ = -1;
    xcb_atom_t namesAtom_ = XCB_ATOM_NONE;
    xcb_window_t root_ = 0;
    std::uint8_t xkbEvent_ = 0;  ///< the type of the extension's events
    bool usable_ = false;
    bool stale_ = true;  ///< the server has told of other layouts
};

bool IsSet(const char* variable) {
    const char* const value = std::getenv(variable);
    return value != nullptr && *value != '\0';
}

/// Null where no X display is named, and on Wayland.
CKeyboardDisplay* FindDisplay() {
    if (!IsSet("DISPLAY") || IsSet("WAYLAND_DISPLAY")) {
        return nullptr;
    }
    static CKeyboardDisplay display;
    return &display;
}

}  // namespace

char32_t GetCharacterOfKeySymbol(std::uint32_t keySymbol) noexcept {
    return xkb_keysym_to_utf32(keySymbol);
}

std::shared_ptr<const TKeyboardLayout> GetKeyboardLayout() {
    CKeyboardDisplay* const display = FindDisplay();
    return display != nullptr ? display->GetLayout() : nullptr;
}

EKeyboardLayoutEvent GetKeyboardLayoutEvent(const void* event) {
    const CKeyboardDisplay* const display = FindDisplay();
    return display != nullptr ? display->Classify(*static_cast<const xcb_generic_event_t*>(event))
                              : EKeyboardLayoutEvent::kNone;
}

void SyncKeyboardLayout() {
    if (CKeyboardDisplay* const display = FindDisplay()) {
        display->Sync();
    }
}

LanguageNumber GetKeyboardLanguage() {
    const std::shared_ptr<const TKeyboardLayout> layout = GetKeyboardLayout();
    return layout ? layout->language : kLanguageUnknown;
}

}  // namespace NK
