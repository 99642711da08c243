// How a voice's patch is shown on the panel. [gui]
#pragma once

#include <QString>
#include <QStringList>

#include <vector>

/// Programs are 0-based; the drum kit is NK::MIDI::kDrumKit.
namespace PatchTexts {

inline constexpr int kNoSecondVoice = -100000;
inline constexpr int kNoEngine = -100001;

/// The number that a parameter key shows: 1-based, "DK" for the drum kit, nothing without a second voice, "Err" for
/// any other negative value.
QString Label(int program);

struct Name {
    QString family;
    QString program;
};

/// The two lines on the main display, in the interface's language or in English. Throws NK::CException
/// "Invalid MIDI patch number." for a program above 127.
Name NameOf(int program, bool translated);
/// The names of the sixteen families, likewise.
QStringList Families(bool translated);
/// What programs and the drum kit are searched by: names and families in all languages of the program.
const std::vector<QString>& SearchTexts();
/// Without an engine.
Name ErrorName();

}  // namespace PatchTexts
