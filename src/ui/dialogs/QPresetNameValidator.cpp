#include "ui/dialogs/QPresetNameValidator.h"

#include <algorithm>
#include <string_view>

namespace {

constexpr std::u32string_view kMarks = U" _-!$().,+=&";

bool IsAllowed(char32_t character) {
    return QChar::isLetter(character) || QChar::isDigit(character) ||
           kMarks.find(character) != std::u32string_view::npos;
}

}  // namespace

QValidator::State QPresetNameValidator::validate(QString& input, int&) const {
    const QList<uint> characters = input.toUcs4();
    return std::all_of(characters.begin(), characters.end(), IsAllowed) ? Acceptable : Invalid;
}
