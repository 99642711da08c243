// Where in memory the code of the C and C++ libraries lies.
#pragma once

namespace NK::Platform {

/// Records the address ranges; later calls do nothing. [any]
void RecordLibraryRanges();

/// Whether the interrupted instruction of a signal handler's `context` lies in the C or C++ library, the dynamic loader
/// or a sanitizer's runtime library. False before RecordLibraryRanges(). Safe in a signal handler.
bool WasLibraryInterrupted(const void* context) noexcept;

}  // namespace NK::Platform
