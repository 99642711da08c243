// A take that the user is asked about.
#pragma once

#include <functional>

#include "libmidi/CaptureStore.h"
#include "nk/nk_string.h"

struct TakeToSave {
    bool hasGrid;                                                    ///< it is known to what tempo it was played
    std::function<LibMidi::CaptureStore::View()> take;               ///< to be heard
    std::function<bool(const NK::CString& path, bool onGrid)> save;  ///< false when it could not be written
};
