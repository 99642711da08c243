// The window that owns the engine and the front panel.
#pragma once

#include <memory>
#include <QMainWindow>

class KivoraWidget;

namespace Kivora {

class CKivora;
class EngineFront;

/// Creates the engine, says in a box why it could not, and goes on without one. Cannot be resized. [gui]
class MainWindow : public QMainWindow {
    Q_OBJECT

public:
    MainWindow();
    ~MainWindow() override;

    /// Null when the engine could not be created.
    EngineFront* GetFront() const { return front_.get(); }
    KivoraWidget* GetPanel() const { return panel_; }

private:
    void CreateEngine();
    void FitAndCentre();

    std::unique_ptr<CKivora> engine_;
    std::unique_ptr<EngineFront> front_;
    KivoraWidget* panel_ = nullptr;  // owned by this window as its child
};

}  // namespace Kivora
