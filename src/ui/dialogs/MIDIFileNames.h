// What the files are called that hold MIDI. [gui]
#pragma once

#include <QString>

namespace MIDIFileNames {

/// Patterns, in whatever letters.
inline constexpr const char* kWritten = "*.mid *.midi";
inline constexpr const char* kRead = "*.mid *.midi *.kar";

/// Whether the name of the file is one of those.
bool Fits(const QString& path, const char* patterns);
/// For a file dialog, in the user's language.
QString GetFilter(const char* patterns);

}  // namespace MIDIFileNames
