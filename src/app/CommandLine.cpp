#include "app/CommandLine.h"

#include <QCommandLineParser>
#include <QCoreApplication>

namespace Kivora {
namespace {

QString Tr(const char* text) {
    return QCoreApplication::translate("CommandLine", text);
}

}  // namespace

CommandLine CommandLine::Parse(const QStringList& arguments) {
    QCommandLineParser parser;
    parser.setApplicationDescription(
        Tr(QT_TRANSLATE_NOOP("CommandLine",
                             "A virtual MIDI keyboard: play on the computer keys, on the screen's piano "
                             "and on a MIDI keyboard.")));
    parser.addHelpOption();
    parser.addVersionOption();
    const QCommandLineOption locale(
        "locale",
        Tr(QT_TRANSLATE_NOOP("CommandLine", "Take the interface language of <locale>, such as ru_RU, for this run.")),
        Tr(QT_TRANSLATE_NOOP("CommandLine", "locale")));
    const QCommandLineOption demonstration(
        "demo",
        Tr(QT_TRANSLATE_NOOP("CommandLine",
                             "Play a short demonstration, leave a screenshot, a MIDI file and a sound "
                             "file in <folder>, and quit.")),
        Tr(QT_TRANSLATE_NOOP("CommandLine", "folder")));
    const QCommandLineOption pictures(
        "pictures", Tr(QT_TRANSLATE_NOOP("CommandLine", "Leave pictures for the manual in <folder> and quit.")),
        Tr(QT_TRANSLATE_NOOP("CommandLine", "folder")));
    parser.addOptions({locale, demonstration, pictures});
    parser.process(arguments);
    return {parser.value(locale), parser.value(demonstration), parser.value(pictures)};
}

}  // namespace Kivora
