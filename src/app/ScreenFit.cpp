#include "app/ScreenFit.h"

#include <algorithm>
#include <QEvent>
#include <QGuiApplication>
#include <QMainWindow>
#include <QScreen>
#include <QWindow>
#include <utility>

#include "ui/KivoraWidget.h"
#include "ui/parts/PanelScale.h"
#include "ui/parts/ScreenRoom.h"

namespace Kivora {

namespace {
// While a window is dragged across the edge of a screen, each change of its size may put it back on the other one.
constexpr int kCalmMs = 250;
constexpr int kManySteps = 3;
}  // namespace

ScreenFit::EPull ScreenFit::pullOfPlatform() {
    return QGuiApplication::platformName().startsWith("wayland") ? EPull::kManySteps : EPull::kAnyChange;
}

ScreenFit::ScreenFit(QMainWindow& window, KivoraWidget& panel, EPull pull)
    : window_(window), panel_(panel), pull_(pull) {
    calm_.setParent(&window_);  // tests look for it there
    calm_.setObjectName("calm-time");
    calm_.setSingleShot(true);
    calm_.setInterval(kCalmMs);
    connect(&calm_, &QTimer::timeout, this, &ScreenFit::Settle);
    panel_.setWantedScaleListener([self = QPointer<ScreenFit>(this)] {
        if (self && !self->isPulled_) {
            self->proposed_.reset();
            self->Fit();
        }
    });
    window_.installEventFilter(this);
    if (window_.isVisible()) {
        FollowWindow();
    }
}

bool ScreenFit::eventFilter(QObject* watched, QEvent* event) {
    switch (event->type()) {
        case QEvent::Show:
            FollowWindow();  // its frame is known soon, too
            break;
        case QEvent::Move:
            if (calm_.isActive()) {
                FitSoon();
            }
            break;
        case QEvent::Resize:
            WindowResized();
            break;
        case QEvent::WindowStateChange:
            FitSoon();
            break;
        default:
            break;
    }
    return QObject::eventFilter(watched, event);
}

void ScreenFit::WindowResized() {
    if (!window_.isVisible() || window_.size() == given_) {
        return;
    }
    // While the window is on its way to another screen, or to one of another scale, nobody pulls it.
    const bool isOnItsWay = !isPulled_ && (calm_.isActive() || window_.devicePixelRatioF() != ratio_);
    isPulled_ = !isOnItsWay && !FillsScreen();
    steps_ += std::exchange(step_, window_.size()) != window_.size() ? 1 : 0;
    FitSoon();
    if (!isOnItsWay) {
        FillWindow();
    }
}

void ScreenFit::FillWindow() {
    panel_.setPanelScale(PanelScale::FitInto(window_.size(), ViewSettings::kLargestScale));
    const QSize rest = (window_.size() - panel_.sizeHint()).expandedTo({0, 0});
    const int left = rest.width() / 2;
    const int top = rest.height() / 2;
    window_.setContentsMargins(left, top, rest.width() - left, rest.height() - top);
}

bool ScreenFit::FillsScreen() const {
    return window_.isMaximized() || window_.isFullScreen();
}

void ScreenFit::Settle() {
    if (FillsScreen() || window_.size() == kept_) {
        proposed_.reset();
    } else if (isPulled_) {
        const double scale = panel_.panelScale();
        const bool isEcho = isWish_ && proposed_ == scale;  // a size that was on its way when the panel was fitted
        proposed_ = scale;
        isWish_ = pull_ == EPull::kAnyChange || steps_ >= kManySteps || isEcho;
    }
    isPulled_ = false;
    steps_ = 0;
    Fit();
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

void ScreenFit::ShowRatio() {
    if (std::exchange(ratio_, window_.devicePixelRatioF()) != window_.devicePixelRatioF()) {
        window_.update();  // the toolkit leaves on the screen what it has painted for the former one
    }
}

void ScreenFit::Fit() {
    if (FillsScreen() || (kept_.isValid() && window_.size() == kept_)) {
        FillWindow();
        ShowRatio();
        return;
    }
    const QSize frame = window_.frameGeometry().size() - window_.size();
    const QSize room = screenRoom(*window_.screen()) - frame;
    panel_.setPanelScale(PanelScale::FitInto(room, proposed_.value_or(panel_.wantedScale())));
    ShowRatio();
    const QSize size = panel_.sizeHint();
    window_.setMinimumSize(PanelScale::SizeAt(PanelScale::FitInto(room, ViewSettings::kSmallestScale)));
    QWindow* const handle = window_.windowHandle();
    // After a change of the screen's scale the system's window has its old size in the screen's own pixels.
    if (window_.size() == size && (handle == nullptr || handle->size() == size)) {
        given_ = size;
        window_.setContentsMargins(0, 0, 0, 0);
        if (proposed_ && isWish_) {
            panel_.setWantedScale(*std::exchange(proposed_, std::nullopt));
        }
        return;
    }
    // Where it is changed back, who arranges the windows has the last word.
    kept_ = window_.isVisible() && given_ == size ? window_.size() : QSize();
    given_ = size;
    window_.setContentsMargins(0, 0, 0, 0);
    window_.resize(size);
    if (handle != nullptr) {
        handle->resize(size);
        MoveOntoScreen();
    }
    window_.update();
    if (proposed_) {
        FitSoon();  // by when who arranges the windows has had its word
    }
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
