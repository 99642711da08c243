// How the panel looks: colours, wallpaper, the pictures of its controls.
#include <QPainter>
#include <QPaintEvent>
#include <utility>

#include "engine/CKivora.h"
#include "engine/EngineControls.h"
#include "nk/qt/nk_qt_string.h"
#include "QtWidgets/piano/QPiano.h"
#include "QtWidgets/skin/QBlinkingLed.h"
#include "QtWidgets/skin/QJogDial.h"
#include "ui/arpeggiatorSettings.h"
#include "ui/KivoraWidget.h"
#include "ui/MainDisplay.h"
#include "ui/parts/InstrumentStyle.h"
#include "ui/parts/PanelGeometry.h"
#include "ui/parts/PanelKey.h"
#include "ui/parts/PanelLabel.h"
#include "ui/parts/WaitCursor.h"
#include "ui/WallpaperCache.h"
#include "ui/WheelStrip.h"

namespace {

constexpr int kFinestScreen = 2;  // device pixels a logical pixel that the wallpaper is kept for

constexpr QColor kHighContrastBody(0, 0, 0);
constexpr QColor kHighContrastDisplay(255, 255, 255);
constexpr QColor kHighContrastFigures(255, 255, 0);
constexpr double kFrameWidth = 2.0;

/// Plain pictures of a control, by the names of the resources; without the last they have none of a disabled control.
void Dress(PanelKey* button, const QString& name, double ratio, bool hasDisabled = false) {
    const auto file = [&](const char* state) { return SkinPictureFile(name + '_' + state, ratio); };
    button->setImages(file("In"), file("Pr"), hasDisabled ? file("Dis") : QString());
}

}  // namespace

void KivoraWidget::updateSkin() {
    wallpaper_ = QPixmap();
    const QString path = wallpaperPath();
    wallpaperLoaded_ = WallpaperCache::StampOf(path);
    WallpaperCache::Result loaded;
    if (!path.isEmpty()) {
        const WaitCursor cursor;
        loaded = wallpaperCache().Load(path, PanelGeometry::kWallpaper.size() * kFinestScreen);
        wallpaper_ = QPixmap::fromImage(loaded.image);
    }
    composeSkin();
    // Told once, and not at every start: the skin is composed anew with every colour that is tried out.
    const QString refused = loaded.error.isEmpty() ? QString() : path;
    if (engine_ != nullptr && std::exchange(wallpaperRefused_, refused) != refused) {
        wallpaperTold().Keep(refused);
        if (!refused.isEmpty()) {
            notices_.Tell(QMessageBox::Critical, tr("Error Loading Wallpaper"), loaded.error, loaded.reason);
        }
    }
}

WallpaperCache KivoraWidget::wallpaperCache() const {
    return WallpaperCache(cacheFolder());
}

KeptText KivoraWidget::wallpaperTold() const {
    return KeptText(cacheFolder() + "wallpaper-told.txt");
}

QString KivoraWidget::cacheFolder() const {
    return NK::ToQt(engine_->GetUserDataDir()) + "/Cache/";
}

void KivoraWidget::composeSkin() {
    using Kivora::CKivora;
    PanelSkinSettings settings;
    settings.body = engine_ != nullptr ? engine_->GetUIColor() : CKivora::GetDefaultUIColor();
    settings.display = engine_ != nullptr ? engine_->GetUIDisplayColor() : CKivora::GetDefaultUIDisplayColor();
    settings.secondDisplay = engine_ != nullptr ? engine_->GetUIDisplay2Color() : CKivora::GetDefaultUIDisplay2Color();
    settings.wallpaper = wallpaper_;
    if (InstrumentStyle::IsHighContrast()) {
        settings.body = kHighContrastBody;
        settings.display = kHighContrastDisplay;
        settings.secondDisplay = kHighContrastFigures;
        settings.wallpaper = QPixmap();
        settings.plain = true;
    }
    settings.devicePixelRatio = devicePixelRatioF();
    settings.scale = scale_.Get();
    const qint64 former = skin_.GetOverlay().cacheKey();
    skin_.Compose(settings);
    if (skin_.GetOverlay().cacheKey() != former) {
        dressControls();
        composeBackground();
    }
    tintControls();
    // The piano and the display hide what is under them.
    update(QRegion(rect()).subtracted(piano_->geometry()).subtracted(display_->geometry()));
}

void KivoraWidget::skinChanged() {
    if (wallpaperLoaded_ == WallpaperCache::StampOf(wallpaperPath())) {
        composeSkin();  // a colour, of which many come while one is chosen
    } else {
        updateSkin();
    }
}

QString KivoraWidget::wallpaperPath() const {
    return engine_ != nullptr ? engine_->GetWallpaper() : QString();
}

