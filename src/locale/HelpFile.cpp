#include "locale/HelpFile.h"

#include <QFileInfo>

#include "locale/Locale.h"
#include "nk/nk_paths.h"
#include "nk/qt/nk_qt_string.h"

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
    return NK::ToQt(NK::GetExecutableDir());
}

HelpOpener::HelpOpener(const QString& programDir, QObject* parent) : QObject(parent), programDir_(programDir) {
    connect(
        this, &HelpOpener::LauncherFailed, this, [this] { emit LaunchFailed(path_); }, Qt::QueuedConnection);
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
    path_ = help.path;
    launcher_ = std::make_unique<CLauncher>(NK::FromQt(path_), [this](bool opened) {
        if (!opened) {
            emit LauncherFailed(QPrivateSignal());
        }
    });
}

}  // namespace Kivora
