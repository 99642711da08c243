#include "ui/dialogs/SettingsTexts.h"

#include <QCoreApplication>

#include "engine/files/SettingsFile.h"
#include "nk/qt/nk_qt_string.h"
#include "ui/parts/FailureTexts.h"

namespace SettingsTexts {

QString WhyNotSaved(const Kivora::SettingsFile& file) {
    QString why = FailureTexts::OfLastFile();
    if (file.IsSavedBeside()) {
        why += "\n" + QCoreApplication::translate("Dialogs", "What was changed is kept in this file until then:") +
               "\n" + NK::ToQt(file.GetPathBeside());
    }
    return why;
}

}  // namespace SettingsTexts
