#include "engine/files/NameOrder.h"

#include <QCollator>

#include <algorithm>
#include <utility>
#include <vector>

#include "nk/qt/nk_qt_string.h"

namespace Kivora {

namespace {

QCollator MakeCollator() {
    QLocale locale;
    if (locale.language() == QLocale::C) {
        locale = QLocale(QLocale::English);
    }
    QCollator collator(locale);
    collator.setCaseSensitivity(Qt::CaseInsensitive);
    return collator;
}

}  // namespace

void SortByName(NK::CStringArray& names) {
    using Keyed = std::pair<QCollatorSortKey, NK::CString>;
    const QCollator collator = MakeCollator();
    std::vector<Keyed> keyed;
    keyed.reserve(names.GetSize());
    for (NK::CString& name : names) {
        const QString text = NK::ToQt(name);
        keyed.emplace_back(collator.sortKey(text), std::move(name));
    }
    std::sort(keyed.begin(), keyed.end(), [](const Keyed& a, const Keyed& b) {
        const int order = a.first.compare(b.first);
        return order != 0 ? order < 0 : a.second < b.second;
    });
    std::transform(keyed.begin(), keyed.end(), names.begin(), [](Keyed& entry) { return std::move(entry.second); });
}

}  // namespace Kivora
