#include "ui/dialogs/KeyboardFigure.h"

#include <array>
#include <QPainter>
#include <string_view>

#include "piano/PCKeyPlaces.h"
#include "ui/parts/InstrumentColors.h"
#include "ui/parts/InstrumentParts.h"

namespace {

struct Row {
    std::string_view characters;
    double indent;  ///< in keys
};
constexpr std::array<Row, 4> kRows{
    {{"`1234567890-=", 0.0}, {"qwertyuiop[]\\", 1.5}, {"asdfghjkl;'", 1.75}, {"zxcvbnm,./", 2.25}}};
constexpr double kPitch = 34.0;
constexpr double kGap = 3.0;
constexpr double kRadius = 4.0;
constexpr double kMarkWidth = 2.0;
constexpr double kKeysInWidth = 14.5;
constexpr int kTopPixels = 13;

}  // namespace

KeyboardFigure::KeyboardFigure(QWidget* parent) : QWidget(parent) {
    setFocusPolicy(Qt::StrongFocus);
}

QSize KeyboardFigure::sizeHint() const {
    return {static_cast<int>(kPitch * kKeysInWidth), static_cast<int>(kPitch * kRows.size())};
}

void KeyboardFigure::setKeyTops(const std::map<quint32, QString>& tops) {
    tops_ = tops;
    update();
}

void KeyboardFigure::setKeys(const QSet<quint32>& lit, const QSet<quint32>& marked) {
    if (lit != lit_ || marked != marked_) {
        lit_ = lit;
        marked_ = marked;
        update();
    }
}

void KeyboardFigure::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QFont font = painter.font();
    font.setPixelSize(kTopPixels);
    painter.setFont(font);
    painter.translate((width() - sizeHint().width()) / 2.0, 0.0);
    for (std::size_t row = 0; row < kRows.size(); ++row) {
        for (std::size_t column = 0; column < kRows[row].characters.size(); ++column) {
            const quint32 key = NK::Piano::GetScanCodeOfPlace(kRows[row].characters[column]);
            const QRectF place((kRows[row].indent + static_cast<double>(column)) * kPitch,
                               static_cast<double>(row) * kPitch, kPitch - kGap, kPitch - kGap);
            const bool isLit = lit_.contains(key);
            if (isLit) {
                painter.setPen(Qt::NoPen);
                painter.setBrush(InstrumentColors::kFigures);
                painter.drawRoundedRect(place, kRadius, kRadius);
            } else {
                InstrumentParts::DrawCap(painter, place, InstrumentParts::CapState::kUp);
            }
            if (marked_.contains(key)) {
                painter.setPen(QPen(InstrumentColors::kWarning, kMarkWidth));
                painter.setBrush(Qt::NoBrush);
                painter.drawRoundedRect(place.adjusted(1, 1, -1, -1), kRadius, kRadius);
            }
            const auto top = tops_.find(key);
            if (top != tops_.end()) {
                painter.setPen(isLit ? InstrumentColors::kLitInk : InstrumentColors::kCapText);
                painter.drawText(place, Qt::AlignCenter, top->second);
            }
        }
    }
}
