// The window that owns the engine and the front panel.
#pragma once

#include <functional>
#include <memory>
#include <QMainWindow>

#include "app/RunChoices.h"
#include "engine/CKivora.h"
#include "engine/EngineControls.h"
#include "locale/LocaleFile.h"

class KivoraWidget;
struct SoundFindings;

namespace Kivora {

class ScreenFit;

/// Creates the engine, says in a box why it could not once it is shown, and goes on without one; after a visit to the
/// settings it tries again. Holds exactly the panel. When it is destroyed everything falls
/// silent, then the engine's settings are saved; a box says when that fails. [gui]
class MainWindow : public QMainWindow {
    Q_OBJECT

public:
    /// May throw; null counts as a failure too.
    using EngineCreator = std::function<std::unique_ptr<CKivora>()>;

    /// Whether the ports are opened at once, or when the window has been painted, so that no audio system that is slow
    /// to answer keeps it away.
    enum class Ports { kOpen, kOpenWhenPainted };
    enum class EPanelSize { kFitsScreen, kAsDesigned };

    /// `synth` is what can be set up where the engine cannot be created; not owned, outlives the window, may be null.
    /// The panel is as large as it is wanted and the screen has room for, see ScreenFit; at the first start it shows
    /// the card with the computer keys. Neither where it is wanted as designed: then the window cannot be resized.
    explicit MainWindow(EngineCreator createEngine, Ports ports = Ports::kOpen, LibMidi::SynthControl* synth = nullptr,
                        EPanelSize panelSize = EPanelSize::kFitsScreen);
    ~MainWindow() override;

    /// Null when the engine could not be created.
    EngineControls* GetControls() const { return controls_.get(); }
    KivoraWidget* GetPanel() const { return panel_; }
    /// Ports of this run, which are not saved.
    RunPorts& GetRunPorts() { return runPorts_; }
    /// What looks at the sound for the settings; the engine may be null.
    void SetSoundDoctor(std::function<SoundFindings(const CKivora*)> look);
    /// Opens the ports if they are not open yet.
    void OpenPorts();

    /// Opens a file as the desktop does (see OpenFile() in FileOpening.h), once no dialog keeps the window from being
    /// worked; of several that come until then, the last. What cannot be opened is told in a box.
    void OpenFile(const QString& path);
    /// Before the other windows, with the keyboard, as far as the desktop lets it; a dialog in front of it comes along.
    void ComeToFront();

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

signals:
    /// GetPanel() is another one now; the former is deleted when the event loop comes to it.
    void PanelReplaced();

protected:
    bool event(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    /// A single file can be dropped on the window.
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    void OpenWaitingFile();
    bool SaveSettings();
    /// Why there is none, in the language of the moment; null when there is one now.
    std::function<QString()> CreateEngine();
    void CreatePanel(bool opensPorts);
    void EquipPanel();
    void HoldTestNote(bool isDown);
    void TryEngineAgain();
    void FitAndCentre();

    const EngineCreator createEngine_;
    LibMidi::SynthControl* const synth_;
    const EPanelSize panelSize_;
    std::unique_ptr<const CKivora> engine_;  ///< changed by its controls only
    std::unique_ptr<EngineControls> controls_;
    std::unique_ptr<ScreenFit> screenFit_;  // null for a panel as designed
    RunPorts runPorts_;
    std::function<SoundFindings(const CKivora*)> lookAtSound_;
    QString waitingFile_;            ///< to be opened; empty for none
    KivoraWidget* panel_ = nullptr;  // owned by this window as its child
    bool quiet_ = false;
};

}  // namespace Kivora
