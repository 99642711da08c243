// The preset that a command line names.
#pragma once

#include <QString>

namespace Kivora {

class EngineControls;

enum class PresetResult {
    kLoaded,
    kUnknown,    ///< there is no preset of that name
    kUnreadable  ///< the file cannot be read, or holds no preset
};

/// Loads a preset by its name, the user's own before the factory's, or from a file: what ends as a preset's file does,
/// or has a "/" in it. What stands in a list of presets counts as used there. `failure` says in a sentence why nothing
/// was loaded. [gui]
PresetResult LoadChosenPreset(EngineControls& controls, const QString& nameOrFile, QString& failure);
/// The same from a file, whatever its name.
PresetResult LoadPresetFile(EngineControls& controls, const QString& path, QString& failure);

}  // namespace Kivora
