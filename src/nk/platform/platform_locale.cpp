#include "nk/platform/platform_locale.h"

#include <locale.h>
#include <wctype.h>

namespace NK::Platform {

namespace {
locale_t NeutralLocale() noexcept {
    static const locale_t locale = [] {
        const locale_t utf8 = newlocale(LC_ALL_MASK, "C.UTF-8", nullptr);
        return utf8 != nullptr ? utf8 : newlocale(LC_ALL_MASK, "C", nullptr);
    }();
    return locale;
}
}  // namespace

CNeutralLocaleScope::CNeutralLocaleScope() noexcept : previous_(uselocale(NeutralLocale())) {
}

CNeutralLocaleScope::~CNeutralLocaleScope() {
    uselocale(static_cast<locale_t>(previous_));
}

wchar_t ToLower(wchar_t character) noexcept {
    return static_cast<wchar_t>(towlower_l(static_cast<wint_t>(character), NeutralLocale()));
}

bool IsWhiteSpace(wchar_t character) noexcept {
    return iswspace_l(static_cast<wint_t>(character), NeutralLocale()) != 0;
}

}  // namespace NK::Platform
