// The line of the display that says what is wrong.
#pragma once

#include <functional>
#include <map>
#include <QColor>
#include <QLabel>
#include <QString>

#include "ui/parts/PanelScale.h"

/// Lies over the display's status values while there is something to tell, and is hidden otherwise. Of several notices
/// the most urgent is shown. A press acts where its notice gives it something to do. [gui]
class NoticeLine : public QLabel, public PanelScaled {
    Q_OBJECT

public:
    /// What a notice is about, the most urgent first; there is one notice for each at a time.
    enum class Topic { kSound, kRecording, kCountIn, kTakes, kInput, kFiles, kPresets, kHint };

    explicit NoticeLine(QWidget* parent = nullptr);

    /// `pressed` may be empty. The same text once more is no news.
    void tell(Topic topic, const QString& text, std::function<void()> pressed = {});
    void withdraw(Topic topic);
    /// The colour of the letters; the line itself has the display's ink.
    void setGlassColor(const QColor& color);

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    struct Notice {
        QString text;
        std::function<void()> pressed;
    };

    void showMostUrgent();

    std::map<Topic, Notice> notices_;
    QColor glassColor_ = Qt::white;
};
