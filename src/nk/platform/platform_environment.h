// The process's environment variables. [gui]
#pragma once

namespace NK::Platform {

/// Sets the variable unless it is set. No other thread may read or change the environment meanwhile. False when the
/// system refuses.
bool SetEnvironmentDefault(const char* name, const char* value) noexcept;

}  // namespace NK::Platform
