#include "QtWidgets/piano/KeyTops.h"

#include <QChar>

QString KeyTopText(const NK::TKeyboardLayout::TKey& key) {
    constexpr char32_t kDottedCircle = U'\u25CC';
    constexpr char32_t kFinalSigma = U'\u03C2';  // a letter of its own on the keys, with the other one's upper case
    char32_t shown = key.character;
    if (QChar::isLower(shown) && QChar::isUpper(key.shifted) && shown != kFinalSigma) {
        shown = key.shifted;
    }
    if (shown == 0 || !QChar::isPrint(shown)) {
        return {};
    }
    return QChar::isMark(shown) ? QString::fromUcs4(&kDottedCircle, 1) + QString::fromUcs4(&shown, 1)
                                : QString::fromUcs4(&shown, 1);
}
