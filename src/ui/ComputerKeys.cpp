#include "ui/ComputerKeys.h"

#include <QKeyEvent>
#include <utility>

#include "locale/Locale.h"
#include "locale/PlayingWay.h"
#include "piano/PCKeyTable.h"
#include "QtWidgets/piano/KeyTops.h"

using NK::Piano::TPCKey;

namespace {

/// Qt's code of the key. With CTRL held Qt tells the Latin character that another layout of the keyboard has there, for
/// the sake of shortcuts; then that of the active layout where the localized keyboard has it.
int CodeOf(const QKeyEvent& event) {
    constexpr char32_t kLastLatin1 = 0xFF;
    if (event.modifiers().testFlag(Qt::ControlModifier)) {
        const char32_t typed = NK::GetCharacterOfKeySymbol(event.nativeVirtualKey());
        const int code = static_cast<int>(QChar::toUpper(typed));
        if (typed > kLastLatin1 && Kivora::GetLocalizedKeyMap().Find(code) != code) {
            return code;
        }
    }
    return event.key();
}

}  // namespace

ComputerKeys::ComputerKeys(Source source, QObject* parent)
    : QObject(parent), source_(std::move(source)), seen_(source_()) {
    connect(&timer_, &QTimer::timeout, this, &ComputerKeys::look);
    timer_.start(kPeriodMs);
}

void ComputerKeys::setSource(Source source) {
    source_ = std::move(source);
    look();
}

void ComputerKeys::look() {
    const Layout layout = source_();
    if (layout != seen_) {
        seen_ = layout;
        emit layoutChanged();
    }
}

bool ComputerKeys::isByPlace(const Layout& layout) const {
    return Kivora::IsPlayedByPlace(way_, Kivora::GetLocalizedKeyMap(), layout.get());
}

TPCKey ComputerKeys::keyOf(const QKeyEvent& event) const {
    TPCKey key;
    key.code = CodeOf(event);
    key.scanCode = event.nativeScanCode();
    key.timeMs = event.timestamp();
    key.shift = event.modifiers().testFlag(Qt::ShiftModifier);
    key.ctrl = event.modifiers().testFlag(Qt::ControlModifier);
    key.alt = event.modifiers().testFlag(Qt::AltModifier);
    key.autoRepeat = event.isAutoRepeat();
    const Layout layout = source_();
    const std::optional<char> place = NK::Piano::FindPCKeyPlace(key.scanCode);
    if (isByPlace(layout)) {
        key.place = place;
    }
    const bool isValueKey = place && (*place == '-' || *place == '=');
    if (key.alt && layout && !layout->TypesLatinLetters() && isValueKey) {
        key.code = static_cast<unsigned char>(*place);  // as other shortcuts
    }
    return key;
}

std::optional<QMap<char, QString>> ComputerKeys::keyTops() const {
    const Layout& layout = seen_;
    if (!isByPlace(layout)) {
        return std::nullopt;
    }
    constexpr int kNotes = 128;
    QMap<char, QString> tops;
    for (int note = 0; note < kNotes; ++note) {
        const char hint = NK::Piano::GetPCKeyHint(note);
        if (hint == 0) {
            continue;
        }
        const QString top = layout ? KeyTopText((*layout)[NK::Piano::GetScanCodeOfPlace(hint)]) : QString();
        tops[hint] = top.isEmpty() ? QString(QLatin1Char(hint)) : top;
    }
    return tops;
}
