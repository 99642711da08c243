// How large the panel is wanted, in which contrast, and how much screen readers are told of it.
#include <algorithm>
#include <QActionGroup>
#include <QMenu>
#include <utility>

#include "engine/CKivora.h"
#include "nk/nk_file_failure.h"
#include "nk/nk_paths.h"
#include "QtWidgets/piano/QPiano.h"
#include "QtWidgets/piano/QPianoAccessible.h"
#include "QtWidgets/piano/QPianoPCKeyHelpBar.h"
#include "ui/KivoraWidget.h"
#include "ui/parts/FailureTexts.h"
#include "ui/parts/InstrumentStyle.h"

namespace {
constexpr int kSizes[] = {75, 100, 125, 150, 200};  // per cent
constexpr double kPercent = 100.0;
}  // namespace

void KivoraWidget::loadView() {
    view_ = ViewSettings::Read(viewPath());
    showView();
}

void KivoraWidget::changeView(const ViewSettings& view) {
    if (view == view_) {
        return;
    }
    const double former = view_.scale;
    view_ = view;
    NK::ForgetFileFailure();
    if (engine_ != nullptr && !view_.Save(viewPath())) {
        notices_.Tell(QMessageBox::Warning, tr("Warning"), tr("Failed to save the settings."),
                      FailureTexts::OfLastFile());
    }
    showView();
    if (view_.scale != former && wantedScaleListener_) {
        wantedScaleListener_();
    }
}

NK::CString KivoraWidget::viewPath() const {
    return NK::JoinPath(engine_->GetUserDataDir(), ViewSettings::kFileName);
}

void KivoraWidget::showView() {
    QPianoAccessible::setQuiet(view_.quietWhilePlaying);
    InstrumentStyle::ChooseContrast(view_.contrast);
    showPianoRange();
    showStrip();
    composeSkin();
    composeBackground();  // whose frames the skin knows nothing of
}

void KivoraWidget::showPianoRange() {
    const PianoRange range = PianoRange::Of(view_.pianoKeys, keys_.GetOctaveShift());
    if (range == pianoRange_) {
        return;
    }
    pianoRange_ = range;
    piano_->releaseHeld();
    piano_->SetKeys(range.first, range.count);
    hintBar_->setRange(range.first, range.count);
    centreHints();
    composeBackground();
}

void KivoraWidget::createPianoMenu() {
    QMenu* const sizes = menu_->addMenu(tr("Piano Keys"));
    auto* const choice = new QActionGroup(menu_);
    for (const int keys : PianoRange::kSizes) {
        addMenuState(
            *sizes, tr("%1 Keys").arg(keys), {},
            [this, keys] {
                ViewSettings view = view_;
                view.pianoKeys = keys;
                changeView(view);
            },
            [this, keys] { return view_.pianoKeys == keys; }, choice);
    }
}

void KivoraWidget::setWantedScale(double scale) {
    ViewSettings view = view_;
    view.scale = std::clamp(scale, ViewSettings::kSmallestScale, ViewSettings::kLargestScale);
    changeView(view);
}

void KivoraWidget::createSizeMenu() {
    QMenu* const sizes = menu_->addMenu(tr("Si&ze"));
    auto* const choice = new QActionGroup(menu_);
    for (const int percent : kSizes) {
        // Queued: a pop-up menu that is open sees no other size of its window.
        addMenuState(
            *sizes, tr("%1%").arg(percent), {},
            [this, percent] { QTimer::singleShot(0, this, [this, percent] { setWantedScale(percent / kPercent); }); },
            [this, percent] { return view_.scale == percent / kPercent; }, choice);
    }
}

void KivoraWidget::createAccessibilityMenu() {
    QMenu* const menu = menu_->addMenu(tr("Accessibilit&y"));
    auto* const choice = new QActionGroup(menu_);
    const std::pair<EContrast, QString> contrasts[] = {
        {EContrast::kAsDesktop, tr("Contrast of the &Desktop")},
        {EContrast::kHigh, tr("&High Contrast")},
        {EContrast::kUsual, tr("&Usual Contrast")},
    };
    for (const auto& [contrast, text] : contrasts) {
        addMenuState(
            *menu, text, {},
            [this, contrast = contrast] {
                ViewSettings view = view_;
                view.contrast = contrast;
                changeView(view);
            },
            [this, contrast = contrast] { return view_.contrast == contrast; }, choice);
    }
    menu->addSeparator();
    addMenuState(
        *menu, tr("&Quiet while Playing"), {},
        [this] {
            ViewSettings view = view_;
            view.quietWhilePlaying = !view.quietWhilePlaying;
            changeView(view);
        },
        [this] { return view_.quietWhilePlaying; });
}
