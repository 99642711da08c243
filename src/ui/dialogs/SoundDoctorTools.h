// What the settings need for their page about the sound. [gui]
#pragma once

#include <functional>

struct SoundFindings;

struct SoundDoctorTools {
    std::function<SoundFindings()> look;        ///< may take seconds; empty: there is nobody who looks
    std::function<void(bool isDown)> holdNote;  ///< by the way of the keys; empty where there is no engine
};
