// The names under which a backend lists its devices. [any]
#pragma once

#include <functional>
#include <string_view>

#include "nk/nk_string.h"

namespace LibMidi {

/// `given`, with a number from 2 on behind it where that name is taken: ports are chosen by their names.
NK::CString FindFreeName(const NK::CString& given, const std::function<bool(const NK::CString&)>& isTaken);

/// Whether the port is the sequencer's own loop-back, by its name: what is played to it comes back.
bool IsLoopBack(std::string_view name);

/// Whether the output is no device, by its name, and sounds only where other programs take what is written.
bool HandsOn(std::string_view output);

}  // namespace LibMidi
