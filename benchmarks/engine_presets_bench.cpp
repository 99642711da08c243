// Listing 10,000 presets, against a bare read of the folder and a sort by the same comparison.
#include <benchmark/benchmark.h>
#include <dirent.h>

#include <QCollator>

#include <algorithm>
#include <fstream>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "engine/files/PresetStore.h"
#include "support/TemporaryFolder.h"

namespace {

constexpr int kPresets = 10000;

/// The files of the presets; what is in them does not matter to a list.
class PresetFiles {
public:
    PresetFiles() {
        std::filesystem::create_directory(GetPath());
        const std::string words[] = {"Grand Piano", "organ", "Струнные", "élan", "Bass", "Рояль"};
        for (int i = 0; i < kPresets; ++i) {
            // Neighbours in the list are not neighbours in the order of their making.
            const std::string name = words[i % 6] + " " + std::to_string(i * 7919 % kPresets);
            std::ofstream(GetPath() / (name + ".kivoraLXPreset"));
        }
    }
    std::filesystem::path GetPath() const { return folder_ / "Presets"; }

private:
    KivoraTest::CTemporaryFolder folder_;
};

void Floor_ReadFolderAndSort(benchmark::State& state) {
    const PresetFiles files;
    for (auto _ : state) {
        const std::unique_ptr<DIR, int (*)(DIR*)> folder(opendir(files.GetPath().c_str()), &closedir);
        QCollator collator(QLocale(QLocale::English));
        collator.setCaseSensitivity(Qt::CaseInsensitive);
        std::vector<std::pair<QCollatorSortKey, std::string>> names;
        while (const dirent* const entry = readdir(folder.get())) {
            const std::string name = entry->d_name;
            names.emplace_back(collator.sortKey(QString::fromStdString(name)), name);
        }
        std::sort(names.begin(), names.end(), [](const auto& a, const auto& b) {
            const int order = a.first.compare(b.first);
            return order != 0 ? order < 0 : a.second < b.second;
        });
        benchmark::DoNotOptimize(names.data());
    }
}

void ListPresets(benchmark::State& state) {
    const PresetFiles files;
    Kivora::PresetStore store(L"/nowhere", NK::CString::FromUtf8(files.GetPath().native()));
    for (auto _ : state) {
        NK::CStringArray names;
        store.List(names, true);
        if (names.GetSize() != kPresets) {
            state.SkipWithError("not every preset was listed");
        }
    }
}

}  // namespace

BENCHMARK(Floor_ReadFolderAndSort)->Unit(benchmark::kMillisecond);
BENCHMARK(ListPresets)->Unit(benchmark::kMillisecond);
