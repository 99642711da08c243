#include "ui/dialogs/SettingsTexts.h"

#include <QCoreApplication>

#include "engine/files/SettingsFile.h"
#include "ui/parts/Dialogs.h"

namespace SettingsTexts {

QString WhyNotSaved(const Kivora::SettingsFile& file) {
    QString why = Dialogs::GetFileFailure();
    if (file.IsSavedBeside()) {
        why += "\n" + QCoreApplication::translate("Dialogs", "What was changed is kept in this file until then:") +
               "\n" + Dialogs::ToQt(file.GetPathBeside());
    }
    return why;
}

}  // namespace SettingsTexts
