#include "ui/parts/InstrumentMarks.h"

#include <QFont>
#include <QIconEngine>
#include <QPainter>
#include <QPainterPath>

#include "ui/parts/InstrumentColors.h"
#include "ui/parts/InstrumentParts.h"

namespace InstrumentMarks {

namespace {

using namespace InstrumentColors;

/// Draws into a square of 16 units.
using Drawing = void (*)(QPainter& painter);
constexpr double kUnits = 16.0;

void Line(QPainter& painter, const QList<QPointF>& points) {
    painter.drawPolyline(QPolygonF(points));
}

/// A small display with one lit figure, as the panel tells things.
void Display(QPainter& painter, QChar figure, const QColor& color) {
    InstrumentParts::DrawGlass(painter, QRectF(0.5, 0.5, 15, 15), kEdge, 0.5);
    QFont font;
    font.setFamilies({"Play", "Inter", "Liberation Sans"});
    font.setBold(true);
    font.setPixelSize(11);
    font.setHintingPreference(QFont::PreferNoHinting);
    QPainterPath path;
    path.addText(0, 0, font, figure);
    const QRectF box = path.boundingRect();
    painter.translate(QPointF(8, 8) - box.center());
    painter.fillPath(path, color);
}

void Information(QPainter& painter) {
    Display(painter, 'i', kFigures);
}
void Question(QPainter& painter) {
    Display(painter, '?', kFigures);
}
void Warning(QPainter& painter) {
    Display(painter, '!', kWarning);
}
void Critical(QPainter& painter) {
    Display(painter, '!', kFailure);
}

void Folder(QPainter& painter) {
    painter.setBrush(kCap);
    Line(painter, {{1.5, 13}, {1.5, 3}, {6, 3}, {7.5, 5}, {14.5, 5}, {14.5, 13}, {1.5, 13}});
    painter.drawPolygon(QPolygonF({{1.5, 13}, {1.5, 3}, {6, 3}, {7.5, 5}, {14.5, 5}, {14.5, 13}}));
}
void File(QPainter& painter) {
    painter.setBrush(kCap);
    painter.drawPolygon(QPolygonF({{3.5, 1.5}, {9.5, 1.5}, {12.5, 4.5}, {12.5, 14.5}, {3.5, 14.5}}));
    Line(painter, {{9.5, 1.5}, {9.5, 4.5}, {12.5, 4.5}});
}
void NewFolder(QPainter& painter) {
    Folder(painter);
    Line(painter, {{8, 7}, {8, 11.5}});
    Line(painter, {{5.75, 9.25}, {10.25, 9.25}});
}
void Drive(QPainter& painter) {
    painter.drawRoundedRect(QRectF(1.5, 5, 13, 6.5), 1.5, 1.5);
    Line(painter, {{4, 8.25}, {8, 8.25}});
}
void Computer(QPainter& painter) {
    painter.drawRoundedRect(QRectF(1.5, 2.5, 13, 8.5), 1, 1);
    Line(painter, {{5, 14}, {11, 14}});
    Line(painter, {{8, 11}, {8, 14}});
}
void Home(QPainter& painter) {
    Line(painter, {{1.5, 8}, {8, 2}, {14.5, 8}});
    Line(painter, {{3.5, 7}, {3.5, 14}, {12.5, 14}, {12.5, 7}});
}
void Back(QPainter& painter) {
    Line(painter, {{8, 3}, {3, 8}, {8, 13}});
    Line(painter, {{3, 8}, {13.5, 8}});
}
void Forward(QPainter& painter) {
    Line(painter, {{8, 3}, {13, 8}, {8, 13}});
    Line(painter, {{13, 8}, {2.5, 8}});
}
void Parent(QPainter& painter) {
    Line(painter, {{3, 8}, {8, 3}, {13, 8}});
    Line(painter, {{8, 3}, {8, 13.5}});
}
void Rows(QPainter& painter) {
    for (const double y : {4.0, 8.0, 12.0}) {
        Line(painter, {{2.5, y}, {13.5, y}});
    }
}
void RowsWithDetails(QPainter& painter) {
    for (const double y : {4.0, 8.0, 12.0}) {
        Line(painter, {{2.5, y}, {7, y}});
        Line(painter, {{9.5, y}, {13.5, y}});
    }
}
void Cross(QPainter& painter) {
    Line(painter, {{4, 4}, {12, 12}});
    Line(painter, {{12, 4}, {4, 12}});
}

Drawing Choose(QStyle::StandardPixmap icon) {
    switch (icon) {
        case QStyle::SP_MessageBoxInformation:
            return Information;
        case QStyle::SP_MessageBoxQuestion:
            return Question;
        case QStyle::SP_MessageBoxWarning:
            return Warning;
        case QStyle::SP_MessageBoxCritical:
            return Critical;
        case QStyle::SP_DirIcon:
        case QStyle::SP_DirOpenIcon:
        case QStyle::SP_DirClosedIcon:
        case QStyle::SP_DirLinkIcon:
            return Folder;
        case QStyle::SP_FileIcon:
        case QStyle::SP_FileLinkIcon:
            return File;
        case QStyle::SP_FileDialogNewFolder:
            return NewFolder;
        case QStyle::SP_DriveHDIcon:
        case QStyle::SP_DriveCDIcon:
        case QStyle::SP_DriveDVDIcon:
        case QStyle::SP_DriveFDIcon:
        case QStyle::SP_DriveNetIcon:
            return Drive;
        case QStyle::SP_ComputerIcon:
        case QStyle::SP_DesktopIcon:
            return Computer;
        case QStyle::SP_DirHomeIcon:
            return Home;
        case QStyle::SP_ArrowBack:
        case QStyle::SP_ArrowLeft:
        case QStyle::SP_FileDialogBack:
            return Back;
        case QStyle::SP_ArrowForward:
        case QStyle::SP_ArrowRight:
            return Forward;
        case QStyle::SP_ArrowUp:
        case QStyle::SP_FileDialogToParent:
            return Parent;
        case QStyle::SP_FileDialogListView:
            return Rows;
        case QStyle::SP_FileDialogDetailedView:
            return RowsWithDetails;
        case QStyle::SP_LineEditClearButton:
        case QStyle::SP_DockWidgetCloseButton:
        case QStyle::SP_TitleBarCloseButton:
            return Cross;
        default:
            return nullptr;
    }
}

class Engine : public QIconEngine {
public:
    explicit Engine(Drawing drawing) : drawing_(drawing) {}

    void paint(QPainter* painter, const QRect& area, QIcon::Mode mode, QIcon::State) override {
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        const double side = qMin(area.width(), area.height());
        painter->translate(QRectF(area).center() - QPointF(side, side) / 2.0);
        painter->scale(side / kUnits, side / kUnits);
        const QColor color = mode == QIcon::Disabled ? kDimText : mode == QIcon::Selected ? kLitInk : kText;
        painter->setPen(QPen(color, 1.2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        painter->setBrush(Qt::NoBrush);
        drawing_(*painter);
        painter->restore();
    }
    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
        QPixmap pixmap(size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        paint(&painter, QRect(QPoint(), size), mode, state);
        return pixmap;
    }
    QIconEngine* clone() const override { return new Engine(*this); }

private:
    Drawing drawing_;
};

}  // namespace

QIcon Find(QStyle::StandardPixmap icon) {
    const Drawing drawing = Choose(icon);
    return drawing != nullptr ? QIcon(new Engine(drawing)) : QIcon();
}

}  // namespace InstrumentMarks
