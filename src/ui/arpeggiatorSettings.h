// The controls of one arpeggiator.
#pragma once

#include <memory>
#include <QWidget>

class PanelControlKeys;
class PanelSkin;

namespace Kivora {
class EngineControls;
}
namespace Ui {
class arpeggiatorSettings;
}

/// 284 x 102 logical pixels of the front panel. Reads and writes its arpeggiator under the engine's lock. A setting
/// that the controls cannot show selects nothing and is not written back. [gui]
class arpeggiatorSettings : public QWidget {
    Q_OBJECT

public:
    explicit arpeggiatorSettings(QWidget* parent = nullptr);
    ~arpeggiatorSettings() override;

    /// Arpeggiator 0 or 1 of the controls' engine from now on; refreshes. The controls are not owned; null detaches.
    void setArpeggiator(Kivora::EngineControls* controls, int index);
    /// Names the panel on its face and for screen readers; the tool tip of the name says what the arpeggiator is for.
    void setCaption(const QString& caption, const QString& purpose);
    /// Takes the pictures of the skin, which outlives the panel, and its colours.
    void updateSkin(PanelSkin& skin);
    /// The skin has other colours.
    void updateColors(PanelSkin& skin);

public slots:
    /// Loads the controls from the arpeggiator.
    void refresh();
    /// Writes the controls to the arpeggiator.
    void settingsChanged();
    void settingsChanged(int);

signals:
    /// The user has switched the arpeggiator on or off; its notes have been ended.
    void arpeggiatorBypassChanged();

protected:
    void changeEvent(QEvent* event) override;

private:
    void nameControls();
    void dressLamps();  ///< dim while no arpeggiator plays
    void showGate();

    std::unique_ptr<Ui::arpeggiatorSettings> ui_;
    PanelControlKeys* keys_;  // Qt's parent owns it
    Kivora::EngineControls* controls_ = nullptr;
    int index_ = 0;
    bool updating = false;
    bool lit_ = true;
    double pictureRatio_ = 1.0;  ///< device pixels for one of the design
};
