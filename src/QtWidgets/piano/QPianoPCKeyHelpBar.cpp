#include "QtWidgets/piano/QPianoPCKeyHelpBar.h"

#include <QCoreApplication>
#include <QEvent>
#include <QPainter>
#include <QStringList>

#include <algorithm>

#include "midi/MIDINotes.h"
#include "nk/nk_exception.h"
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

void QPianoPCKeyHelpBar::setKeyTops(const std::optional<QMap<char, QString>>& tops) {
    keyTops_ = tops;
    rebuildLabels();
}

void QPianoPCKeyHelpBar::setTextColor(const QColor& color) {
    textColor_ = color;
    update();
}

void QPianoPCKeyHelpBar::setCentres(const std::vector<double>& centres) {
    if (!centres.empty() && centres.size() != labels_.size()) {
        throw NK::CInvalidParameterException(L"A centre is needed for each note.");
    }
    centres_ = centres;
    update();
}

double QPianoPCKeyHelpBar::centreOf(BYTE note) const {
    return centres_.empty() ? (note - firstNote_ + 0.5) * cellWidth() : centres_.at(note);
}

QFont QPianoPCKeyHelpBar::fontForBar() const {
    constexpr double kMargin = 4.0;
    constexpr double kSmallest = 3.0;
    constexpr double kPixelsPerPoint = 96.0 / 72.0;  // the desktop's resolution would make letters outgrow the bar
    const int points = static_cast<int>(std::max(kSmallest, std::min(cellWidth() - kMargin, height() - kMargin)));
    QFont font(QStringLiteral("Helvetica"));
    font.setPixelSize(qRound(points * kPixelsPerPoint));
    return font;
}

void QPianoPCKeyHelpBar::rebuildLabels() {
    for (int note = 0; note < static_cast<int>(labels_.size()); ++note) {
        const char hint = NK::Piano::GetPCKeyHint(NK::MIDI::FoldNote(note - octaveShift_));
        QString& label = labels_[static_cast<std::size_t>(note)];
        label = hint != 0 ? labelOf(hint) : QString();
    }
    QStringList shown;
    for (int note = firstNote_; note < endOfRange(); ++note) {
        shown << labels_[static_cast<std::size_t>(note)];
    }
    shown.removeAll(QString());
    setAccessibleDescription(shown.join(' '));
    update();
}

int QPianoPCKeyHelpBar::endOfRange() const {
    return std::min(firstNote_ + keyCount_, static_cast<int>(labels_.size()));
}

QString QPianoPCKeyHelpBar::labelOf(char hint) const {
    if (!translateKeyNames_) {
        return QString(QLatin1Char(hint));
    }
    return keyTops_ ? keyTops_->value(hint) : PCKeyHintText(hint);
}

void QPianoPCKeyHelpBar::paintEvent(QPaintEvent*) {
    if (keyCount_ == 0) {
        return;
    }
    QPainter painter(this);
    painter.setRenderHint(QPainter::TextAntialiasing);
    painter.setFont(fontForBar());
    painter.setPen(textColor_);
    const int last = endOfRange();
    // The strokes of all hints together stand in the middle: the font's own line is higher than the bar.
    const QFontMetricsF metrics(painter.font(), this);
    QRectF ink;
    for (int note = firstNote_; note < last; ++note) {
        ink |= metrics.tightBoundingRect(labels_[static_cast<std::size_t>(note)]);
    }
    const double baseline = height() / 2.0 - ink.center().y();
    for (int note = firstNote_; note < last; ++note) {
        const QString& label = labels_[static_cast<std::size_t>(note)];
        const double left = centreOf(static_cast<BYTE>(note)) - metrics.horizontalAdvance(label) / 2.0;
        painter.drawText(QPointF(left, baseline), label);
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
