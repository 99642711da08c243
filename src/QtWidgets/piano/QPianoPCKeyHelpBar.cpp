#include "QtWidgets/piano/QPianoPCKeyHelpBar.h"

#include <QCoreApplication>
#include <QEvent>
#include <QPainter>

#include <algorithm>

#include "piano/PCKeyTable.h"
#include "piano/PCKeyTexts.h"

QPianoPCKeyHelpBar::QPianoPCKeyHelpBar(QWidget* parent) : QWidget(parent) {
    setAttribute(Qt::WA_TransparentForMouseEvents);
    rebuildLabels();
}

void QPianoPCKeyHelpBar::setRange(BYTE first, BYTE count) {
    firstNote_ = first;
    keyCount_ = count;
    rebuildLabels();
}

void QPianoPCKeyHelpBar::setOctaveShift(int semitones) {
    octaveShift_ = semitones;
    rebuildLabels();
}

void QPianoPCKeyHelpBar::setTranslateKeyNames(bool on) {
    translateKeyNames_ = on;
    rebuildLabels();
}

void QPianoPCKeyHelpBar::setTextColor(const QColor& color) {
    textColor_ = color;
    update();
}

void QPianoPCKeyHelpBar::rebuildLabels() {
    for (int note = 0; note < static_cast<int>(labels_.size()); ++note) {
        const char hint = NK::Piano::GetPCKeyHint(NK::Piano::WrapNoteByOctaves(note - octaveShift_));
        QString& label = labels_[static_cast<std::size_t>(note)];
        if (hint == 0) {
            label.clear();
        } else {
            label = translateKeyNames_ ? PCKeyHintText(hint) : QString(QLatin1Char(hint));
        }
    }
    update();
}

void QPianoPCKeyHelpBar::paintEvent(QPaintEvent*) {
    constexpr double kMargin = 4.0;
    constexpr double kSmallest = 3.0;
    if (keyCount_ == 0) {
        return;
    }
    const double cellWidth = static_cast<double>(width()) / keyCount_;
    const double pointSize = std::max(kSmallest, std::min(cellWidth - kMargin, height() - kMargin));
    QPainter painter(this);
    painter.setRenderHint(QPainter::TextAntialiasing);
    painter.setFont(QFont(QStringLiteral("Helvetica"), static_cast<int>(pointSize)));
    painter.setPen(textColor_);
    for (int cell = 0; cell < keyCount_; ++cell) {
        const int note = firstNote_ + cell;
        if (note < static_cast<int>(labels_.size())) {
            painter.drawText(QRectF(cell * cellWidth, 0.0, cellWidth, height()), Qt::AlignCenter | Qt::TextDontClip,
                             labels_[static_cast<std::size_t>(note)]);
        }
    }
}

void QPianoPCKeyHelpBar::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::LanguageChange) {
        rebuildLabels();
    }
}

QString PCKeyHintText(char hint) {
    const char* source = NK::Piano::GetKeyboardMapSource(hint);
    if (source == nullptr) {
        return QString(QLatin1Char(hint));
    }
    return QCoreApplication::translate(NK::Piano::kKeyboardMapContext, source, NK::Piano::kKeyboardMapComment);
}
