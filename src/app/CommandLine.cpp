#include "app/CommandLine.h"

#include <QCommandLineParser>
#include <QCoreApplication>

namespace Kivora {

CommandLine CommandLine::Parse(const QStringList& arguments) {
    QCommandLineParser parser;
    parser.setApplicationDescription(
        QCoreApplication::translate("CommandLine",
                                    "A virtual MIDI keyboard: play on the computer keys, on the "
                                    "screen's piano and on a MIDI keyboard."));
    parser.addHelpOption();
    parser.addVersionOption();
    const QCommandLineOption demonstration(
        "demo",
        QCoreApplication::translate("CommandLine",
                                    "Play a short demonstration, leave a screenshot, a MIDI file and a sound file in "
                                    "<folder>, and quit."),
        "folder");
    parser.addOption(demonstration);
    parser.process(arguments);
    return {parser.value(demonstration)};
}

}  // namespace Kivora
