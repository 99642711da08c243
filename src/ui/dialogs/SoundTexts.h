// What is said about an output that does not sound, and about an input that was lost. [gui]
#pragma once

#include <QString>

#include "engine/PortKeeper.h"

/// In the user's language. Names of ports are text from outside.
namespace SoundTexts {

using OutputState = Kivora::PortKeeper::OutputState;

/// What a port is called for the user: its name, but those that are no devices' in the user's language.
QString PortName(const NK::CString& name);

/// For the display's line; empty while the output plays.
QString OutputNotice(OutputState state, const QString& port, bool isRecording);
/// Why and what to do, for the settings dialog; empty while the output plays. `reason` may be empty.
QString OutputExplanation(OutputState state, const QString& port, const QString& reason);
QString NoEngineNotice(const QString& reason);
QString NoEngineExplanation(const QString& reason);
QString InputNotice(const QString& port);
QString InputExplanation(const QString& port);
QString InputReturned(const QString& port);
/// Why no recording is begun without an output.
QString NothingToRecord();
/// Why no song is played without one.
QString NothingToHear();

}  // namespace SoundTexts
