#include "app/Demonstration.h"

#include <iostream>
#include <QApplication>
#include <QDir>
#include <QFileInfo>
#include <QKeyEvent>
#include <QPixmap>
#include <QTimer>

#include "app/MainWindow.h"
#include "app/PictureFile.h"
#include "engine/EngineControls.h"
#include "nk/qt/nk_qt_string.h"
#include "ui/KivoraWidget.h"
#include "ui/parts/FailureTexts.h"

namespace Kivora {

namespace {
constexpr int kFocusPollMs = 20;
constexpr int kFocusTries = 250;
constexpr quint32 kFirstScanCode = 1;  // any numbers do, one for each key
}  // namespace

Demonstration::Demonstration(const QString& dir) : dir_(QDir(dir).absolutePath()) {
    QDir().mkpath(dir_);
    DirectSound();
    // Middle C alone, long enough to hear its pitch, then a phrase in thirds over the same octave, and the chord.
    steps_ = {{0, 'z', true}, {900, 'z', false}};
    for (const char* pair : {"xv", "cb", "vn", "cb", "xv"}) {
        steps_.push_back({60, pair[0], true});
        steps_.push_back({0, pair[1], true});
        steps_.push_back({180, pair[0], false});
        steps_.push_back({0, pair[1], false});
    }
    for (const char key : {'z', 'c', 'b', 'q'}) {
        steps_.push_back({90, key, true});
    }
    screenshotStep_ = steps_.size() - 1;
    bool first = true;
    for (const char key : {'z', 'c', 'b', 'q'}) {
        steps_.push_back({first ? 1200 : 0, key, false});
        first = false;
    }
}

void Demonstration::DirectSound() {
    // The synthesizer's library opens whatever stands there, and would wait for the other end of a FIFO.
    const QFileInfo sound(dir_ + "/demo.wav");
    const bool hasFile = !qEnvironmentVariableIsEmpty("KIVORA_AUDIO_FILE");
    soundIsRefused_ = !hasFile && sound.exists() && !sound.isFile();
    if (soundIsRefused_) {
        return;
    }
    if (qEnvironmentVariableIsEmpty("KIVORA_AUDIO_DRIVER")) {
        qputenv("KIVORA_AUDIO_DRIVER", "file");
    }
    if (!hasFile) {
        qputenv("KIVORA_AUDIO_FILE", QFile::encodeName(sound.filePath()));
    }
}

void Demonstration::Start(MainWindow& window) {
    window_ = &window;
    clock_.start();
    window.activateWindow();
    QTimer::singleShot(0, this, [this] { WaitForFocus(kFocusTries); });  // in the event loop, which a failure ends
}

void Demonstration::WaitForFocus(int triesLeft) {
    if (soundIsRefused_) {
        Fail("demo.wav in the folder is no regular file");
    } else if (window_->GetControls() == nullptr) {
        Fail("there is no engine");
    } else if (window_->isActiveWindow()) {
        if (window_->GetControls()->StartRecording()) {
            Play(0);
        } else {
            Fail("the recording did not start");
        }
    } else if (triesLeft == 0) {
        Fail("the window did not get the keyboard focus");
    } else {
        QTimer::singleShot(kFocusPollMs, this, [this, triesLeft] { WaitForFocus(triesLeft - 1); });
    }
}

void Demonstration::Play(std::size_t step) {
    if (step == steps_.size()) {
        QTimer::singleShot(600, this, [this] { Finish(); });
        return;
    }
    QTimer::singleShot(steps_[step].afterMs, Qt::PreciseTimer, this, [this, step] {
        SendKey(steps_[step]);
        if (step == screenshotStep_) {
            // The lit keys reach the screen by the relay's wake-up first.
            QTimer::singleShot(100, this, [this] {
                if (!SavePicture(window_->grab(), dir_ + "/screenshot.png")) {
                    Fail("the screenshot could not be written: " + FailureTexts::OfLastFile());
                }
            });
        }
        Play(step + 1);
    });
}

void Demonstration::SendKey(const Step& step) {
    const int key = QChar(step.character).toUpper().unicode();
    QKeyEvent event(step.press ? QEvent::KeyPress : QEvent::KeyRelease, key, Qt::NoModifier,
                    kFirstScanCode + static_cast<quint32>(key), 0, 0, QString(QChar(step.character)));
    event.setTimestamp(static_cast<quint64>(clock_.elapsed()));
    QApplication::sendEvent(window_->GetPanel(), &event);
}

void Demonstration::Finish() {
    EngineControls& controls = *window_->GetControls();
    if (!controls.StopRecording() || !controls.SaveRecording(NK::FromQt(dir_ + "/demo.mid"))) {
        Fail("the MIDI file could not be written: " + FailureTexts::OfLastFile());
        return;
    }
    window_->close();
    QApplication::exit(0);
}

void Demonstration::Fail(const QString& reason) {
    std::cerr << "kivora: the demonstration failed: " << reason.toStdString() << "\n";
    QApplication::exit(1);
}

}  // namespace Kivora
