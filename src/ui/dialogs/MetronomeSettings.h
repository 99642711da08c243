// The dialog of how the metronome sounds.
#pragma once

#include "ui/parts/FittedDialog.h"

class QComboBox;
class QFormLayout;
class QPushButton;
class QSpinBox;

namespace Kivora {
class EngineControls;
}

/// What is changed in it is in force at once. [gui]
class MetronomeSettings : public FittedDialog {
    Q_OBJECT

public:
    /// The engine is not owned.
    explicit MetronomeSettings(Kivora::EngineControls& controls, QWidget* parent = nullptr);

protected:
    void changeEvent(QEvent* event) override;

private:
    void retranslate();
    void load();
    void store();
    void fillNotes(QComboBox& combo, int chosen);
    void enable();

    Kivora::EngineControls& controls_;
    bool loading_ = false;

    // Qt's parent owns these.
    QFormLayout* form_;
    QComboBox* sound_;
    QComboBox* barNote_;
    QComboBox* beatNote_;
    QSpinBox* loudness_;
    QSpinBox* beats_;
    QComboBox* countIn_;
    QPushButton* close_;
};
