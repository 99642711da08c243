// Loading an INI file of 10,000 lines, against a bare split of the same text into wide strings.
#include <benchmark/benchmark.h>

#include <string>
#include <string_view>
#include <vector>

#include "nk/nk_ini_file.h"
#include "nk/nk_memory_file.h"

namespace {

std::string MakeText() {
    std::string text;
    for (int section = 0; section < 100; ++section) {
        text += "[Section" + std::to_string(section) + "]\n";
        for (int key = 0; key < 99; ++key) {
            text += "TranslatePatchNames" + std::to_string(key) + "=" + std::to_string(section * key) + "\n";
        }
    }
    return text;
}

/// The floor: the memory that the lines need, and one pass over the bytes.
void SplitIntoWideStrings(benchmark::State& state) {
    const std::string text = MakeText();
    for (auto _ : state) {
        std::vector<std::wstring> lines;
        std::string_view left = text;
        while (!left.empty()) {
            const std::size_t end = left.find('\n');
            const std::string_view line = left.substr(0, end);
            lines.emplace_back(line.begin(), line.end());
            left.remove_prefix(end == std::string_view::npos ? left.size() : end + 1);
        }
        benchmark::DoNotOptimize(lines.data());
    }
}
BENCHMARK(SplitIntoWideStrings);

void LoadIniFile(benchmark::State& state) {
    NK::CMemoryFile file(MakeText());
    for (auto _ : state) {
        NK::CIniFile ini;
        file.SeekToStart();
        if (!ini.Load(file)) {
            state.SkipWithError("the file was refused");
        }
        benchmark::DoNotOptimize(ini.GetData());
    }
}
BENCHMARK(LoadIniFile);

}  // namespace
