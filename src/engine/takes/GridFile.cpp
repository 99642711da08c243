#include "engine/takes/GridFile.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <system_error>

#include "nk/nk_crc32.h"
#include "nk/nk_disk_file.h"
#include "nk/nk_file_content.h"

namespace Kivora {

namespace {

constexpr std::string_view kHeading = "KivGrid1\n";
constexpr std::size_t kCheckDigits = 8;
constexpr std::size_t kMostBytes = 16 * 1024 * 1024;

std::string CheckOf(std::string_view lines) {
    std::array<char, kCheckDigits> digits{};
    const auto end =
        std::to_chars(digits.data(), digits.data() + digits.size(), NK::ComputeCrc32(lines.data(), lines.size()), 16);
    const std::string check(digits.data(), end.ptr);
    return std::string(kCheckDigits - check.size(), '0') + check + '\n';
}

template <class Number>
void AddNumber(std::string& text, Number number, char end) {
    std::array<char, 32> digits{};
    const auto written = std::to_chars(digits.data(), digits.data() + digits.size(), number);
    text.append(digits.data(), written.ptr).push_back(end);
}

/// Takes a number and the character behind it off the text; false for anything else.
template <class Number>
bool TakeNumber(std::string_view& text, Number& number, char end) {
    const auto read = std::from_chars(text.data(), text.data() + text.size(), number);
    const auto length = static_cast<std::size_t>(read.ptr - text.data());
    if (read.ec != std::errc() || length >= text.size() || text[length] != end) {
        return false;
    }
    text.remove_prefix(length + 1);
    return true;
}

bool IsPossible(const TakeGrid::Mark& mark, int beginsBar) {
    constexpr int kMostBeats = 1000;
    constexpr int kFastest = 1000;
    return mark.timeMs <= INT32_MAX && mark.tempo >= 1 && mark.tempo <= kFastest && mark.beatsPerBar >= 1 &&
           mark.beatsPerBar <= kMostBeats && mark.beat >= 0 && mark.beat < mark.beatsPerBar &&
           (beginsBar == 0 || beginsBar == 1);
}

}  // namespace

bool WriteGrid(const TakeGrid& grid, const NK::CString& path) {
    std::string text(kHeading);
    for (const TakeGrid::Mark& mark : grid.GetMarks()) {
        AddNumber(text, mark.timeMs, ' ');
        AddNumber(text, mark.tempo, ' ');
        AddNumber(text, mark.beatsPerBar, ' ');
        AddNumber(text, mark.beat, ' ');
        AddNumber(text, mark.beginsBar ? 1 : 0, '\n');
    }
    text += CheckOf(text);
    NK::CDiskFile file(path, NK::CDiskFile::kWrite);
    const bool isWritten = file.Write(text.data(), 1, text.size()) == text.size();
    return file.Close() == 0 && isWritten;
}

TakeGrid ReadGrid(const NK::CString& path) {
    const std::string content = NK::ReadFileContent(path, kMostBytes).value_or(std::string());
    const std::size_t size = content.size() - std::min(content.size(), kCheckDigits + 1);
    std::string_view rest = std::string_view(content).substr(0, size);
    if (!rest.starts_with(kHeading) || content.substr(size) != CheckOf(rest)) {
        return {};
    }
    TakeGrid grid;
    for (rest.remove_prefix(kHeading.size()); !rest.empty();) {
        TakeGrid::Mark mark{};
        int beginsBar = 0;
        const bool isWhole = TakeNumber(rest, mark.timeMs, ' ') && TakeNumber(rest, mark.tempo, ' ') &&
                             TakeNumber(rest, mark.beatsPerBar, ' ') && TakeNumber(rest, mark.beat, ' ') &&
                             TakeNumber(rest, beginsBar, '\n') && IsPossible(mark, beginsBar);
        mark.beginsBar = beginsBar == 1;
        if (!isWhole || !grid.Append(mark)) {
            return {};
        }
    }
    return grid;
}

}  // namespace Kivora
