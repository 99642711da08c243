// A combo box of the panel.
#pragma once

#include <QComboBox>
#include <QPixmap>

#include "ui/parts/PanelScale.h"
#include "ui/parts/PanelText.h"

/// Its face is a picture with the current text on it; its list opens below, dark, with the current row lit. [gui]
class PanelCombo : public QComboBox, public PanelScaled {
    Q_OBJECT

public:
    explicit PanelCombo(QWidget* parent = nullptr);

    /// The face, which is not owned, and the colour of the text and of the current row.
    void setSkin(const QPixmap* face, const QColor& figures);
    /// The current text as it fits the face.
    QString fittedText() const;

    void showPopup() override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QRectF textArea() const;  ///< in the design's pixels

    const QPixmap* face_ = nullptr;
    PanelTextStyle style_ = PanelText::kComboText;
};
