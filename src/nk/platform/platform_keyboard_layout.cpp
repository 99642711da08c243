#include <xcb/xcb.h>
#include <xkbcommon/xkbcommon-x11.h>
#include <xkbcommon/xkbcommon.h>

#include <cstdlib>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>

#include "nk/nk_keyboard_layout.h"
#include "nk/platform/platform_xcb_xkb.h"

namespace NK {
namespace {

template <auto Release>
struct TReleaser {
    template <class T>
    void operator()(T* object) const {
        Release(object);
    }
};
using ConnectionPointer = std::unique_ptr<xcb_connection_t, TReleaser<&xcb_disconnect>>;
using ContextPointer = std::unique_ptr<xkb_context, TReleaser<&xkb_context_unref>>;
using KeymapPointer = std::unique_ptr<xkb_keymap, TReleaser<&xkb_keymap_unref>>;
using StatePointer = std::unique_ptr<xkb_state, TReleaser<&xkb_state_unref>>;
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
        usable_ = device_ >= 0 && namesAtom_ != XCB_ATOM_NONE && context_;
        if (usable_) {
            SelectEvents();
        }
    }

    LanguageNumber GetLanguage() {
        if (!usable_) {
            return kLanguageUnknown;
        }
        const bool changed = TakeChanges();
        if (xcb_connection_has_error(connection_.get()) != 0) {
            return kLanguageUnknown;
        }
        if (changed || !asked_) {
            asked_ = true;
            language_ = AskLanguage();
        }
        return language_;
    }

private:
    void SelectEvents() {
        const std::uint32_t properties = XCB_EVENT_MASK_PROPERTY_CHANGE;
        xcb_change_window_attributes(connection_.get(), root_, XCB_CW_EVENT_MASK, &properties);
        constexpr auto kMaps = std::uint16_t{XCB_XKB_EVENT_TYPE_NEW_KEYBOARD_NOTIFY | XCB_XKB_EVENT_TYPE_MAP_NOTIFY};
        xcb_xkb_select_events_details_t details{};
        details.affectState = XCB_XKB_STATE_PART_GROUP_STATE;
        details.stateDetails = XCB_XKB_STATE_PART_GROUP_STATE;
        xcb_xkb_select_events_aux(connection_.get(), static_cast<std::uint16_t>(device_),
                                  kMaps | XCB_XKB_EVENT_TYPE_STATE_NOTIFY, 0, kMaps, 0, 0, &details);
        xcb_flush(connection_.get());
    }

    /// Whether the server has told of a change since the last call.
    bool TakeChanges() {
        bool changed = false;
        while (const ReplyPointer<xcb_generic_event_t> event{xcb_poll_for_event(connection_.get())}) {
            const int type = event->response_type & 0x7F;
            const auto* const property = reinterpret_cast<const xcb_property_notify_event_t*>(event.get());
            changed |= type == xkbEvent_ || (type == XCB_PROPERTY_NOTIFY && property->atom == namesAtom_);
        }
        return changed;
    }

    LanguageNumber AskLanguage() {
        std::string names = ReadNames();
        if (names.empty()) {
            return kLanguageUnknown;
        }
        if (names != names_ || !keymap_) {
            keymap_.reset(xkb_x11_keymap_new_from_device(context_.get(), connection_.get(), device_,
                                                         XKB_KEYMAP_COMPILE_NO_FLAGS));
            names_ = std::move(names);
        }
        if (!keymap_) {
            return kLanguageUnknown;
        }
        const StatePointer state(xkb_x11_state_new_from_device(keymap_.get(), connection_.get(), device_));
        if (!state) {
            return kLanguageUnknown;
        }
        const xkb_layout_index_t group = xkb_state_serialize_layout(state.get(), XKB_STATE_LAYOUT_EFFECTIVE);
        constexpr std::uint32_t kLayouts = 2;
        constexpr std::uint32_t kVariants = 3;
        return GetLanguageOfLayout(PartOf(PartOf(names_, '\0', kLayouts), ',', group),
                                   PartOf(PartOf(names_, '\0', kVariants), ',', group));
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

    ConnectionPointer connection_;
    ContextPointer context_;
    KeymapPointer keymap_;
    std::string names_;
    std::int32_t device_ = -1;
    xcb_atom_t namesAtom_ = XCB_ATOM_NONE;
    xcb_window_t root_ = 0;
    std::uint8_t xkbEvent_ = 0;  ///< the type of the extension's events
    bool usable_ = false;
    bool asked_ = false;
    LanguageNumber language_ = kLanguageUnknown;
};

bool IsSet(const char* variable) {
    const char* const value = std::getenv(variable);
    return value != nullptr && *value != '\0';
}

}  // namespace

char32_t GetCharacterOfKeySymbol(std::uint32_t keySymbol) noexcept {
    return xkb_keysym_to_utf32(keySymbol);
}

LanguageNumber GetKeyboardLanguage() {
    if (!IsSet("DISPLAY") || IsSet("WAYLAND_DISPLAY")) {
        return kLanguageUnknown;
    }
    static std::mutex mutex;
    const std::lock_guard guard(mutex);
    static CKeyboardDisplay display;
    return display.GetLanguage();
}

}  // namespace NK
