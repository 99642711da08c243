#include "app/RunChoices.h"

#include <QCoreApplication>

#include "app/CommandLine.h"
#include "app/ConsoleOutput.h"
#include "app/PresetChoice.h"
#include "engine/CKivora.h"
#include "engine/EngineControls.h"
#include "nk/qt/nk_qt_string.h"

namespace Kivora {

namespace {

using NK::FromQt;

QString Tr(const char* text) {
    return QCoreApplication::translate("CommandLine", text);
}

/// Ports of one direction of an engine that has opened none yet.
struct Direction {
    NK::CStringArray (CKivora::*getNames)() const;
    NK::CString (CKivora::*getName)() const;
    void (EngineControls::*setSavedName)(const NK::CString&);
};
constexpr Direction kOutputs{&CKivora::GetOutputPortNames, &CKivora::GetOutputPortName,
                             &EngineControls::SetSavedOutputPortName};
constexpr Direction kInputs{&CKivora::GetInputPortNames, &CKivora::GetInputPortName,
                            &EngineControls::SetSavedInputPortName};

/// The listed name of a port that was named, which may be by a name that settings of an earlier version have.
NK::CString FindListedName(EngineControls& controls, const Direction& ports, const NK::CString& name) {
    const CKivora& engine = controls.GetEngine();
    if ((engine.*ports.getNames)().Find(name) >= 0) {
        return name;
    }
    const NK::CString remembered = (engine.*ports.getName)();
    (controls.*ports.setSavedName)(name);
    controls.UpdatePorts();
    NK::CString listed = (engine.*ports.getName)();
    (controls.*ports.setSavedName)(remembered);
    return listed;
}

/// Puts the port's listed name in place of a name that was given; false for a port that is not there, which is printed.
bool FindPort(EngineControls& controls, const Direction& ports, const QString& given, const QString& absent,
              NK::CString& name) {
    if (given.isEmpty()) {
        return true;
    }
    name = FindListedName(controls, ports, FromQt(given));
    if ((controls.GetEngine().*ports.getNames)().Find(name) >= 0) {
        return true;
    }
    PrintError(absent.arg(given) + ' ' +
               Tr(QT_TRANSLATE_NOOP("CommandLine", "kivora --list-ports lists those that are there.")));
    return false;
}

}  // namespace

void RunPorts::Choose(EngineControls& controls, const NK::CString& output, const NK::CString& input) {
    if (!output.IsEmpty()) {
        output_ = {output, controls.GetEngine().GetOutputPortName()};
        controls.SetSavedOutputPortName(output);
    }
    if (!input.IsEmpty()) {
        input_ = {input, controls.GetEngine().GetInputPortName()};
        controls.SetSavedInputPortName(input);
    }
}

RunPorts::Hidden::Hidden(const RunPorts& ports, EngineControls& controls)
    : ports_(ports),
      controls_(controls),
      hidesOutput_(!ports.output_.chosen.IsEmpty() && controls.GetEngine().GetOutputPortName() == ports.output_.chosen),
      hidesInput_(!ports.input_.chosen.IsEmpty() && controls.GetEngine().GetInputPortName() == ports.input_.chosen) {
    if (hidesOutput_) {
        controls_.SetSavedOutputPortName(ports_.output_.remembered);
    }
    if (hidesInput_) {
        controls_.SetSavedInputPortName(ports_.input_.remembered);
    }
}

RunPorts::Hidden::~Hidden() {
    if (hidesOutput_) {
        controls_.SetSavedOutputPortName(ports_.output_.chosen);
    }
    if (hidesInput_) {
        controls_.SetSavedInputPortName(ports_.input_.chosen);
    }
}

std::optional<int> ApplyChoices(const CommandLine& line, EngineControls& controls, RunPorts& ports) {
    NK::CString output;
    NK::CString input;
    if (!FindPort(controls, kOutputs, line.outputPort,
                  Tr(QT_TRANSLATE_NOOP("CommandLine", "There is no MIDI output \"%1\".")), output) ||
        !FindPort(controls, kInputs, line.inputPort,
                  Tr(QT_TRANSLATE_NOOP("CommandLine", "There is no MIDI input \"%1\".")), input)) {
        return kRefusedExit;
    }
    if (!line.preset.isEmpty()) {
        QString failure;
        if (const PresetResult result = LoadChosenPreset(controls, line.preset, failure);
            result != PresetResult::kLoaded) {
            PrintError(failure);
            return result == PresetResult::kUnknown ? kRefusedExit : kFailureExit;
        }
    }
    ports.Choose(controls, output, input);
    return std::nullopt;
}

}  // namespace Kivora
