#include "app/ConsoleOutput.h"

#include <cstdio>

#include "nk/nk_file_failure.h"
#include "nk/qt/nk_qt_string.h"

namespace Kivora {

bool PrintLines(const QString& text) {
    const QByteArray bytes = text.toLocal8Bit();
    return std::fwrite(bytes.constData(), 1, static_cast<std::size_t>(bytes.size()), stdout) ==
               static_cast<std::size_t>(bytes.size()) &&
           std::fflush(stdout) == 0;
}

void PrintError(const QString& sentence) {
    std::fprintf(stderr, "kivora: %s\n", sentence.toLocal8Bit().constData());
}

QString WithFileFailure(const QString& what, const QString& path) {
    const NK::CString reason = NK::DescribeFileError(NK::GetFileFailure().error);
    return what.arg(path) + (reason.IsEmpty() ? QString() : ": " + NK::ToQt(reason)) + '.';
}

}  // namespace Kivora
