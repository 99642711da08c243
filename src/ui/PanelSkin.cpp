#include "ui/PanelSkin.h"

#include <cmath>
#include <QPainter>
#include <QPainterPath>
#include <QPixmapCache>
#include <utility>

#include "ui/parts/PanelGeometry.h"
#include "ui/parts/SkinColors.h"

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

constexpr const char* kSliderParts[] = {"Slider_Hor_Channel", "Slider_Hor_In", "Slider_Hor_Pr"};

constexpr double kSmokeOfBody = 0.31;
constexpr float kSmokeOpacity = 0.54F;
constexpr int kPlateRadius = 6;
constexpr int kBayRadius = 7;
constexpr int kBezelRadius = 9;

QPixmap Tint(const QString& name, const QRect& window, double radius, const QColor& color, double ratio) {
    const QPixmap overlay = LoadSkinPicture(name, ratio);
    const QSizeF size = overlay.deviceIndependentSize();
    QPixmap picture((size * ratio).toSize());
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    painter.scale(ratio, ratio);
    painter.setPen(Qt::NoPen);
    painter.setBrush(color);
    painter.drawRoundedRect(window.isEmpty() ? QRectF(QPointF(), size) : QRectF(window), radius, radius);
    painter.drawPixmap(QRectF(QPointF(), size), overlay, QRectF(overlay.rect()));
    return picture;
}

QColor SmokeOf(const QColor& body) {
    const auto darkened = [](int component) { return static_cast<int>(std::lround(component * kSmokeOfBody)); };
    QColor smoke(darkened(body.red()), darkened(body.green()), darkened(body.blue()));
    smoke.setAlphaF(kSmokeOpacity);
    return smoke;
}

/// Smoked glass under the texts, so that they are legible on any picture.
void DrawSmoke(QPainter& painter, const QColor& smoke) {
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

/// A transparent picture of an area of the design, in whole device pixels, none fewer than it takes.
QPixmap Blank(const QSize& area, double ratio) {
    const QSizeF size = QSizeF(area) * ratio;
    QPixmap picture(static_cast<int>(std::ceil(size.width())), static_cast<int>(std::ceil(size.height())));
    picture.fill(Qt::transparent);
    return picture;
}

}  // namespace

QString SkinPictureFile(const QString& name, double ratio) {
    const char* const fineness = ratio > 2.0 ? "@4x" : ratio > 1.0 ? "@2x" : "";
    return QString(":/Resources/%1%2.png").arg(name, fineness);
}

QPixmap LoadSkinPicture(const QString& name, double ratio) {
    const QString file = SkinPictureFile(name, ratio);
    QPixmap picture;
    if (!QPixmapCache::find(file, &picture)) {
        picture.load(file);
        picture.setDevicePixelRatio(ratio > 2.0 ? 4.0 : ratio > 1.0 ? 2.0 : 1.0);
        QPixmapCache::insert(file, picture);
    }
    return picture;
}

void PanelSkin::Compose(const PanelSkinSettings& settings) {
    const double ratio = settings.devicePixelRatio * settings.scale;
    const bool rescaled = ratio != std::exchange(ratio_, ratio);
    const qint64 wallpaperKey = settings.wallpaper.isNull() ? 0 : settings.wallpaper.cacheKey();
    const qint64 formerKey = std::exchange(wallpaperKey_, wallpaperKey);
    body_ = CapColor(settings.body);
    smoke_ = SmokeOf(settings.body);

    const QColor display = LiftColor(settings.display);
    if (display != std::exchange(displayColor_, display) || rescaled) {
        tinted_["Display_Main"] = Tint("Display_Main", {}, 0, displayColor_, ratio);
    }
    const QColor figures = LiftColor(settings.secondDisplay);
    if (figures != std::exchange(figureColor_, figures) || rescaled) {
        for (const TintedPicture& picture : kSecondDisplays) {
            tinted_[picture.name] = Tint(picture.name, picture.window, picture.radius, figureColor_, ratio);
        }
    }
    if (rescaled) {
        for (const char* name : kSliderParts) {
            QPixmap part = LoadSkinPicture(name, ratio);
            part.setDevicePixelRatio(part.devicePixelRatio() / settings.scale);
            sliderParts_[name] = part;
        }
    }
    const bool brushed = settings.wallpaper.isNull() && !settings.plain;
    if (brushed != std::exchange(brushed_, brushed) || rescaled || overlay_.isNull()) {
        ComposeOverlay();
    }
    if (rescaled || wallpaperKey != formerKey) {
        ComposeWallpaper(settings.wallpaper);
    }
}

void PanelSkin::ComposeOverlay() {
    overlay_ = Blank(PanelGeometry::kPanel.size(), ratio_);
    QPainter painter(&overlay_);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    painter.scale(ratio_, ratio_);
    if (brushed_) {
        painter.drawPixmap(0, 0, LoadSkinPicture("Panel_Brush", ratio_));
    }
    painter.drawPixmap(0, 0, LoadSkinPicture("Panel", ratio_));
}

void PanelSkin::ComposeWallpaper(const QPixmap& wallpaper) {
    wallpaper_ = QPixmap();
    if (wallpaper.isNull()) {
        return;
    }
    wallpaper_ = Blank(PanelGeometry::kWallpaper.size(), ratio_);
    QPainter painter(&wallpaper_);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    painter.scale(ratio_, ratio_);
    painter.setClipRect(PanelGeometry::kWallpaper);
    const double height =
        static_cast<double>(wallpaper.height()) * PanelGeometry::kWallpaper.width() / wallpaper.width();
    painter.drawPixmap(QRectF(0, 0, PanelGeometry::kWallpaper.width(), height), wallpaper, QRectF(wallpaper.rect()));
}

void PanelSkin::DrawComposed(QPainter& painter, const QPixmap& picture) const {
    painter.drawPixmap(QRectF(QPointF(), QSizeF(picture.size()) / ratio_), picture, QRectF(picture.rect()));
}

void PanelSkin::DrawBody(QPainter& painter) const {
    painter.fillRect(PanelGeometry::kPanel.adjusted(0, 0, 1, 1), body_);  // past the edge, which may be half a pixel
    if (!wallpaper_.isNull()) {
        painter.setRenderHint(QPainter::Antialiasing);
        DrawComposed(painter, wallpaper_);
        DrawSmoke(painter, smoke_);
    }
}
