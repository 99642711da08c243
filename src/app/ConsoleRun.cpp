#include "app/ConsoleRun.h"

#include <QCoreApplication>

#include "app/Backends.h"
#include "app/CommandLine.h"
#include "app/ConsoleOutput.h"
#include "app/RenderCommand.h"
#include "engine/CKivora.h"
#include "locale/Locale.h"
#include "nk/nk_exception.h"

namespace Kivora {

namespace {

QString Tr(const char* text) {
    return QCoreApplication::translate("CommandLine", text);
}

QString ListNames(const QString& line, const NK::CStringArray& names) {
    QString lines;
    for (const NK::CString& name : names) {
        lines += line.arg(QString::fromWCharArray(name.c_str())) + '\n';
    }
    return lines;
}

int ListPorts(EngineDependencies dependencies) {
    dependencies.runTickTimer = false;
    try {
        const CKivora engine(std::move(dependencies));
        return PrintLines(ListNames(Tr(QT_TRANSLATE_NOOP("CommandLine", "Output: %1")), engine.GetOutputPortNames()) +
                          ListNames(Tr(QT_TRANSLATE_NOOP("CommandLine", "Input: %1")), engine.GetInputPortNames()))
                   ? kSuccessExit
                   : kFailureExit;
    } catch (const NK::CException& error) {
        PrintError(QString::fromWCharArray(error.GetMessage()));
        return kFailureExit;
    }
}

int Run(const CommandLine& line) {
    switch (line.action) {
        case CommandLine::Action::kHelp:
            return PrintLines(CommandLine::GetHelp()) ? kSuccessExit : kFailureExit;
        case CommandLine::Action::kVersion:
            return PrintLines(QCoreApplication::applicationName() + ' ' + QCoreApplication::applicationVersion() + '\n')
                       ? kSuccessExit
                       : kFailureExit;
        default:
            break;
    }
    if (const QString failure = line.soundFont.isEmpty() ? QString() : ExplainSoundFont(line.soundFont);
        !failure.isEmpty()) {
        PrintError(failure);
        return kFailureExit;
    }
    EngineDependencies dependencies = CreateEngineDependencies(line.soundFont);
    return line.action == CommandLine::Action::kRender ? Render(line, dependencies)
                                                       : ListPorts(std::move(dependencies));
}

}  // namespace

void SetIdentity() {
    QCoreApplication::setApplicationName("Kivora LX");
    QCoreApplication::setApplicationVersion(KIVORA_VERSION);
    QCoreApplication::setOrganizationName("Brennholt");
}

int RefuseArguments(const CommandLine& line) {
    PrintError(line.refusal + ' ' + Tr(QT_TRANSLATE_NOOP("CommandLine", "kivora --help lists the options.")));
    return kRefusedExit;
}

int RunWithoutWindow(int& argc, char** argv) {
    const QCoreApplication application(argc, argv);
    SetIdentity();
    static_cast<void>(InitLocale());
    CommandLine line = CommandLine::Parse(QCoreApplication::arguments());
    if (!line.locale.isEmpty()) {
        SetLocale(line.locale, false);
        line = CommandLine::Parse(QCoreApplication::arguments());
    }
    return line.refusal.isEmpty() ? Run(line) : RefuseArguments(line);
}

}  // namespace Kivora
