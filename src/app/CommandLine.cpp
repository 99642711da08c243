#include "app/CommandLine.h"

#include <algorithm>
#include <iterator>
#include <QCommandLineParser>
#include <QCoreApplication>

#include "locale/Locale.h"
#include "ui/dialogs/MIDIFileNames.h"

namespace Kivora {
namespace {

using Action = CommandLine::Action;

QString Tr(const char* text) {
    return QCoreApplication::translate("CommandLine", text);
}

/// The options of Qt's application object, most of which take a value. It takes them out of the arguments, but only
/// where it has a window system.
QStringList WithoutToolkitOptions(const QStringList& arguments) {
    static const QStringList kWithValue = {"display",         "geometry",           "icon",          "name",
                                           "platform",        "platformpluginpath", "platformtheme", "plugin",
                                           "qwindowgeometry", "qwindowicon",        "qwindowtitle",  "session",
                                           "style",           "stylesheet",         "title"};
    QStringList own;
    for (qsizetype i = 0; i < arguments.size(); ++i) {
        const QString& argument = arguments[i];
        if (argument == "--") {
            return own + arguments.mid(i);
        }
        const QString name = argument.startsWith("--")  ? argument.mid(2)
                             : argument.startsWith('-') ? argument.mid(1)
                                                        : "";
        if (kWithValue.contains(name)) {
            ++i;
        } else if (name != "reverse" && !kWithValue.contains(name.section('=', 0, 0))) {
            own << argument;
        }
    }
    return own;
}

/// The options that the program knows, with their texts in the language in force.
class Parser {
public:
    Parser() {
        parser_.setApplicationDescription(
            Tr(QT_TRANSLATE_NOOP("CommandLine",
                                 "A virtual MIDI keyboard: play on the computer keys, on the screen's piano "
                                 "and on a MIDI keyboard.")));
        parser_.addOptions({output_, input_, preset_, soundFont_, new_, listPorts_, check_, render_, locale_,
                            demonstration_, pictures_});
        parser_.addPositionalArgument("file",
                                      Tr(QT_TRANSLATE_NOOP("CommandLine",
                                                           "The file of a preset, or a MIDI file to be played; a "
                                                           "program that runs already takes it. With --render: "
                                                           "the sound file (.wav) or MIDI file "
                                                           "(.mid) to write.")),
                                      "[file]");
    }

    QString GetHelp() const { return parser_.helpText(); }

    CommandLine Parse(const QStringList& arguments) {
        CommandLine line;
        if (!parser_.parse(WithoutToolkitOptions(arguments))) {
            line.refusal = parser_.errorText();
        }
        line.locale = parser_.value(locale_);
        line.demonstrationDir = parser_.value(demonstration_);
        line.pictureDir = parser_.value(pictures_);
        line.outputPort = parser_.value(output_);
        line.inputPort = parser_.value(input_);
        line.preset = parser_.value(preset_);
        line.soundFont = parser_.value(soundFont_);
        line.renderFrom = parser_.value(render_);
        line.action = GetAction();
        Check(line);
        line.mayHandOver =
            !line.file.isEmpty() && !parser_.isSet(new_) &&
            (line.locale + line.demonstrationDir + line.pictureDir + line.outputPort + line.inputPort + line.soundFont)
                .isEmpty();
        return line;
    }

private:
    Action GetAction() const {
        if (parser_.isSet(help_) || parser_.isSet("help-all")) {
            return Action::kHelp;
        }
        if (parser_.isSet(version_)) {
            return Action::kVersion;
        }
        if (parser_.isSet(check_)) {
            return Action::kCheck;
        }
        return parser_.isSet(listPorts_) ? Action::kListPorts
               : parser_.isSet(render_)  ? Action::kRender
                                         : Action::kPlay;
    }

    void Check(CommandLine& line) const {
        const auto refuse = [&line](const QString& why) { line.refusal = line.refusal.isEmpty() ? why : line.refusal; };
        for (const QCommandLineOption* option :
             {&output_, &input_, &preset_, &soundFont_, &render_, &locale_, &demonstration_, &pictures_}) {
            if (parser_.isSet(*option) && parser_.value(*option).isEmpty()) {
                refuse(
                    Tr(QT_TRANSLATE_NOOP("CommandLine", "The value of --%1 is empty.")).arg(option->names().first()));
            }
        }
        if (!line.locale.isEmpty() &&
            std::none_of(kSupportedLocales.begin(), kSupportedLocales.end(), [&line](const char* supported) {
                return line.locale.startsWith(QString(supported).section('_', 0, 0));
            })) {
            refuse(Tr(QT_TRANSLATE_NOOP("CommandLine", "There is no language \"%1\" here.")).arg(line.locale));
        }
        CheckTogether(line, refuse);
        const QStringList others = parser_.positionalArguments();
        if (line.action == Action::kRender) {
            if (others.isEmpty()) {
                refuse(Tr(QT_TRANSLATE_NOOP("CommandLine", "--render needs the name of the file to write.")));
            } else {
                line.renderTo = others.first();
                CheckTarget(line.renderTo, refuse);
            }
        }
        qsizetype expected = line.action == Action::kRender ? 1 : 0;
        if (line.action == Action::kPlay && line.preset.isEmpty() && !others.isEmpty()) {
            expected = 1;
            line.file = others.first();
        }
        if (others.size() > expected) {
            refuse(Tr(QT_TRANSLATE_NOOP("CommandLine", "\"%1\" is one argument too many.")).arg(others[expected]));
        }
    }

