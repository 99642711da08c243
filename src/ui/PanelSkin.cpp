#include "ui/PanelSkin.h"

#include <QPainter>
#include <QPainterPath>

#include "ui/PanelGeometry.h"
#include "ui/SkinColors.h"

namespace {

/// A picture over glass: where in it the tint shines through, in logical pixels. An empty window is the whole picture.
struct TintedPicture {
    const char* name;
    QRect window;
    double radius;
};

constexpr QRect kParameterWindow{4, 4, 106, 21};
constexpr QRect kTempoWindow{4, 4, 106, 39};

constexpr TintedPicture kSecondDisplays[] = {
    {"Btn_Param_In", kParameterWindow, 2},
    {"Btn_Param_Pr", kParameterWindow, 2},
    {"Btn_Param_Dis", kParameterWindow, 2},
    {"Btn_Tempo_In", kTempoWindow, 2},
    {"Btn_Tempo_Pr", kTempoWindow, 2},
    {"Lcd_Time", {}, 3},
    {"Lcd_Octave", {}, 3},
    {"Lcd_Gate", {}, 3},
    {"Combo_124", {}, 3},
    {"Combo_62", {}, 3},
    {"Combo_74", {}, 3},
};

constexpr double kSmokeOfBody = 0.31;
constexpr float kSmokeOpacity = 0.54F;
constexpr int kPlateRadius = 6;
constexpr int kBayRadius = 7;
constexpr int kBezelRadius = 9;

QPixmap Tint(const QString& name, const QRect& window, double radius, const QColor& color, double devicePixelRatio) {
    const QPixmap overlay = LoadSkinPicture(name, devicePixelRatio);
    const QSizeF size = overlay.deviceIndependentSize();
    QPixmap picture((size * devicePixelRatio).toSize());
    picture.setDevicePixelRatio(devicePixelRatio);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    painter.setPen(Qt::NoPen);
    painter.setBrush(color);
    painter.drawRoundedRect(window.isEmpty() ? QRectF(QPointF(), size) : QRectF(window), radius, radius);
    painter.drawPixmap(QRectF(QPointF(), size), overlay, QRectF(overlay.rect()));
    return picture;
}

/// Smoked glass under the texts, so that they are legible on any picture.
void DrawSmoke(QPainter& painter, const QColor& body) {
    QColor smoke(static_cast<int>(body.red() * kSmokeOfBody + 0.5), static_cast<int>(body.green() * kSmokeOfBody + 0.5),
                 static_cast<int>(body.blue() * kSmokeOfBody + 0.5));
    smoke.setAlphaF(kSmokeOpacity);
    painter.fillRect(PanelGeometry::kHeader, smoke);
    painter.setPen(Qt::NoPen);
    painter.setBrush(smoke);
    for (const QRect& plate : PanelGeometry::kPlates) {
        painter.drawRoundedRect(plate, kPlateRadius, kPlateRadius);
    }
    for (const QRect& bay : PanelGeometry::kBays) {
        painter.drawRoundedRect(bay, kBayRadius, kBayRadius);
    }
    painter.drawRoundedRect(PanelGeometry::kMainDisplayBezel, kBezelRadius, kBezelRadius);
}

void DrawWallpaper(QPainter& painter, const QPixmap& wallpaper, const QColor& body) {
    painter.save();
    painter.setClipRect(PanelGeometry::kWallpaper);
    const QSizeF size =
        wallpaper.size().scaled(PanelGeometry::kWallpaper.width(), wallpaper.height() * 8192, Qt::KeepAspectRatio);
    painter.drawPixmap(QRectF(QPointF(), size), wallpaper, QRectF(wallpaper.rect()));
    DrawSmoke(painter, body);
    painter.restore();
}

}  // namespace

QPixmap LoadSkinPicture(const QString& name, double devicePixelRatio) {
    const bool fine = devicePixelRatio > 1.0;
    QPixmap picture(QString(":/Resources/%1%2.png").arg(name, fine ? "@2x" : ""));
    picture.setDevicePixelRatio(fine ? 2.0 : 1.0);
    return picture;
}

void PanelSkin::Compose(const PanelSkinSettings& settings) {
    const double ratio = settings.devicePixelRatio;
    const QColor body = CapColor(settings.body);
    displayColor_ = LiftColor(settings.display);
    figureColor_ = LiftColor(settings.secondDisplay);
    for (const TintedPicture& picture : kSecondDisplays) {
        tinted_[picture.name] = Tint(picture.name, picture.window, picture.radius, figureColor_, ratio);
    }
    tinted_["Display_Main"] = Tint("Display_Main", {}, 0, displayColor_, ratio);

    const QRectF whole(QPointF(), QSizeF(PanelGeometry::kPanel.size()));
    QPixmap panel((whole.size() * ratio).toSize());
    panel.setDevicePixelRatio(ratio);
    panel.fill(body);
    QPainter painter(&panel);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    if (settings.wallpaper.isNull()) {
        painter.drawPixmap(0, 0, LoadSkinPicture("Panel_Brush", ratio));
    } else {
        DrawWallpaper(painter, settings.wallpaper, settings.body);
    }
    painter.drawPixmap(0, 0, LoadSkinPicture("Panel", ratio));
    painter.drawPixmap(PanelGeometry::kMainDisplay, tinted_["Display_Main"]);
    painter.end();
    panel_ = panel;
}
