#include "engine/PresetSteps.h"

#include <vector>

#include "engine/EngineControls.h"

namespace Kivora {

namespace {
struct Listed {
    NK::CString name;
    bool factory;
};

std::vector<Listed> ListAll(const CKivora& engine) {
    std::vector<Listed> listed;
    for (const bool factory : {true, false}) {
        NK::CStringArray names;
        engine.ListPresets(names, factory);
        for (const NK::CString& name : names) {
            listed.push_back({name, factory});
        }
    }
    return listed;
}
}  // namespace

bool PresetSteps::Step(int by) {
    const std::vector<Listed> listed = ListAll(controls_.GetEngine());
    const int count = static_cast<int>(listed.size());
    const NK::CString current = controls_.GetEngine().GetPresetName();
    int place = by > 0 ? -1 : count;
    for (int index = 0; index < count; ++index) {
        const Listed& preset = listed[static_cast<std::size_t>(index)];
        // Of two of a name the own one, unless it was the other that was loaded here.
        if (preset.name == current && !(current == name_ && preset.factory != factory_)) {
            place = index;
        }
    }
    for (int tried = 0; tried < count; ++tried) {
        place = (place + by + count) % count;
        const Listed& preset = listed[static_cast<std::size_t>(place)];
        if (controls_.LoadPreset(preset.name, preset.factory)) {
            name_ = preset.name;
            factory_ = preset.factory;
            controls_.NoteSteppedPreset(preset.name, preset.factory);
            return true;
        }
    }
    return false;
}

}  // namespace Kivora
