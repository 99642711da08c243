// The dialog of the persistent settings.
#pragma once

#include <functional>
#include <memory>
#include <QColor>

#include "ui/dialogs/SoundDoctorTools.h"
#include "ui/parts/FittedDialog.h"

namespace Kivora {
class CKivora;
class EngineControls;
}  // namespace Kivora
namespace LibMidi {
class SynthControl;
}
namespace Ui {
class midiSettings;
}

/// Key colours, the three colours, the wallpaper and the built-in synthesizer follow its controls at once. The ports,
/// the groups of the computer keys, of the language and of recording are taken over when the dialog is confirmed, which
/// also saves the settings file; leaving it by Escape drops them. In two columns, and in one where the screen is too
/// narrow. [gui]
class midiSettings : public FittedDialog {
    Q_OBJECT

public:
    /// The controls are not owned; without one the dialog shows defaults and changes nothing but the language.
    explicit midiSettings(Kivora::EngineControls* controls, QWidget* parent = nullptr);
    ~midiSettings() override;

    /// A synthesizer to be set up where there is no engine; null for none.
    void setSynth(LibMidi::SynthControl* synth);
    /// What gives the text that stands above everything and says what does not play; none stands there while it is
    /// empty.
    void explainBy(std::function<QString()> text);
    /// With them a button opens the page that says what would sound.
    void setSoundDoctor(const SoundDoctorTools& tools);

public slots:
    /// Asks anew for that text.
    void explain();
    /// Other ports are there than when they were listed: lists them anew, with those chosen that were, by name.
    void portsChanged();
    /// Takes everything over, saves the settings and closes.
    void closeClicked();
    void defaultVelocities();
    void setBgColor();
    void defaultBgColor();
    void bgColorChanged(const QColor& color);
    void setDispColor();
    void defaultDispColor();
    void dispColorChanged(const QColor& color);
    void setDisp2Color();
    void defaultDisp2Color();
    void disp2ColorChanged(const QColor& color);
    void onWPBrowse();
    void onWPClear();
    void onKeyboardColorChanged(int index);
    /// Looks for MIDI devices again.
    void rescanPorts();
    void checkSound();

protected:
    bool event(QEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void arrange(int width) override;

private:
    void connectControls();
    void nameControls();
    void fillPorts();
    void fillLanguages();
    void nameLanguages();
    void loadControls();
    void pickColor(const QString& title, const QColor& color, void (midiSettings::*changed)(const QColor&));
    /// Runs the action; a box says what failed when it throws.
    void attempt(const QString& failure, const std::function<void()>& action);
    void takeLanguage();
    void showError(const QString& text, const QString& details = {});

    std::unique_ptr<Ui::midiSettings> ui_;
    std::function<QString()> explanation_;
    SoundDoctorTools doctor_;
    Kivora::EngineControls* controls_;
    const Kivora::CKivora* engine_;
    QColor bgColor_;
    QColor dispColor_;
    QColor disp2Color_;
    bool updating = false;
};
