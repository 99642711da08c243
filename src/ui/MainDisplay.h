// The lit display in the middle of the panel.
#pragma once

#include <QColor>
#include <QPixmap>
#include <QWidget>

#include <array>

#include "ui/parts/PanelFigure.h"
#include "ui/parts/PanelLabel.h"
#include "ui/parts/PanelScale.h"
#include "ui/PatchTexts.h"

class NoticeLine;
class QClickableLabel;

/// A view: shows what it is told. Voices are 0 and 1. [gui]
class MainDisplay : public QWidget, public PanelScaled {
    Q_OBJECT

public:
    struct Voice {
        PatchTexts::Name name;
        QString transposition;
        QString volume;
        bool present = true;  ///< its number is pale otherwise
    };

    explicit MainDisplay(QWidget* parent = nullptr);

    /// The picture under the texts, not owned, and the glass's colour.
    void setGlass(const QPixmap* glass, const QColor& glassColor);
    void setPreset(const QString& name) { ShowFigure(preset_, name); }
    void setVoice(int index, const Voice& voice);
    void setMode(const QString& text) { ShowFigure(mode_, text); }
    void setTempo(const QString& text) { ShowFigure(tempo_, text); }
    void setVelocity(const QString& text) { ShowFigure(velocity_, text); }
    void setSustain(const QString& text);

    /// Where a patch name is clicked.
    QClickableLabel* nameArea(int index) const { return rows_.at(static_cast<std::size_t>(index)).area; }
    /// Over the status values, hidden while there is nothing to tell.
    NoticeLine* notice() const { return notice_; }

protected:
    void paintEvent(QPaintEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    struct Row {
        PanelLabel* family;
        PanelLabel* program;
        PanelLabel* transposition;
        PanelLabel* volume;
        QClickableLabel* area;
        bool present;
    };

    PanelLabel* addLabel(const char* objectName, const PanelTextStyle& style, const QRect& box, double baseline,
                         Qt::Alignment alignment);
    void addRow(int index, int top);
    void nameControls();
    /// To be called when anything has changed that drawFace() draws.
    void renewFace();
    void drawFace();
    void drawLegends(QPainter& painter, const QColor& ink, const QColor& badgeText) const;
    void drawBadge(QPainter& painter, int index, const QColor& ink, const QColor& text) const;

    const QPixmap* glass_ = nullptr;
    QColor glassColor_ = Qt::white;
    QPixmap face_;        ///< what lies under the labels, which change with the notes; null until it is painted
    PanelLabel* preset_;  // Qt's parent owns the labels
    std::array<Row, 2> rows_{};
    PanelLabel* mode_;
    PanelLabel* tempo_;
    PanelLabel* velocity_;
    PanelLabel* sustain_;
    NoticeLine* notice_;
};
