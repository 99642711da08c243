// Going through the menu of patches by keys, and searching in it.
#include <algorithm>
#include <numeric>
#include <QKeyEvent>

#include "midi/MIDIPrograms.h"
#include "QtWidgets/piano/QGMPatchMenu.h"

using NK::MIDI::kDrumKit;
using NK::MIDI::kProgramCount;

namespace {

constexpr int kFamilySize = PatchMenuLayout::kProgramsInFamily;
constexpr int kFamilyCount = PatchMenuLayout::kFamilies;

}  // namespace

void QGMPatchMenu::showFamily(int family) {
    rest_.stop();
    if (family == list_) {
        return;
    }
    const int place = std::max(activeProgram(), 0) % kFamilySize;
    list_ = family;
    firstRow_ = 0;
    query_.clear();
    setAccessibleDescription({});
    if (isFamily()) {
        activate(family * kFamilySize + place);
    } else if (const std::optional<int> first = programAtRow(0)) {
        activate(*first);
    }
    update();
}

void QGMPatchMenu::stepFamily(int step) {
    std::vector<int> lists(kFamilyCount);
    std::iota(lists.begin(), lists.end(), 0);
    if (!lastUsed_.empty()) {
        lists.push_back(kLastUsed);
    }
    if (!favorites_.empty()) {
        lists.push_back(kFavorites);
    }
    const auto count = static_cast<std::ptrdiff_t>(lists.size());
    const auto present = std::find(lists.begin(), lists.end(), list_) - lists.begin();
    showFamily(lists[static_cast<std::size_t>((present + step + count) % count)]);
}

void QGMPatchMenu::stepProgram(int step) {
    constexpr int kPlaces = kProgramCount + 1;  // the drum kit is the last
    const int active = activeProgram();
    if (isFamily()) {
        const int target = ((active < 0 ? kProgramCount : active) + step + kPlaces) % kPlaces;
        activate(target == kProgramCount ? kDrumKit : target);
        return;
    }
    const std::vector<int> shown = shownPrograms();
    const auto count = static_cast<std::ptrdiff_t>(shown.size());
    if (count > 0) {
        const auto place = std::find(shown.begin(), shown.end(), active) - shown.begin();
        const auto target = place < count ? (place + step + count) % count : 0;
        activate(shown[static_cast<std::size_t>(target)]);
    }
}

void QGMPatchMenu::goToEnd(bool last) {
    if (isFamily()) {
        activate(last ? kDrumKit : 0);
    } else if (const std::vector<int> shown = shownPrograms(); !shown.empty()) {
        activate(last ? shown.back() : shown.front());
    }
}

void QGMPatchMenu::searchFor(const QString& query) {
    rest_.stop();
    query_ = query;
    firstRow_ = 0;
    if (query_.isEmpty()) {
        setAccessibleDescription({});
        list_ = std::max(activeProgram(), 0) / kFamilySize;
        activate(activeProgram());
        return;
    }
    found_ = search_.find(query_);
    list_ = kFound;
    setAccessibleDescription(tr("Search: %1. Found: %2.").arg(query_, QString::number(found_.size())));
    if (found_.empty()) {
        setActiveAction(nullptr);
        update();
    } else {
        const bool stays = std::find(found_.begin(), found_.end(), activeProgram()) != found_.end();
        activate(stays ? activeProgram() : found_.front());
    }
}

bool QGMPatchMenu::editQuery(const QKeyEvent& event) {
    if (event.key() == Qt::Key_Escape && !query_.isEmpty()) {
        searchFor({});
        return true;
    }
    if (event.key() == Qt::Key_Backspace) {
        if (!query_.isEmpty()) {
            searchFor(query_.chopped(1));
        }
        return true;
    }
    const QString text = event.text();
    const bool isTyped = !text.isEmpty() && text.front().isPrint() &&
                         !(event.modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier));
    if (!isTyped || (text.trimmed().isEmpty() && query_.isEmpty())) {
        return false;
    }
    if (text == QLatin1String("*")) {
        if (activeAction() != nullptr) {
            toggleFavorite(activeProgram());
        }
    } else {
        searchFor(query_ + text);
    }
    return true;
}

void QGMPatchMenu::toggleFavorite(int program) {
    const bool on = std::erase(favorites_, program) == 0;
    if (on) {
        favorites_.insert(std::upper_bound(favorites_.begin(), favorites_.end(), program), program);
    }
    firstRow_ = std::clamp(firstRow_, 0, std::max(static_cast<int>(shownPrograms().size()) - kFamilySize, 0));
    const QString text = on ? tr("%1: added to the favorites.") : tr("%1: taken from the favorites.");
    setAccessibleDescription(text.arg(actionOf(program)->text()));
    emit favoriteChanged(program, on);
    update();
}

bool QGMPatchMenu::hasNothingToTake() const {
    return shownPrograms().empty() && (activeAction() == nullptr || activeProgram() != kDrumKit);
}

QString QGMPatchMenu::familyName(int family) const {
    switch (family) {
        case kLastUsed:
            return tr("Last Used");
        case kFavorites:
            return tr("Favorites");
        default:
            return families_[family];
    }
}

void QGMPatchMenu::keyPressEvent(QKeyEvent* event) {
    const bool isSearching = list_ == kFound;
    switch (event->key()) {
        case Qt::Key_Up:
            stepProgram(-1);
            break;
        case Qt::Key_Down:
            stepProgram(1);
            break;
        case Qt::Key_Left:
        case Qt::Key_PageUp:
            isSearching ? goToEnd(false) : stepFamily(-1);
            break;
        case Qt::Key_Right:
        case Qt::Key_PageDown:
            isSearching ? goToEnd(true) : stepFamily(1);
            break;
        case Qt::Key_Home:
            goToEnd(false);
            break;
        case Qt::Key_End:
            goToEnd(true);
            break;
        default:
            // The keys of a menu would take what is hidden.
            if (editQuery(*event) || (hasNothingToTake() && event->key() != Qt::Key_Escape)) {
                event->accept();
                return;
            }
            QMenu::keyPressEvent(event);
            if (isVisible() && activeAction() != nullptr) {
                activate(activeProgram());
            }
            return;
    }
    event->accept();
    if (activeAction() != nullptr) {
        emit programAuditioned(activeProgram());
    }
}
