#include "app/ScreenFit.h"

#include <algorithm>
#include <QEvent>
#include <QScreen>
#include <QWidget>
#include <QWindow>
#include <utility>

#include "ui/KivoraWidget.h"
#include "ui/PanelScale.h"

namespace Kivora {

namespace {
// While a window is dragged across the edge of a screen, each change of its size may put it back on the other one.
constexpr int kCalmMs = 250;
}  // namespace

ScreenFit::ScreenFit(QWidget& window, KivoraWidget& panel) : window_(window), panel_(panel) {
    calm_.setSingleShot(true);
    calm_.setInterval(kCalmMs);
    connect(&calm_, &QTimer::timeout, this, &ScreenFit::Fit);
    window_.installEventFilter(this);
    if (window_.isVisible()) {
        FollowWindow();
    }
}

bool ScreenFit::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Show) {
        FollowWindow();  // its frame is known soon, too
    } else if (event->type() == QEvent::Move && calm_.isActive()) {
        FitSoon();
    }
    return QObject::eventFilter(watched, event);
}

void ScreenFit::FollowWindow() {
    connect(window_.windowHandle(), &QWindow::screenChanged, this, &ScreenFit::FollowScreen, Qt::UniqueConnection);
    FollowScreen();
}

void ScreenFit::FollowScreen() {
    if (screen_ != window_.screen()) {
        if (screen_) {
            screen_->disconnect(this);
        }
        screen_ = window_.screen();
        connect(screen_, &QScreen::geometryChanged, this, &ScreenFit::FitSoon);
        connect(screen_, &QScreen::availableGeometryChanged, this, &ScreenFit::FitSoon);
        connect(screen_, &QScreen::logicalDotsPerInchChanged, this, &ScreenFit::FitSoon);
    }
    FitSoon();
}

void ScreenFit::Fit() {
    const QSize frame = window_.frameGeometry().size() - window_.size();
    panel_.setPanelScale(PanelScale::FitInto(window_.screen()->availableGeometry().size() - frame));
    if (std::exchange(ratio_, window_.devicePixelRatioF()) != window_.devicePixelRatioF()) {
        window_.update();  // the toolkit leaves on the screen what it has painted for the former one
    }
    const QSize size = panel_.sizeHint();
    QWindow* const handle = window_.windowHandle();
    // After a change of the screen's scale the system's window has its old size in the screen's own pixels.
    const bool asLarge = window_.size() == size && (handle == nullptr || handle->size() == size);
    if (asLarge && window_.minimumSize() == size && window_.maximumSize() == size) {
        return;
    }
    window_.setMinimumSize(0, 0);  // else limits of the same number of logical pixels are not told anew
    window_.setMaximumSize(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX);
    window_.setFixedSize(size);
    if (handle != nullptr) {
        handle->resize(size);
        MoveOntoScreen();
    }
    window_.update();
}

void ScreenFit::MoveOntoScreen() {
    const QRect room = window_.screen()->availableGeometry();
    const QRect frame = window_.frameGeometry();
    const auto inside = [](int begin, int length, int from, int available) {
        return std::max(from, std::min(begin, from + available - length));
    };
    const QPoint place(inside(frame.left(), frame.width(), room.left(), room.width()),
                       inside(frame.top(), frame.height(), room.top(), room.height()));
    if (place != frame.topLeft()) {
        window_.move(place);
    }
}

}  // namespace Kivora
