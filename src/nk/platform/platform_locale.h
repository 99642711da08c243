// Character classes and number formats that do not depend on the user's locale.
#pragma once

namespace NK::Platform {

/// While it lives, the calling thread's C library calls work in the C.UTF-8 locale; other threads are not touched.
/// [any]
class CNeutralLocaleScope {
public:
    CNeutralLocaleScope() noexcept;
    ~CNeutralLocaleScope();
    CNeutralLocaleScope(const CNeutralLocaleScope&) = delete;
    CNeutralLocaleScope& operator=(const CNeutralLocaleScope&) = delete;

private:
    void* previous_;
};

/// Simple lower-case mapping and white space of the C.UTF-8 locale. [any]
wchar_t ToLower(wchar_t character) noexcept;
bool IsWhiteSpace(wchar_t character) noexcept;

}  // namespace NK::Platform
