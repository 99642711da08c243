// What the command line has chosen for the run of a window.
#pragma once

#include <optional>

#include "nk/nk_string.h"

namespace Kivora {

struct CommandLine;
class EngineControls;

/// Ports that are the engine's in this run without becoming settings. [gui]
class RunPorts {
public:
    /// Before the ports are opened; an empty name leaves the remembered port.
    void Choose(EngineControls& controls, const NK::CString& output, const NK::CString& input);

    /// While it lives the engine has the remembered ports for its saved ones, where the user has chosen no others.
    class Hidden {
    public:
        Hidden(const RunPorts& ports, EngineControls& controls);
        ~Hidden();
        Hidden(const Hidden&) = delete;
        Hidden& operator=(const Hidden&) = delete;

    private:
        const RunPorts& ports_;
        EngineControls& controls_;
        const bool hidesOutput_;
        const bool hidesInput_;
    };

private:
    struct Port {
        NK::CString chosen;  ///< empty for none
        NK::CString remembered;
    };
    Port output_;
    Port input_;
};

/// Loads the preset and chooses the ports. An exit code when that cannot be done: a sentence has been printed.
std::optional<int> ApplyChoices(const CommandLine& line, EngineControls& controls, RunPorts& ports);

}  // namespace Kivora
