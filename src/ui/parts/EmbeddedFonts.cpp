#include "ui/parts/EmbeddedFonts.h"

#include <QDir>
#include <QFont>
#include <QFontDatabase>

namespace Kivora {
namespace {

bool Register() {
    const QFileInfoList files = QDir(":/Fonts").entryInfoList(QDir::Files);
    bool complete = !files.isEmpty();
    for (const QFileInfo& file : files) {
        complete = QFontDatabase::addApplicationFont(file.filePath()) >= 0 && complete;
    }
    QFont::insertSubstitution("Helvetica", "Liberation Sans");
    return complete;
}

}  // namespace

bool RegisterEmbeddedFonts() {
    static const bool complete = Register();
    return complete;
}

}  // namespace Kivora
