#include "locale/HelpFile.h"

#include <QFileInfo>

#include "locale/Locale.h"
#include "nk/nk_paths.h"

namespace Kivora {

HelpFile FindHelpFile(const QString& programDir, const QString& localeCode) {
    QString path;
    for (const QString& language : {localeCode.left(2), QStringLiteral("en")}) {
        path = programDir + "/Help/" + language + "/index.html";
        if (QFileInfo::exists(path)) {
            return {path, true};
        }
    }
    return {path, false};
}

QString GetProgramDir() {
    return QString::fromWCharArray(NK::GetExecutableDir().c_str());
}

HelpOpener::HelpOpener(const QString& programDir, QObject* parent) : QObject(parent), programDir_(programDir) {
}

void HelpOpener::Open() {
    if (launcher_ && launcher_->IsRunning()) {
        return;  // the desktop is about to show it
    }
    const HelpFile help = FindHelpFile(programDir_, GetCurrentLocale());
    if (!help.exists) {
        emit HelpNotFound(help.path);
        return;
    }
    const QString path = help.path;
    launcher_ = std::make_unique<CLauncher>(NK::CString(path.toStdWString()), [this, path](bool opened) {
        if (!opened) {
            QMetaObject::invokeMethod(
                this, [this, path] { emit LaunchFailed(path); }, Qt::QueuedConnection);
        }
    });
}

}  // namespace Kivora
