// The manual, and how it is opened.
#pragma once

#include <memory>
#include <QObject>
#include <QString>

#include "locale/CLauncher.h"

namespace Kivora {

struct HelpFile {
    QString path;  ///< of the English manual where there is none in the language
    bool exists;
};

/// "index.html" in the folder of the locale's language, else of English, under "Help" in the program's folder. [any]
HelpFile FindHelpFile(const QString& programDir, const QString& localeCode);

/// The folder of the running program, without a slash at the end. [any]
QString GetProgramDir();

/// Opens the manual in the language in force. One that the desktop is still busy with when the opener is destroyed is
/// waited for, at most 3 s. [gui]
class HelpOpener : public QObject {
    Q_OBJECT

public:
    explicit HelpOpener(const QString& programDir = GetProgramDir(), QObject* parent = nullptr);

    /// Returns at once.
    void Open();

signals:
    /// Emitted by Open().
    void HelpNotFound(const QString& path);
    /// Later, on the GUI thread.
    void LaunchFailed(const QString& path);
    void LauncherFailed(QPrivateSignal);  ///< on the launcher's thread

private:
    const QString programDir_;
    QString path_;  ///< of the manual opened last
    std::unique_ptr<CLauncher> launcher_;
};

}  // namespace Kivora
