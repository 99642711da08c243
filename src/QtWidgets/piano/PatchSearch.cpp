#include "QtWidgets/piano/PatchSearch.h"

#include <QStringList>

#include <algorithm>

#include "midi/MIDIPrograms.h"

void PatchSearch::setTexts(const std::vector<QString>& texts) {
    texts_.clear();
    for (const QString& text : texts) {
        texts_.push_back(text.toCaseFolded());
    }
}

std::vector<int> PatchSearch::find(const QString& query) const {
    const QStringList words = query.toCaseFolded().split(' ', Qt::SkipEmptyParts);
    std::vector<int> found;
    for (std::size_t i = 0; i < texts_.size(); ++i) {
        const bool isDrumKit = i + 1 == texts_.size();
        const int number = static_cast<int>(i) + 1;
        const auto has = [&](const QString& word) {
            return texts_[i].contains(word) || (!isDrumKit && (QString::number(number).startsWith(word) ||
                                                               QString::asprintf("%03d", number).startsWith(word)));
        };
        if (std::all_of(words.begin(), words.end(), has)) {
            found.push_back(isDrumKit ? NK::MIDI::kDrumKit : static_cast<int>(i));
        }
    }
    return found;
}
