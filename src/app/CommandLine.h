// What the program can be told on its command line. [gui]
#pragma once

#include <QString>
#include <QStringList>

namespace Kivora {

struct CommandLine {
    /// All but kPlay need no window and no display.
    enum class Action { kPlay, kHelp, kVersion, kListPorts, kCheck, kRender };

    Action action = Action::kPlay;
    QString refusal;           ///< what is wrong with the arguments, a sentence; empty: nothing
    QString locale;            ///< of the language for this run; empty: the one remembered
    QString demonstrationDir;  ///< empty: play as usual
    QString pictureDir;        ///< empty: play as usual
    QString outputPort;        ///< these two for this run; empty: the ones remembered
    QString inputPort;
    QString preset;            ///< a name or a file; empty: none
    QString file;              ///< to open as the desktop does; empty: none
    QString soundFont;         ///< a file, for this run; empty: the one remembered
    QString renderFrom;        ///< kRender
    QString renderTo;          ///< kRender
    bool mayHandOver = false;  ///< the file, to a program that runs already: nothing else is wanted of this run

    /// Of the program's arguments, its own name first. Qt's own options are passed over. Ends nothing and prints
    /// nothing; an application object need not exist. Texts are in the language in force.
    static CommandLine Parse(const QStringList& arguments);
    /// What --help shows.
    static QString GetHelp();
    /// Whether a file of this name is rendered as sound; if not, it is a MIDI file.
    static bool IsSoundFile(const QString& path) { return path.endsWith(".wav", Qt::CaseInsensitive); }
};

}  // namespace Kivora
