#include "ui/dialogs/MIDIFileNames.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

namespace MIDIFileNames {

bool Fits(const QString& path, const char* patterns) {
    return QDir::match(patterns, QFileInfo(path).fileName());
}

QString GetFilter(const char* patterns) {
    return QCoreApplication::translate("MIDIFileNames", "MIDI Files") + " (" + patterns + ')';
}

}  // namespace MIDIFileNames
