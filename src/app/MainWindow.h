// The window that owns the engine and the front panel.
#pragma once

#include <functional>
#include <memory>
#include <QMainWindow>

#include "engine/CKivora.h"
#include "engine/EngineFront.h"
#include "locale/LocaleFile.h"

class KivoraWidget;

namespace Kivora {

/// Creates the engine, says in a box why it could not, and goes on without one. Holds exactly the panel and cannot be
/// resized. When it is destroyed everything falls silent, then the engine's settings are saved; a box says when that
/// fails. [gui]
class MainWindow : public QMainWindow {
    Q_OBJECT

public:
    /// May throw; null counts as a failure too.
    using EngineCreator = std::function<std::unique_ptr<CKivora>()>;

    explicit MainWindow(const EngineCreator& createEngine);
    ~MainWindow() override;

    /// Null when the engine could not be created.
    EngineFront* GetFront() const { return front_.get(); }
    KivoraWidget* GetPanel() const { return panel_; }

    /// Saves the settings, and what is recorded or waits to be saved as it is kept for the next start. A failure is
    /// logged.
    void Save();
    /// Ends what sounds, saves as Save() does and closes the ports, without the display: nothing is shown and nothing
    /// of the window is destroyed. The process ends afterwards.
    void EndAtOnce();
    /// Before the window is shown: a file of the language that was damaged or could not be read is told then.
    void TellAboutLocaleFile(LocaleFileState state, const QString& failure);
    /// Nothing is said in a box when it is destroyed: nobody is there to read it.
    void SetQuiet() { quiet_ = true; }

private:
    bool SaveSettings();
    void CreateEngine(const EngineCreator& createEngine);
    void FitAndCentre();

    std::unique_ptr<CKivora> engine_;
    std::unique_ptr<EngineFront> front_;
    KivoraWidget* panel_ = nullptr;  // owned by this window as its child
    bool quiet_ = false;
};

}  // namespace Kivora
