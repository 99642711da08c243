#include "nk/platform/platform_environment.h"

#include <stdlib.h>

namespace NK::Platform {

bool SetEnvironmentDefault(const char* name, const char* value) noexcept {
    return ::setenv(name, value, 0) == 0;
}

}  // namespace NK::Platform
