// A keyboard that floods the instrument, all threads alive, while the window opens dialogs and menus.
#include "widget/ui/PanelRig.h"

#include <atomic>
#include <functional>
#include <mutex>
#include <thread>

#include "libmidi/MIDIPlayer.h"
#include "support/SynthModel.h"
#include "support/TemporaryFolder.h"

using namespace KivoraTest;

namespace {

/// The panel over an engine with its own tick and the real player; only the devices are made up.
class PanelFlood : public testing::Test {
protected:
    PanelFlood() {
        Kivora::RegisterEmbeddedFonts();
        Kivora::SetLocale("en_US", false);
        FakeDevice& output = backend.Plug(kSynth, LibMidi::kOutput);
        output.keepsWritten = false;
        output.onWrite = [this](const LibMidi::MIDIEvent& event) {
            const std::lock_guard guard(synthMutex);
            synth.Play(event);
            notes += (event.status & 0xF0) == 0x90 ? 1 : 0;
        };
        backend.Plug(kKeyboard, LibMidi::kInput);
        backend.defaultOutput = kSynth;
        backend.defaultInput = kKeyboard;
        engine = std::make_unique<Kivora::CKivora>(
            Kivora::EngineDependencies{.backends = {backend.GetCreator()},
                                       .createPlayer = [] { return LibMidi::CreateMIDIPlayer(); },
                                       .userDataDir = NK::CString::FromUtf8(folder.GetPath().c_str()),
                                       .factoryPresetsDir = NK::CString::FromUtf8((folder / "factory").c_str())});
        controls = std::make_unique<Kivora::EngineControls>(*engine);
        panel = new KivoraWidget(controls.get(), &window);
        window.setCentralWidget(panel);
        window.setFixedSize(panel->sizeHint());
        window.show();
        window.activateWindow();
    }
    ~PanelFlood() override {
        StopFlood();
        delete panel;
        controls->Close();
    }

    /// Each note that begins ends in the same breath or in the next.
    void StartFlood() {
        flood = std::thread([this] {
            FakeInPort& port = *backend.GetIn(kKeyboard);
            for (int count = 0; !stop; ++count) {
                const auto note = static_cast<std::uint8_t>(count % 128);
                port.Deliver({{0, 0x90, note, 100}, {0, 0xB0, 1, note}});
                port.Deliver({{0, 0x80, note, 0}});
                played += 1;
                std::this_thread::yield();
            }
        });
    }
    void StopFlood() {
        stop = true;
        if (flood.joinable()) {
            flood.join();
        }
    }
    /// The window's thread goes on with its events until so many notes more have been played.
    void AwaitFlood(int more) {
        const int until = played + more;
        EXPECT_TRUE(QTest::qWaitFor([&] { return played >= until; }, kWaitMs));
    }
    bool IsSilent() {
        const std::lock_guard guard(synthMutex);
        return !synth.IsSounding();
    }

    CTemporaryFolder folder;
    FakeBackend backend;
    std::mutex synthMutex;
    SynthModel synth;
    std::atomic<int> notes{0};
    std::atomic<int> played{0};
    std::atomic<bool> stop{false};
    std::thread flood;
    std::unique_ptr<Kivora::CKivora> engine;
    std::unique_ptr<Kivora::EngineControls> controls;
    QMainWindow window;
    KivoraWidget* panel = nullptr;
};

TEST_F(PanelFlood, DialogsOpenAndCloseAndNoNoteIsLostOrLeftSounding) {
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window, kWaitMs));
    ASSERT_TRUE(engine->IsOutputReady());
    ASSERT_GE(engine->GetInputPortIndex(), 0);
    constexpr int kNotesMeanwhile = 300;
    StartFlood();
    ModalAnswers answers;
    const auto look = [this](QDialog& dialog) {
        AwaitFlood(kNotesMeanwhile);
        dialog.reject();
    };
    for (int round = 0; round < 2; ++round) {
        for (void (KivoraWidget::*open)() : {&KivoraWidget::settingsClicked, &KivoraWidget::loadPatchClicked,
                                             &KivoraWidget::savePatchClicked, &KivoraWidget::aboutClicked}) {
            answers.Then(look);
            std::invoke(open, *panel);
            AwaitFlood(10);
        }
        int seen = 0;
        QTimer timer;  // lives through the events that are waited for while the menu is open
        QObject::connect(&timer, &QTimer::timeout, [&] {
            if (QWidget* const menu = QApplication::activePopupWidget()) {
                timer.stop();
                AwaitFlood(kNotesMeanwhile);
                ++seen;
                menu->close();
            }
        });
        timer.start(1);
        QTest::keyClick(panel, Qt::Key_F10);
        EXPECT_TRUE(QTest::qWaitFor([&] { return seen == 1; }, kWaitMs));
    }
    EXPECT_TRUE(answers.AllGiven());
    EXPECT_EQ(answers.seen.size(), 8U);
    StopFlood();
    EXPECT_TRUE(QTest::qWaitFor([&] { return notes == played && IsSilent(); }, kWaitMs))
        << notes << " of " << played << " notes were written";
    EXPECT_FALSE(engine->IsOutputLost());
}

}  // namespace
