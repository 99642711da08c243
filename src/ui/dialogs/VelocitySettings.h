// The dialog of how hard keys sound.
#pragma once

#include <cstdint>
#include <QTimer>

#include "ui/parts/FittedDialog.h"

class QCheckBox;
class QComboBox;
class QFormLayout;
class QHBoxLayout;
class QPushButton;
class QSpinBox;
class VelocityGraph;

namespace Kivora {
class EngineControls;
struct VelocityCurve;
}  // namespace Kivora

/// What is changed in it is in force at once. [gui]
class VelocitySettings : public FittedDialog {
    Q_OBJECT

public:
    /// The engine is not owned.
    explicit VelocitySettings(Kivora::EngineControls& controls, QWidget* parent = nullptr);

public slots:
    /// Shows the touches that have come since.
    void showTouches();

protected:
    void changeEvent(QEvent* event) override;
    void arrange(int width) override;

private:
    QSpinBox* addSpin(const char* name, int least, int greatest);
    Kivora::VelocityCurve curve() const;
    void retranslate();
    void load();
    void store();
    void showCurve(const Kivora::VelocityCurve& curve);
    void enable();

    Kivora::EngineControls& controls_;
    bool loading_ = false;
    std::uint64_t touchesShown_ = 0;
    QTimer touchTimer_;

    // Qt's parent owns these.
    QFormLayout* form_;
    QHBoxLayout* columns_;
    QComboBox* shape_;
    QSpinBox* fixed_;
    QSpinBox* least_;
    QSpinBox* greatest_;
    QSpinBox* firstY_;
    QSpinBox* middleX_;
    QSpinBox* middleY_;
    QSpinBox* lastY_;
    QCheckBox* height_;
    VelocityGraph* graph_;
    QPushButton* close_;
};
