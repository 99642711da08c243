// What the settings file holds besides the voices and the arpeggiators. [owner]
#pragma once

#include <QColor>
#include <QString>

#include <cstdint>
#include <vector>

#include "nk/nk_ini_file.h"
#include "nk/nk_string.h"
#include "piano/CPianoColors.h"
#include "piano/PCKeyPlaces.h"

namespace Kivora {

/// What a setting shows in, in the order in which changes are told. See CKivora::ChangeSettings().
enum class EShownIn { kNothing, kPatchNames, kKeyNames, kKeyboard, kSkin };

/// Plain values; a key that is missing or unreadable takes the default given here. A new setting has a field here and a
/// row in the table of Settings.cpp, which says how it is saved and what it shows in.
struct Settings {
    static constexpr const wchar_t* kFileName = L"Kivora.ini";
    static constexpr const wchar_t* kSection = L"Kivora";
    /// Of the built-in synthesizer, see ReadSynthSettings().
    static constexpr const wchar_t* kSynthSection = L"Kivora_Synthesizer";

    std::uint8_t velocityLow = 40;  ///< these three of the computer's keys
    std::uint8_t velocityNormal = 80;
    std::uint8_t velocityHigh = 127;
    bool translatePatchNames = true;
    bool translateKeyNames = true;
    bool showNoteNames = false;
    NK::Piano::EPCKeyWay pcKeyWay = NK::Piano::EPCKeyWay::kAutomatic;
    int keyboardColoring = NK::Piano::kNoColoring;  ///< or kRainbowColoring, kScriabinColoring
    QColor uiColor{110, 112, 93};
    QColor uiDisplayColor{83, 149, 255};
    QColor uiDisplay2Color{83, 255, 149};
    QString wallpaper;  ///< path of a picture; empty for none

    bool operator==(const Settings&) const = default;

    /// Both work on the section that the file's cursor stands on. Of a velocity the low 8 bits are kept, of a colour
    /// the low 24. The way of the computer keys is written where it is not the default or the section has it already.
    static Settings Read(const NK::CIniFile& section);
    void Write(NK::CIniFile& section) const;

    /// What has to be told where these come in place of `former`: an entry for each setting that differs, in the order
    /// of EShownIn.
    std::vector<EShownIn> GetChanges(const Settings& former) const;
    /// The same where these were loaded: the names and the keyboard are told of whether they differ or not.
    std::vector<EShownIn> GetLoaded(const Settings& former) const;
};

/// The ports that are opened at the start; they stand before the settings in their section.
struct SavedPorts {
    NK::CString input;  ///< name; empty for none
    NK::CString output;

    static SavedPorts Read(const NK::CIniFile& section);
    void Write(NK::CIniFile& section) const;
};

/// Where the user has last saved a recording and last chosen a wallpaper; empty for nowhere yet.
struct LastFolders {
    static constexpr const wchar_t* kSection = L"Kivora_Folders";

    NK::CString takes;
    NK::CString wallpapers;

    static LastFolders Read(NK::CIniFile& file);
    /// Adds the section only when there is something to remember.
    void Write(NK::CIniFile& file) const;
};

}  // namespace Kivora
