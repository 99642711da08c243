// The little of a window manager that the program needs on a bare X server: whose the keyboard is, and which windows
// stand over the panel.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "e2e/player/XClient.h"

namespace Player {

class WindowManager {
public:
    enum class EKind { kPanel, kDialog, kFileDialog, kSongPlayer, kPopUp };

    struct TWindow {
        xcb_window_t id = XCB_NONE;
        EKind kind = EKind::kDialog;
    };

    /// `panel` is the program's main window, which is shown already.
    WindowManager(XClient& client, xcb_window_t panel);

    /// Takes what the server told: windows that came get the keyboard, what stands below gets it when they go.
    void Attend();
    /// Until the program has taken the events before this; false when it does not answer within the limit or is gone.
    bool Meet(int limitMs);
    /// Until something happens on the display, a moment at most.
    void Wait();

    /// The uppermost window; the panel where nothing stands over it.
    const TWindow& GetTop() const { return windows_.back(); }
    bool IsPanelAlone() const { return windows_.size() == 1; }
    /// Whether the window that plays files and takes is there.
    bool HasSongPlayer() const;
    bool IsGone() const { return isGone_; }
    xcb_window_t GetPanel() const { return panel_; }
    /// Asks the window to close, as its cross does.
    void Close(xcb_window_t window) const;
    /// The same for the window that plays files and takes, if it is there: what it plays is held by nobody.
    void CloseSongPlayer() const;

    /// The keyboard goes to another program, and comes back to the uppermost window that takes it.
    void Leave();
    void Return();
    bool HasFocus() const { return !isAway_; }

private:
    EKind GetKindOf(xcb_window_t window) const;
    void OnShown(xcb_window_t window);
    void OnHidden(xcb_window_t window);
    void GiveFocus();
    void SetFocus(xcb_window_t window) const;
    bool IsPong(const xcb_generic_event_t& event) const;
    void Take(const xcb_generic_event_t& event);

    XClient& client_;
    xcb_window_t panel_;
    xcb_window_t stranger_;  ///< another program's
    std::vector<TWindow> windows_;
    std::uint32_t ping_ = 0;
    std::uint32_t pong_ = 0;
    bool isAway_ = false;
    bool isGone_ = false;
    xcb_atom_t pingAtom_;
};

}  // namespace Player
