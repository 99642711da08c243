// What an operation of a port came to.
#pragma once

namespace LibMidi {

/// Result codes of port operations.
enum Result : int { kSuccess = 0, kAlreadyOpen = 1, kNotOpen = 2, kNoData = 5, kDeviceError = 6, kUnavailable = 7 };

}  // namespace LibMidi
