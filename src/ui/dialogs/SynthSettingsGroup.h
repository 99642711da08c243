// The settings of the built-in synthesizer.
#pragma once

#include <memory>
#include <QGroupBox>

namespace LibMidi {
class SynthControl;
struct SynthSettings;
}  // namespace LibMidi
namespace Ui {
class SynthSettingsGroup;
}

/// Each control takes effect at once. Settings that the synthesizer refuses are shown as they were before, and a box
/// says why. [gui]
class SynthSettingsGroup : public QGroupBox {
    Q_OBJECT

public:
    explicit SynthSettingsGroup(QWidget* parent = nullptr);
    ~SynthSettingsGroup() override;

    /// The synthesizer is not owned; null hides the group.
    void setSynth(LibMidi::SynthControl* synth);

public slots:
    /// Loads the controls from the synthesizer.
    void refresh();
    void settingsChanged();
    void onFontBrowse();
    void onFontDefault();
    /// Plays a note; a box says why nothing can sound.
    void onTest();

signals:
    /// A sound font has been found where there was none, so that the synthesizer can have a port now.
    void becameAvailable();

protected:
    void changeEvent(QEvent* event) override;

private:
    void fillDrivers(const QString& current);
    void nameControls();
    void showLatency(int place);
    void setSoundFont(const QString& path);
    void apply(const LibMidi::SynthSettings& settings);
    void showFailure(const QString& text);

    std::unique_ptr<Ui::SynthSettingsGroup> ui_;
    LibMidi::SynthControl* synth_ = nullptr;
    bool updating = false;
};
