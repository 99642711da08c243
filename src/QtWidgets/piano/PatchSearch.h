// Finding programs by what somebody types. [owner]
#pragma once

#include <QString>

#include <vector>

/// Texts of programs, 0-based, and of the drum kit as NK::MIDI::kDrumKit, in which one searches.
class PatchSearch {
public:
    /// One for each program, then the drum kit's: all its names, in whatever languages.
    void setTexts(const std::vector<QString>& texts);

    /// The programs that have each word of the query in a name, or as the beginning of their number (counted from 1,
    /// with or without leading zeros). Letter case does not matter. All of them for an empty query.
    std::vector<int> find(const QString& query) const;

private:
    std::vector<QString> texts_;  ///< in lower case
};
