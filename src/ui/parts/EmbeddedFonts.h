// The typefaces that the program brings along.
#pragma once

namespace Kivora {

/// Makes "Inter", "Play" and "Liberation Sans" from the program's resources known to the application, with "Liberation
/// Sans" in the place of a "Helvetica" that is not installed. Whether all of them could be read. After the application
/// object, before the first text is drawn; later calls do nothing more. [gui]
bool RegisterEmbeddedFonts();

}  // namespace Kivora
