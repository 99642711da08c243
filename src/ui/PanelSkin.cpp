#include "ui/PanelSkin.h"

#include <QPainter>

#include "ui/PanelGeometry.h"
#include "ui/SkinColors.h"

namespace {

QPixmap Load(const char* name, double devicePixelRatio) {
    QPixmap image(QString(":/Resources/%1%2.png").arg(name, devicePixelRatio > 1.0 ? "@2x" : ""));
    image.setDevicePixelRatio(devicePixelRatio > 1.0 ? 2.0 : 1.0);
    return image;
}

}  // namespace

void PanelSkin::Compose(const QColor& body, const QColor& display, double devicePixelRatio) {
    QPixmap panel((QSizeF(PanelGeometry::kPanel.size()) * devicePixelRatio).toSize());
    panel.setDevicePixelRatio(devicePixelRatio);
    panel.fill(CapColor(body));
    QPainter painter(&panel);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawPixmap(0, 0, Load("Panel_Brush", devicePixelRatio));
    painter.drawPixmap(0, 0, Load("Panel", devicePixelRatio));
    painter.fillRect(PanelGeometry::kMainDisplay, LiftColor(display));
    painter.drawPixmap(PanelGeometry::kMainDisplay.topLeft(), Load("Display_Main", devicePixelRatio));
    painter.end();
    panel_ = panel;
}
