#include "libmidi/PortNames.h"

#include "libmidi/SpecialPorts.h"

namespace LibMidi {

NK::CString FindFreeName(const NK::CString& given, const std::function<bool(const NK::CString&)>& isTaken) {
    NK::CString name = given;
    for (int number = 2; isTaken(name); ++number) {
        name = given + L" (" + NK::CString::FromInt(number) + L")";
    }
    return name;
}

bool IsLoopBack(std::string_view name) {
    return name.starts_with("Midi Through");
}

bool HandsOn(std::string_view output) {
    return IsLoopBack(output) || output == SpecialPorts::kProgramsOut;
}

}  // namespace LibMidi
