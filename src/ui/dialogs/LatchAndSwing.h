// The dialog of what the arpeggiators can do beside what their panels show.
#pragma once

#include <array>
#include <functional>

#include "ui/parts/FittedDialog.h"

class QCheckBox;
class QGroupBox;
class QLabel;
class QPushButton;
class QSpinBox;

namespace Kivora {
class EngineControls;
}

/// What is changed in it is in force at once. [gui]
class LatchAndSwing : public FittedDialog {
    Q_OBJECT

public:
    /// The controls are not owned.
    explicit LatchAndSwing(Kivora::EngineControls& controls, QWidget* parent = nullptr);

protected:
    void changeEvent(QEvent* event) override;

private:
    struct Group {
        QGroupBox* box;
        QCheckBox* latch;
        QLabel* swingLabel;
        QSpinBox* swing;
    };

    Group addGroup(int index);
    void retranslate();

    Kivora::EngineControls& controls_;
    std::array<Group, 2> groups_;  // Qt's parent owns what is in them
    QPushButton* close_;
};
