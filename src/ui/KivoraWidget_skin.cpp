// How the panel looks: colours, wallpaper, the pictures of its controls.
#include <QPainter>
#include <QPaintEvent>
#include <utility>

#include "engine/CKivora.h"
#include "engine/EngineFront.h"
#include "QtWidgets/skin/QBlinkingLed.h"
#include "QtWidgets/skin/QJogDial.h"
#include "ui/arpeggiatorSettings.h"
#include "ui/Dialogs.h"
#include "ui/KivoraWidget.h"
#include "ui/MainDisplay.h"
#include "ui/PanelGeometry.h"
#include "ui/PanelKey.h"
#include "ui/PanelLabel.h"
#include "ui/WallpaperCache.h"

namespace {

constexpr int kFinestScreen = 2;  // device pixels a logical pixel that the wallpaper is kept for

/// Plain pictures of a control, by the names of the resources; without the last they have none of a disabled control.
void Dress(PanelKey* button, const QString& name, bool hasDisabled = false) {
    const auto file = [&](const char* state) { return QString(":/Resources/%1_%2.png").arg(name, state); };
    button->setImages(file("In"), file("Pr"), hasDisabled ? file("Dis") : QString());
}

}  // namespace

void KivoraWidget::updateSkin() {
    wallpaper_ = QPixmap();
    const QString path = engine_ != nullptr ? engine_->GetWallpaper() : QString();
    WallpaperCache::Result loaded;
    if (!path.isEmpty()) {
        const Dialogs::WaitCursor cursor;
        loaded = wallpaperCache().Load(path, PanelGeometry::kWallpaper.size() * kFinestScreen);
        wallpaper_ = QPixmap::fromImage(loaded.image);
    }
    composeSkin();
    // Told once, and not at every start: the skin is composed anew with every colour that is tried out.
    const QString refused = loaded.error.isEmpty() ? QString() : path;
    if (engine_ != nullptr && std::exchange(wallpaperRefused_, refused) != refused) {
        wallpaperCache().RememberTold(refused);
        if (!refused.isEmpty()) {
            notices_.Tell(QMessageBox::Critical, tr("Error Loading Wallpaper"), loaded.error, loaded.reason);
        }
    }
}

WallpaperCache KivoraWidget::wallpaperCache() const {
    return WallpaperCache(QString::fromWCharArray(engine_->GetUserDataDir().c_str()) + "/Cache/");
}

void KivoraWidget::composeSkin() {
    using Kivora::CKivora;
    PanelSkinSettings settings;
    settings.body = engine_ != nullptr ? engine_->GetUIColor() : CKivora::GetDefaultUIColor();
    settings.display = engine_ != nullptr ? engine_->GetUIDisplayColor() : CKivora::GetDefaultUIDisplayColor();
    settings.secondDisplay = engine_ != nullptr ? engine_->GetUIDisplay2Color() : CKivora::GetDefaultUIDisplay2Color();
    settings.wallpaper = wallpaper_;
    settings.devicePixelRatio = devicePixelRatio();
    skin_.Compose(settings);
    dressControls();
    composeBackground();
}

void KivoraWidget::composeBackground() {
    if (skin_.GetPanel().isNull()) {
        return;
    }
    background_ = skin_.GetPanel();
    QPainter painter(&background_);
    DrawPanelLegends(painter, leftView_, rightView_, skin_.GetDevicePixelRatio());
    painter.end();
    update();
}

void KivoraWidget::dressControls() {
    for (PanelKey* button : {reset_, settings_, helpButton_, about_}) {
        Dress(button, "Btn_68x28", true);
    }
    for (PanelKey* button : {single_, dual_, split_}) {
        Dress(button, "Btn_Mode");
    }
    for (PanelKey* button : {recordView_, arpeggioOn_, arpeggioView_}) {
        Dress(button, "Btn_35x19");
    }
    for (PanelKey* button : {loadPreset_, savePreset_}) {
        Dress(button, "Btn_60x28");
    }
    Dress(metronome_, "Btn_Metronome");
    Dress(record_, "Btn_Rec");
    Dress(stop_, "Btn_Stop", true);
    Dress(octaveDown_, "Btn_OctDown");
    Dress(octaveUp_, "Btn_OctUp");
    Dress(minus_, "Btn_Minus");
    Dress(plus_, "Btn_Plus");
    for (PanelKey* button : {tempo_, patch1_, patch2_, transpose1_, transpose2_, volume1_, volume2_}) {
        button->setCaptionColors(skin_.GetFigureColor(), PanelText::kLitGlassInk);
    }
    tempo_->setImages(skin_.GetTinted("Btn_Tempo_In"), skin_.GetTinted("Btn_Tempo_Pr"));
    for (PanelKey* button : {patch1_, patch2_, transpose1_, transpose2_, volume1_, volume2_}) {
        button->setImages(skin_.GetTinted("Btn_Param_In"), skin_.GetTinted("Btn_Param_Pr"),
                          skin_.GetTinted("Btn_Param_Dis"));
    }
    recordTime_->setGlass(skin_.GetTinted("Lcd_Time"));
    recordTime_->setTextColor(skin_.GetFigureColor());
    octaveValue_->setGlass(skin_.GetTinted("Lcd_Octave"));
    octaveValue_->setTextColor(skin_.GetFigureColor());
    midiLamp_->setImage(":/Resources/Led_9x9_green.png");
    beatLamp_->setImage(":/Resources/Led_9x9_green.png");
    barLamp_->setImage(":/Resources/Led_19x9_green.png");
    jog_->setImage(":/Resources/Jog.png", QJogDial::FixedTopRotatingBottom);
    display_->setGlass(skin_.GetTinted("Display_Main"), skin_.GetDisplayColor());
    arpeggiator1_->updateSkin(skin_);
    arpeggiator2_->updateSkin(skin_);
}

void KivoraWidget::paintEvent(QPaintEvent* event) {
    if (skin_.GetDevicePixelRatio() != devicePixelRatio()) {
        composeSkin();  // the window has moved to another screen
    }
    QPainter painter(this);
    const QRectF area = event->rect();
    const double ratio = background_.devicePixelRatio();
    painter.drawPixmap(area, background_, QRectF(area.topLeft() * ratio, area.size() * ratio));
}
