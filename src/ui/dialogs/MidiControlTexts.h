// What the functions of the panel and the controls of MIDI keyboards are called.
#pragma once

#include <QString>

#include "engine/values/MidiBindings.h"

/// In the language of the interface. [gui]
namespace MidiControlTexts {

QString NameOf(Kivora::EPanelFunction function);
/// For example "Controller 21, channel 1".
QString Describe(const Kivora::MidiControl& control);
/// The same with the device before it.
QString Describe(const NK::CString& device, const Kivora::MidiControl& control);
/// All that a function is bound to; empty for nothing.
QString DescribeBindings(const Kivora::MidiBindings& bindings, Kivora::EPanelFunction function);

}  // namespace MidiControlTexts
