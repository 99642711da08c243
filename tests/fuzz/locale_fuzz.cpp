// Any bytes as the file that remembers the language: there is one to take, and the file takes another one.
#include <cstdint>
#include <cstdlib>
#include <fstream>

#include "locale/Locale.h"
#include "nk/nk_paths.h"
#include "support/TemporaryFolder.h"

namespace {

/// The user's folders, in memory where the system has a place for that.
struct Home {
    Home() { setenv("XDG_DATA_HOME", folder.GetPath().c_str(), 1); }

    const KivoraTest::CTemporaryFolder folder;
};

void Require(bool holds) {
    if (!holds) {
        std::abort();
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const Home home;
    const std::filesystem::path path = Kivora::GetLocaleFilePath().ToUtf8();
    std::filesystem::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary)
        .write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
    const bool isGood = Kivora::GetLocaleFileState() == Kivora::LocaleFileState::kGood;
    const NK::CString code = Kivora::LoadLocaleCode();
    Require(isGood || code.IsEmpty());
    const QString taken = Kivora::MatchLocale(QString::fromWCharArray(code.c_str()));
    Require(taken == Kivora::kSupportedLocales[0] || taken == Kivora::kSupportedLocales[1]);
    Require(Kivora::SaveLocaleCode(L"ru_RU"));
    Require(Kivora::LoadLocaleCode() == L"ru_RU");
    Require(isGood == !std::filesystem::exists(path.string() + ".bad"));
    std::filesystem::remove(path.string() + ".bad");
    return 0;
}