void KivoraWidget::composeBackground() {
    if (skin_.GetOverlay().isNull()) {
        return;
    }
    background_ = skin_.GetOverlay();
    QPainter painter(&background_);
    painter.scale(skin_.GetRatio(), skin_.GetRatio());
    const QRect& names = PanelGeometry::kOctaveNames;
    DrawPanelLegends(painter, leftView_, rightView_, pianoRange_,
                     strip_->isVisibleTo(this) ? PanelGeometry::BesideStrip(names) : names, skin_.GetRatio());
    if (InstrumentStyle::IsHighContrast()) {
        drawFrames(painter);
    }
    painter.end();
    update();
}

void KivoraWidget::drawFrames(QPainter& painter) const {
    painter.setPen(QPen(Qt::white, kFrameWidth));
    painter.setBrush(Qt::NoBrush);
    for (const QWidget* control : findChildren<QWidget*>()) {
        const bool isControl = control->focusPolicy() != Qt::NoFocus && control->window() == window();
        if (isControl && control->isVisibleTo(this)) {
            const QRectF place(QPointF(control->mapTo(this, QPoint())) / scale_.Get(),
                               QSizeF(control->size()) / scale_.Get());
            constexpr double kOutside = kFrameWidth / 2;
            painter.drawRoundedRect(place.adjusted(-kOutside, -kOutside, kOutside, kOutside), kFrameWidth, kFrameWidth);
        }
    }
}

void KivoraWidget::dressControls() {
    const double ratio = skin_.GetRatio();
    for (PanelKey* button : {reset_, settings_, helpButton_, about_}) {
        Dress(button, "Btn_68x28", ratio, true);
    }
    for (PanelKey* button : {single_, dual_, split_}) {
        Dress(button, "Btn_Mode", ratio);
    }
    for (PanelKey* button : {recordView_, tap_, arpeggioOn_, arpeggioView_}) {
        Dress(button, "Btn_35x19", ratio);
    }
    for (PanelKey* button : {loadPreset_, savePreset_}) {
        Dress(button, "Btn_60x28", ratio);
    }
    Dress(metronome_, "Btn_Metronome", ratio);
    Dress(record_, "Btn_Rec", ratio);
    Dress(stop_, "Btn_Stop", ratio, true);
    Dress(octaveDown_, "Btn_OctDown", ratio);
    Dress(octaveUp_, "Btn_OctUp", ratio);
    Dress(minus_, "Btn_Minus", ratio);
    Dress(plus_, "Btn_Plus", ratio);
    tempo_->setImages(skin_.GetTinted("Btn_Tempo_In"), skin_.GetTinted("Btn_Tempo_Pr"));
    for (PanelKey* button : {patch1_, patch2_, transpose1_, transpose2_, volume1_, volume2_}) {
        button->setImages(skin_.GetTinted("Btn_Param_In"), skin_.GetTinted("Btn_Param_Pr"),
                          skin_.GetTinted("Btn_Param_Dis"));
    }
    recordTime_->setGlass(skin_.GetTinted("Lcd_Time"));
    octaveValue_->setGlass(skin_.GetTinted("Lcd_Octave"));
    midiLamp_->setImage(SkinPictureFile("Led_9x9_green", ratio));
    beatLamp_->setImage(SkinPictureFile("Led_9x9_green", ratio));
    barLamp_->setImage(SkinPictureFile("Led_19x9_green", ratio));
    jog_->setImage(SkinPictureFile("Jog", ratio), QJogDial::FixedTopRotatingBottom);
    for (PanelKey* button : strip_->pedals()) {
        Dress(button, "Btn_35x19", ratio);
    }
    arpeggiator1_->updateSkin(skin_);
    arpeggiator2_->updateSkin(skin_);
}

void KivoraWidget::tintControls() {
    for (PanelKey* button : {tempo_, patch1_, patch2_, transpose1_, transpose2_, volume1_, volume2_}) {
        button->setCaptionColors(skin_.GetFigureColor(), PanelText::kLitGlassInk);
    }
    recordTime_->setTextColor(skin_.GetFigureColor());
    octaveValue_->setTextColor(skin_.GetFigureColor());
    display_->setGlass(skin_.GetTinted("Display_Main"), skin_.GetDisplayColor());
    strip_->setFigureColor(skin_.GetFigureColor());
    arpeggiator1_->updateColors(skin_);
    arpeggiator2_->updateColors(skin_);
}

void KivoraWidget::setPanelScale(double scale) {
    if (scale == scale_.Get()) {
        return;
    }
    scale_.Apply(scale);
    centreHints();
    composeSkin();
    updateGeometry();
}

void KivoraWidget::paintEvent(QPaintEvent* /*event*/) {
    if (skin_.GetRatio() != devicePixelRatioF() * scale_.Get()) {
        composeSkin();  // the window has moved to another screen, or the screen has another scale
    }
    // Whole, and cut by the painter: parts of the picture would not meet where a logical pixel is no whole number of
    // the screen's.
    QPainter painter(this);
    painter.scale(scale_.Get(), scale_.Get());
    skin_.DrawBody(painter);
    skin_.DrawComposed(painter, background_);
}
