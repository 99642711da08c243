// A take that the user is asked about. [gui]
#pragma once

#include <functional>
#include <memory>

#include "nk/nk_string.h"

namespace Kivora {
class Song;
}

struct TakeToSave {
    bool hasGrid;                                                    ///< it is known to what tempo it was played
    std::function<std::shared_ptr<const Kivora::Song>()> take;       ///< to be heard
    std::function<bool(const NK::CString& path, bool onGrid)> save;  ///< false when it could not be written
};
