#include "nk/nk_translate.h"

#include <atomic>

namespace NK {

namespace {
std::atomic<TranslateFunction> translateFunction{nullptr};
}  // namespace

void SetTranslateFunction(TranslateFunction function) {
    translateFunction = function;
}

CString Translate(const char* context, const char* sourceText, const char* comment) {
    if (const TranslateFunction function = translateFunction) {
        return function(context, sourceText, comment);
    }
    return CString::FromUtf8(sourceText);
}

}  // namespace NK
