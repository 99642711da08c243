// The panel worked from a MIDI keyboard.
#pragma once

#include <array>
#include <functional>
#include <optional>
#include <QObject>
#include <QString>

#include "engine/BoundControls.h"
#include "engine/files/MidiBindingsFile.h"
#include "engine/PresetSteps.h"

class QWidget;

namespace Kivora {
class CKivora;
class EngineControls;
}  // namespace Kivora

/// Carries out what the bound controls of MIDI keyboards ask for, as the panel's own controls would: while a dialog, a
/// box or a menu is open nothing but the panic. Keeps what is bound, in a file of its own. [gui]
class MidiRemote : public QObject {
    Q_OBJECT

public:
    using Action = std::function<void()>;
    using Learned = Kivora::BoundControls::Learned;

    /// Reads the file. The controls are not owned; the panel is the parent.
    MidiRemote(Kivora::EngineControls& controls, QWidget& panel);
    ~MidiRemote() override;

    /// How the file was found at the start.
    Kivora::StoredBindings::State state() const { return state_; }
    const Kivora::MidiBindings& bindings() const { return file_.Get(); }
    /// In force at once. False when it could not be saved, with the reason in NK::GetFileFailure(). A damaged file that
    /// was kept under another name is told by damagedFileKept().
    bool change(const std::function<void(Kivora::MidiBindings& bindings)>& change);

    /// What the panel does for a function that is not named here.
    void setAction(Kivora::EPanelFunction function, Action action);

    /// The next control that comes is told by learned(), until endLearning().
    void beginLearning(Kivora::EPanelFunction function);
    void endLearning();

    QString exchangeFolder;  ///< where bindings were exported to or imported from last; empty for nowhere

signals:
    void learned(const Kivora::BoundControls::Learned& control);
    void damagedFileKept(const QString& path);
    void presetStepped(bool loaded);  ///< to the next or the previous one, where any could be loaded

private slots:
    void deliver();

private:
    void carryOut(const Kivora::BoundControls::Deed& deed);
    void setValue(const Kivora::BoundControls::Deed& knob);
    std::optional<int> slotOfSecondVoice() const;
    void putInForce();

    Kivora::EngineControls& controls_;
    const Kivora::CKivora& engine_;
    Kivora::MidiBindingsFile file_;
    Kivora::StoredBindings::State state_;
    Kivora::PresetSteps presets_;
    std::array<Action, Kivora::kPanelFunctions> actions_;
};