    template <class Refuse>
    void CheckTogether(const CommandLine& line, const Refuse& refuse) const {
        if (line.action == Action::kHelp || line.action == Action::kVersion) {
            return;
        }
        const auto exclude = [&](const QCommandLineOption& one,
                                 std::initializer_list<const QCommandLineOption*> others) {
            for (const QCommandLineOption* other : others) {
                if (parser_.isSet(one) && parser_.isSet(*other)) {
                    refuse(Tr(QT_TRANSLATE_NOOP("CommandLine", "--%1 and --%2 do not go together."))
                               .arg(one.names().first(), other->names().first()));
                }
            }
        };
        exclude(check_, {&listPorts_, &render_, &input_, &preset_, &new_, &demonstration_, &pictures_});
        exclude(listPorts_, {&render_, &output_, &input_, &preset_, &new_, &demonstration_, &pictures_});
        exclude(render_, {&output_, &input_, &new_, &demonstration_, &pictures_});
        exclude(demonstration_, {&pictures_});
    }

    template <class Refuse>
    static void CheckTarget(const QString& path, const Refuse& refuse) {
        if (!CommandLine::IsSoundFile(path) && !MIDIFileNames::Fits(path, MIDIFileNames::kWritten)) {
            refuse(Tr(QT_TRANSLATE_NOOP("CommandLine", "The file to write, \"%1\", ends neither in .wav nor in .mid."))
                       .arg(path));
        }
    }

    QCommandLineParser parser_;
    const QCommandLineOption output_{
        "output", Tr(QT_TRANSLATE_NOOP("CommandLine", "Play to the MIDI output <name> in this run.")),
        Tr(QT_TRANSLATE_NOOP("CommandLine", "name"))};
    const QCommandLineOption input_{
        "input", Tr(QT_TRANSLATE_NOOP("CommandLine", "Listen to the MIDI input <name> in this run.")),
        Tr(QT_TRANSLATE_NOOP("CommandLine", "name"))};
    const QCommandLineOption preset_{"preset",
                                     Tr(QT_TRANSLATE_NOOP("CommandLine", "Begin with a preset: its name or its file.")),
                                     Tr(QT_TRANSLATE_NOOP("CommandLine", "preset"))};
    const QCommandLineOption soundFont_{"sound-font",
                                        Tr(QT_TRANSLATE_NOOP("CommandLine", "Play the sound font <file> in this run.")),
                                        Tr(QT_TRANSLATE_NOOP("CommandLine", "file"))};
    const QCommandLineOption new_{
        "new", Tr(QT_TRANSLATE_NOOP("CommandLine", "Open the file in a program of its own, though one runs already."))};
    const QCommandLineOption listPorts_{
        "list-ports", Tr(QT_TRANSLATE_NOOP("CommandLine", "List the MIDI outputs and inputs, a line each, and quit."))};
    const QCommandLineOption check_{
        "check", Tr(QT_TRANSLATE_NOOP("CommandLine",
                                      "Say what would sound, what would not and what to do about it, with a test note, "
                                      "and quit. The exit code is 0 when a key would sound."))};
    const QCommandLineOption render_{
        "render",
        Tr(QT_TRANSLATE_NOOP("CommandLine",
                             "Play the MIDI file <file> as if a MIDI keyboard sent it, write what comes out to the "
                             "file named after it, and quit. Needs no window, no display and no sound card.")),
        Tr(QT_TRANSLATE_NOOP("CommandLine", "file"))};
    const QCommandLineOption locale_{
        "locale",
        Tr(QT_TRANSLATE_NOOP("CommandLine", "Take the interface language of <locale>, such as ru_RU, for this run.")),
        Tr(QT_TRANSLATE_NOOP("CommandLine", "locale"))};
    const QCommandLineOption demonstration_{
        "demo",
        Tr(QT_TRANSLATE_NOOP("CommandLine",
                             "Play a short demonstration, leave a screenshot, a MIDI file and a sound "
                             "file in <folder>, and quit.")),
        Tr(QT_TRANSLATE_NOOP("CommandLine", "folder"))};
    const QCommandLineOption pictures_{
        "pictures", Tr(QT_TRANSLATE_NOOP("CommandLine", "Leave pictures for the manual in <folder> and quit.")),
        Tr(QT_TRANSLATE_NOOP("CommandLine", "folder"))};
    const QCommandLineOption help_ = parser_.addHelpOption();
    const QCommandLineOption version_ = parser_.addVersionOption();
};

}  // namespace

CommandLine CommandLine::Parse(const QStringList& arguments) {
    return Parser().Parse(arguments);
}

QString CommandLine::GetHelp() {
    return Parser().GetHelp();
}

}  // namespace Kivora
