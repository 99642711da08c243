#include "ui/parts/FailureTexts.h"

#include "nk/nk_file_failure.h"
#include "nk/qt/nk_qt_string.h"

namespace FailureTexts {

QString OfFile(const NK::FileFailure& failure) {
    const QString reason = NK::ToQt(NK::DescribeFileError(failure.error));
    return NK::ToQt(failure.path) + (reason.isEmpty() ? QString() : "\n" + reason);
}

QString OfLastFile() {
    return OfFile(NK::GetFileFailure());
}

}  // namespace FailureTexts
