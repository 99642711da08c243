#include "nk/nk_translate.h"

#include <gtest/gtest.h>

namespace {

using namespace NK;

CString Decorate(const char* context, const char* sourceText, const char* comment) {
    return CString(context) + L"|" + CString::FromUtf8(sourceText) + L"|" + CString(comment);
}

TEST(Translate, IsTheIdentityUntilATranslationIsInstalled) {
    EXPECT_EQ(Translate("Note name", "C\xE2\x99\xAF"), L"C\u266F");
    SetTranslateFunction(Decorate);
    EXPECT_EQ(Translate("Note name", "C", "hint"), L"Note name|C|hint");
    EXPECT_EQ(Translate("GM", "Organ"), L"GM|Organ|");
    SetTranslateFunction(nullptr);
    EXPECT_EQ(Translate("Note name", "C"), L"C");
}

}  // namespace
