// Pictures of the program for the manual.
#pragma once

#include <QString>

class QWidget;

namespace Kivora {

class EngineControls;

/// Creates the folder and leaves "panel.png" in it, the panel as it is, and "panel-alt.png", with the other views of
/// its left and right pane. False, with a line on the standard error, when one could not be written. The panel must be
/// shown. [gui]
bool SavePanelPictures(QWidget& panel, const QString& dir);

/// The same for "settings.png", the dialog of the settings. The controls may be null. [gui]
bool SaveSettingsPicture(EngineControls* controls, const QString& dir);

}  // namespace Kivora
