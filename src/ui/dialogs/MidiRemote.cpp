#include "ui/dialogs/MidiRemote.h"

#include <QApplication>
#include <QMetaObject>
#include <QWidget>

#include "engine/EngineControls.h"
#include "engine/values/VoiceSlots.h"
#include "nk/nk_paths.h"
#include "nk/qt/nk_qt_string.h"

using Kivora::BoundControls;
using Kivora::CKivora;
using Kivora::EPanelFunction;
using Kivora::VoiceSlots;

namespace {

const NK::CString kFileName = L"MidiBindings.ini";
constexpr int kLeastVolume = 1;
constexpr int kGreatestVolume = 127;

/// Whether the panel's controls are out of reach.
bool IsPanelBlocked() {
    return QApplication::activeModalWidget() != nullptr || QApplication::activePopupWidget() != nullptr;
}

}  // namespace

MidiRemote::MidiRemote(Kivora::EngineControls& controls, QWidget& panel)
    : QObject(&panel),
      controls_(controls),
      engine_(controls.GetEngine()),
      file_(NK::JoinPath(engine_.GetUserDataDir(), kFileName)),
      state_(file_.Load()),
      presets_(controls) {
    const auto patch = [this](void (Kivora::EngineControls::*step)(int)) {
        return [this, step] { std::invoke(step, controls_, VoiceSlots::kMain); };
    };
    const auto secondPatch = [this](void (Kivora::EngineControls::*step)(int)) {
        return [this, step] {
            if (const std::optional<int> slot = slotOfSecondVoice()) {
                std::invoke(step, controls_, *slot);
            }
        };
    };
    setAction(EPanelFunction::kPatch1Up, patch(&Kivora::EngineControls::NextPatch));
    setAction(EPanelFunction::kPatch1Down, patch(&Kivora::EngineControls::PrevPatch));
    setAction(EPanelFunction::kPatch2Up, secondPatch(&Kivora::EngineControls::NextPatch));
    setAction(EPanelFunction::kPatch2Down, secondPatch(&Kivora::EngineControls::PrevPatch));
    setAction(EPanelFunction::kPresetUp, [this] { emit presetStepped(presets_.Step(1)); });
    setAction(EPanelFunction::kPresetDown, [this] { emit presetStepped(presets_.Step(-1)); });
    putInForce();
    controls_.WithBoundControls([this](BoundControls& bound) {
        bound.SetWake([this] { QMetaObject::invokeMethod(this, "deliver", Qt::QueuedConnection); });
    });
}

MidiRemote::~MidiRemote() {
    controls_.WithBoundControls([](BoundControls& bound) {
        bound.SetWake({});
        bound.EndLearning();
    });
}

void MidiRemote::setAction(EPanelFunction function, Action action) {
    actions_[static_cast<std::size_t>(function)] = std::move(action);
}

bool MidiRemote::change(const std::function<void(Kivora::MidiBindings&)>& change) {
    NK::CString setAside;
    const bool isSaved = file_.Change(change, setAside);
    putInForce();
    if (!setAside.IsEmpty()) {
        emit damagedFileKept(NK::ToQt(setAside));
    }
    return isSaved;
}

void MidiRemote::putInForce() {
    controls_.WithBoundControls([this](BoundControls& bound) { bound.SetBindings(file_.Get()); });
}

void MidiRemote::beginLearning(EPanelFunction function) {
    controls_.WithBoundControls([function](BoundControls& bound) { bound.BeginLearning(function); });
}

void MidiRemote::endLearning() {
    controls_.WithBoundControls([](BoundControls& bound) { bound.EndLearning(); });
}

void MidiRemote::deliver() {
    // One at a time: what is carried out may open a dialog, in which the next ones come here again.
    while (const auto deed = controls_.WithBoundControls([](BoundControls& bound) { return bound.TakeNext(); })) {
        carryOut(*deed);
    }
    if (const auto control = controls_.WithBoundControls([](BoundControls& bound) { return bound.TakeLearned(); })) {
        emit learned(*control);
    }
}

void MidiRemote::carryOut(const BoundControls::Deed& deed) {
    const bool isBlocked = IsPanelBlocked() && deed.function != EPanelFunction::kPanic;
    if (deed.position) {
        if (isBlocked) {
            controls_.WithBoundControls([&deed](BoundControls& bound) { bound.LetGo(deed); });
        } else {
            setValue(deed);
        }
    } else if (const Action& action = actions_[static_cast<std::size_t>(deed.function)]; action && !isBlocked) {
        action();
    }
}

void MidiRemote::setValue(const BoundControls::Deed& knob) {
    const auto follow = [&](int current, int least, int greatest) {
        return controls_.WithBoundControls(
            [&](BoundControls& bound) { return bound.Follow(knob, current, least, greatest); });
    };
    if (knob.function == EPanelFunction::kTempo) {
        if (const auto tempo = follow(engine_.GetTempo(), CKivora::kMinTempo, CKivora::kMaxTempo)) {
            controls_.SetTempoInBar(*tempo);
        }
        return;
    }
    const std::optional<int> slot =
        knob.function == EPanelFunction::kVolume1 ? std::optional(VoiceSlots::kMain) : slotOfSecondVoice();
    if (!slot) {
        controls_.WithBoundControls([&knob](BoundControls& bound) { bound.LetGo(knob); });
        return;
    }
    if (const auto volume = follow(engine_.GetVolume(*slot), kLeastVolume, kGreatestVolume)) {
        controls_.SetVolume(*volume, *slot);
    }
}

std::optional<int> MidiRemote::slotOfSecondVoice() const {
    if (engine_.IsSplit()) {
        return VoiceSlots::kBass;
    }
    return engine_.IsDual() ? std::optional(VoiceSlots::kLayer) : std::nullopt;
}
