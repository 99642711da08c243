// Pictures that the program leaves.
#pragma once

#include <QString>

class QPixmap;

namespace Kivora {

/// Saves a PNG file as NK::SaveAtomically() does. False, with the reason in NK::GetFileFailure(), when that fails.
/// [gui]
bool SavePicture(const QPixmap& picture, const QString& path);

}  // namespace Kivora
