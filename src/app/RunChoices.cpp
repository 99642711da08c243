#include "app/RunChoices.h"

#include <QCoreApplication>

#include "app/CommandLine.h"
#include "app/ConsoleOutput.h"
#include "app/PresetChoice.h"
#include "engine/CKivora.h"
#include "engine/EngineFront.h"
#include "ui/Dialogs.h"

namespace Kivora {

namespace {

using Dialogs::FromQt;

QString Tr(const char* text) {
    return QCoreApplication::translate("CommandLine", text);
}

/// Whether a port that was named is there; if not, that is printed.
bool FindPort(const QString& name, const NK::CStringArray& names, const QString& absent) {
    if (name.isEmpty() || names.Find(FromQt(name)) >= 0) {
        return true;
    }
    PrintError(absent.arg(name) + ' ' +
               Tr(QT_TRANSLATE_NOOP("CommandLine", "kivora --list-ports lists those that are there.")));
    return false;
}

}  // namespace

void RunPorts::Choose(CKivora& engine, const NK::CString& output, const NK::CString& input) {
    if (!output.IsEmpty()) {
        output_ = {output, engine.GetOutputPortName()};
        engine.SetSavedOutputPortName(output);
    }
    if (!input.IsEmpty()) {
        input_ = {input, engine.GetInputPortName()};
        engine.SetSavedInputPortName(input);
    }
}

RunPorts::Hidden::Hidden(const RunPorts& ports, CKivora& engine)
    : ports_(ports),
      engine_(engine),
      hidesOutput_(!ports.output_.chosen.IsEmpty() && engine.GetOutputPortName() == ports.output_.chosen),
      hidesInput_(!ports.input_.chosen.IsEmpty() && engine.GetInputPortName() == ports.input_.chosen) {
    if (hidesOutput_) {
        engine_.SetSavedOutputPortName(ports_.output_.remembered);
    }
    if (hidesInput_) {
        engine_.SetSavedInputPortName(ports_.input_.remembered);
    }
}

RunPorts::Hidden::~Hidden() {
    if (hidesOutput_) {
        engine_.SetSavedOutputPortName(ports_.output_.chosen);
    }
    if (hidesInput_) {
        engine_.SetSavedInputPortName(ports_.input_.chosen);
    }
}

std::optional<int> ApplyChoices(const CommandLine& line, EngineFront& front, RunPorts& ports) {
    CKivora& engine = front.GetEngine();
    if (!FindPort(line.outputPort, engine.GetOutputPortNames(),
                  Tr(QT_TRANSLATE_NOOP("CommandLine", "There is no MIDI output \"%1\"."))) ||
        !FindPort(line.inputPort, engine.GetInputPortNames(),
                  Tr(QT_TRANSLATE_NOOP("CommandLine", "There is no MIDI input \"%1\".")))) {
        return kRefusedExit;
    }
    if (!line.preset.isEmpty()) {
        QString failure;
        if (const PresetResult result = LoadChosenPreset(front, line.preset, failure);
            result != PresetResult::kLoaded) {
            PrintError(failure);
            return result == PresetResult::kUnknown ? kRefusedExit : kFailureExit;
        }
    }
    ports.Choose(engine, FromQt(line.outputPort), FromQt(line.inputPort));
    return std::nullopt;
}

}  // namespace Kivora
