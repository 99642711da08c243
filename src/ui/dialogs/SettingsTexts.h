// What is said about the settings' file.
#pragma once

#include <QString>

namespace Kivora {
class SettingsFile;
}

namespace SettingsTexts {

/// The reason, after the engine could not save its settings, and what has become of them. [gui]
QString WhyNotSaved(const Kivora::SettingsFile& file);

}  // namespace SettingsTexts
