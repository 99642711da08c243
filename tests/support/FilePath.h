// Paths in a test's folder as Qt takes them.
#pragma once

#include <QString>

#include "support/TemporaryFolder.h"

namespace KivoraTest {

inline QString FilePath(const CTemporaryFolder& folder, const QString& name) {
    return QString::fromStdString((folder / name.toStdString()).native());
}

inline QString FolderPath(const CTemporaryFolder& folder) {
    return QString::fromStdString(folder.GetPath().native());
}

}  // namespace KivoraTest
