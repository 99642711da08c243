#include "app/ConsoleRun.h"

#include <memory>
#include <QCoreApplication>

#include "app/Backends.h"
#include "app/CommandLine.h"
#include "app/ConsoleOutput.h"
#include "app/RenderCommand.h"
#include "app/SoundDoctor.h"
#include "engine/CKivora.h"
#include "engine/EngineControls.h"
#include "locale/Locale.h"
#include "nk/nk_exception.h"
#include "nk/qt/nk_qt_string.h"
#include "ui/dialogs/SoundReport.h"

namespace Kivora {

namespace {

QString Tr(const char* text) {
    return QCoreApplication::translate("CommandLine", text);
}

int Print(const QString& lines) {
    return PrintLines(lines) ? kSuccessExit : kFailureExit;
}

QString ListNames(const QString& line, const NK::CStringArray& names) {
    QString lines;
    for (const NK::CString& name : names) {
        lines += line.arg(NK::ToQt(name)) + '\n';
    }
    return lines;
}

int ListPorts(const EngineDependencies& dependencies) {
    try {
        const CKivora engine(dependencies);
        return Print(ListNames(Tr(QT_TRANSLATE_NOOP("CommandLine", "Output: %1")), engine.GetOutputPortNames()) +
                     ListNames(Tr(QT_TRANSLATE_NOOP("CommandLine", "Input: %1")), engine.GetInputPortNames()));
    } catch (const NK::CException& error) {
        PrintError(NK::ToQt(error.GetMessage()));
        return kFailureExit;
    }
}

/// Null when there is nothing to play to and nothing to listen to.
std::unique_ptr<CKivora> CreateEngine(const EngineDependencies& dependencies) {
    try {
        return std::make_unique<CKivora>(dependencies);
    } catch (const NK::CException&) {
        return nullptr;
    }
}

int CheckSound(const CommandLine& line, const EngineDependencies& dependencies,
               const std::shared_ptr<LibMidi::Synthesizer>& synthesizer) {
    const std::unique_ptr<CKivora> engine = CreateEngine(dependencies);
    if (engine) {
        EngineControls controls(*engine);
        controls.LoadSettings();
        if (!line.outputPort.isEmpty()) {
            controls.SetSavedOutputPortName(NK::FromQt(line.outputPort));
        }
        controls.UpdatePorts();  // which puts the listed name in place of one of an earlier version
    }
    const SoundFindings findings = SoundDoctor(synthesizer).Look(engine.get());
    const int exitCode = Print(SoundReport::ToText(SoundReport::Write(findings)));
    return findings.WouldSound() ? exitCode : kFailureExit;
}

int Run(const CommandLine& line) {
    if (line.action == CommandLine::Action::kHelp) {
        return Print(CommandLine::GetHelp());
    }
    if (line.action == CommandLine::Action::kVersion) {
        return Print(QCoreApplication::applicationName() + ' ' + QCoreApplication::applicationVersion() + '\n');
    }
    if (line.action == CommandLine::Action::kPlay) {
        PrintError(Tr(QT_TRANSLATE_NOOP("CommandLine",
                                        "No display is found that the instrument's window could be on: neither DISPLAY "
                                        "nor WAYLAND_DISPLAY is set.")));
        return kFailureExit;
    }
    if (const QString failure = line.soundFont.isEmpty() ? QString() : ExplainSoundFont(line.soundFont);
        !failure.isEmpty()) {
        PrintError(failure);
        return kFailureExit;
    }
    const auto synthesizer = CreateSynthesizer(line.soundFont);
    EngineDependencies dependencies = CreateEngineDependencies(synthesizer);
    dependencies.runTickTimer = false;
    if (line.action == CommandLine::Action::kCheck) {
        return CheckSound(line, dependencies, synthesizer);
    }
    return line.action == CommandLine::Action::kRender ? Render(line, dependencies) : ListPorts(dependencies);
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
