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
    void (CKivora::*setSavedName)(const NK::CString&);
};
constexpr Direction kOutputs{&CKivora::GetOutputPortNames, &CKivora::GetOutputPortName,
                             &CKivora::SetSavedOutputPortName};
constexpr Direction kInputs{&CKivora::GetInputPortNames, &CKivora::GetInputPortName, &CKivora::SetSavedInputPortName};

/// The listed name of a port that was named, which may be by a name that settings of an earlier version have.
NK::CString FindListedName(CKivora& engine, const Direction& ports, const NK::CString& name) {
    if ((engine.*ports.getNames)().Find(name) >= 0) {
        return name;
    }
    const NK::CString remembered = (engine.*ports.getName)();
    (engine.*ports.setSavedName)(name);
    engine.UpdatePorts();
    NK::CString listed = (engine.*ports.getName)();
    (engine.*ports.setSavedName)(remembered);
    return listed;
}

/// Puts the port's listed name in place of a name that was given; false for a port that is not there, which is printed.
bool FindPort(CKivora& engine, const Direction& ports, const QString& given, const QString& absent, NK::CString& name) {
    if (given.isEmpty()) {
        return true;
    }
    name = FindListedName(engine, ports, FromQt(given));
    if ((engine.*ports.getNames)().Find(name) >= 0) {
        return true;
    }
    PrintError(absent.arg(given) + ' ' +
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

std::optional<int> ApplyChoices(const CommandLine& line, EngineControls& controls, RunPorts& ports) {
    CKivora& engine = controls.GetEngine();
    NK::CString output;
    NK::CString input;
    if (!FindPort(engine, kOutputs, line.outputPort,
                  Tr(QT_TRANSLATE_NOOP("CommandLine", "There is no MIDI output \"%1\".")), output) ||
        !FindPort(engine, kInputs, line.inputPort,
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
    ports.Choose(engine, output, input);
    return std::nullopt;
}

}  // namespace Kivora
