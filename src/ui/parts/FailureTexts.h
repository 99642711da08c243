// What is said of a file that failed.
#pragma once

#include <QString>

namespace NK {
struct FileFailure;
}

namespace FailureTexts {

/// The file and the system's reason, a line each; empty for none. [any]
QString OfFile(const NK::FileFailure& failure);
/// The same of the file that failed last in this thread since NK::ForgetFileFailure(). [any]
QString OfLastFile();

}  // namespace FailureTexts
