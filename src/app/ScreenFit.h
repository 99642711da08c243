// A panel that is larger than the screen.
#pragma once

#include <QObject>
#include <QPointer>
#include <QTimer>

class KivoraWidget;
class QScreen;
class QWidget;

namespace Kivora {

/// Keeps a window exactly as large as its panel, the panel small enough for the screen that the window is on, whole and
/// in proportion, and the window on that screen. Follows another screen, room or scale once the window stands still.
/// [gui]
class ScreenFit : public QObject {
    Q_OBJECT

public:
    /// Neither is owned; both outlive this. The panel of a window that is shown already is fitted soon.
    ScreenFit(QWidget& window, KivoraWidget& panel);

    void Fit();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void FollowWindow();
    void FollowScreen();
    void FitSoon() { calm_.start(); }
    void MoveOntoScreen();

    QWidget& window_;
    KivoraWidget& panel_;
    QPointer<QScreen> screen_;
    QTimer calm_;
    double ratio_ = 0.0;  ///< device pixels a logical pixel when the panel was fitted last
};

}  // namespace Kivora
