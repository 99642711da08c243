// Any bytes as a catalogue of translations: what it holds are texts, and the rest stays as it is in the source.
#include <QTranslator>

#include <cstdint>
#include <cstdlib>

#include "locale/LocalizedKeyMap.h"
#include "piano/PCKeyTexts.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    QTranslator catalogue;
    if (!catalogue.load(data, static_cast<int>(size))) {
        return 0;
    }
    Kivora::CLocalizedKeyMap map;
    map.Build([&catalogue](const char* source) {
        const QString text = catalogue.translate(NK::Piano::kLocalizedKeyboardContext, source);
        return NK::CString(text.toStdWString());
    });
    if (map.GetSize() > std::size(NK::Piano::kLocalizedKeyboardSources)) {
        std::abort();
    }
    return 0;
}
