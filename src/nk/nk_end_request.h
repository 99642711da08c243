// The system's requests that the program end.
#pragma once

namespace NK {

/// While it lives, the signals that ask a program to end (POSIX: SIGTERM, SIGINT, SIGHUP) do not end it: they are told
/// through a descriptor, and the program ends by itself. A signal that was ignored before, as "nohup" has it, stays
/// ignored, and programs that are started get the usual behaviour. At most one at a time in a process; what was
/// requested before it was made is forgotten.
class CEndRequest {
public:
    CEndRequest();
    /// The signals behave as before.
    ~CEndRequest();
    CEndRequest(const CEndRequest&) = delete;
    CEndRequest& operator=(const CEndRequest&) = delete;

    /// Readable from the first request on, for an event loop to wait for; not to be read or closed. -1 when the system
    /// gives none: then the signals end the program.
    int GetDescriptor() const noexcept;
    /// [any]
    bool IsRequested() const noexcept;
};

}  // namespace NK
