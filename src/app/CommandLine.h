// What the program can be told on its command line.
#pragma once

#include <QString>
#include <QStringList>

namespace Kivora {

struct CommandLine {
    QString locale;            ///< of the language for this run; empty: the one remembered
    QString demonstrationDir;  ///< empty: play as usual
    QString pictureDir;        ///< empty: play as usual

    /// Ends the process for --help, --version and for arguments that it does not know, with a text that says why.
    static CommandLine Parse(const QStringList& arguments);
};

}  // namespace Kivora
