// The window's size: as large as the user wants the panel, and no larger than the screen.
#pragma once

#include <optional>
#include <QObject>
#include <QPointer>
#include <QSize>
#include <QTimer>

class KivoraWidget;
class QMainWindow;
class QScreen;

namespace Kivora {

/// Keeps a window exactly as large as its panel, the panel as large as it is wanted and small enough for the screen
/// that the window is on, whole and in proportion, and the window on that screen. Follows another screen, room or scale
/// once the window stands still. A window that is pulled to a size takes the panel with it, and is given the panel's
/// proportion once it stands still; where it keeps that, that size is wanted from then on. A window that fills the
/// screen, or whose size is not the program's to choose, has the panel in its middle, and nobody has wanted that. [gui]
class ScreenFit : public QObject {
    Q_OBJECT

public:
    /// What a change of the window's size by others is. On Wayland a program that lays windows out is not told from a
    /// user by what it does with the size that the window takes then.
    enum class EPull {
        kAnyChange,  ///< pulling
        kManySteps,  ///< pulling where it comes in many steps; in few the size that it leads to is not wanted
    };
    static EPull pullOfPlatform();

    /// Neither is owned; both outlive this. The panel of a window that is shown already is fitted soon.
    ScreenFit(QMainWindow& window, KivoraWidget& panel, EPull pull = pullOfPlatform());

    void Fit();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void FollowWindow();
    void FollowScreen();
    void FitSoon() { calm_.start(); }
    void Settle();
    void WindowResized();
    /// The panel as large as the window has room for, in its middle.
    void FillWindow();
    bool FillsScreen() const;
    void ShowRatio();
    void MoveOntoScreen();

    QMainWindow& window_;
    KivoraWidget& panel_;
    QPointer<QScreen> screen_;
    QTimer calm_;
    double ratio_ = 0.0;  ///< device pixels a logical pixel when the panel was fitted last
    QSize given_;         ///< the size that the window was given last
    QSize kept_;          ///< a size that the window system does not change for the panel's
    const EPull pull_;
    bool isPulled_ = false;  ///< since the window stood still
    int steps_ = 0;          ///< of that
    QSize step_;             ///< the last one of those
    /// Of the panel in a window whose size others have changed, until another size is wanted.
    std::optional<double> proposed_;
    bool isWish_ = false;  ///< wanted if nobody changes the size of which `proposed_` is the scale
};

}  // namespace Kivora
