// The framework's strings and Qt's.
#pragma once

#include <QString>

#include <string_view>

#include "nk/nk_string.h"

namespace NK {

/// [any]
inline QString ToQt(std::wstring_view text) {
    return QString::fromWCharArray(text.data(), static_cast<qsizetype>(text.size()));
}
inline QString ToQt(const CString& text) {
    return ToQt(text.View());
}
inline QString ToQt(const wchar_t* text) {
    return ToQt(std::wstring_view(text));
}
inline CString FromQt(const QString& text) {
    return {text.toStdWString()};
}

}  // namespace NK
