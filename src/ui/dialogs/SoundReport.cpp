#include "ui/dialogs/SoundReport.h"

#include <algorithm>
#include <QCoreApplication>
#include <QLocale>
#include <QMap>

#include "locale/Locale.h"
#include "ui/dialogs/SoundFindings.h"

bool SoundFindings::DoesSynthPlay() const {
    return hasSynth && font == Font::kPlayable &&
           std::any_of(drivers.begin(), drivers.end(), [](const Driver& driver) { return driver.reason.isEmpty(); });
}

bool SoundFindings::WouldSound() const {
    return IsOutputThere() && !isOutputLoopBack && (!isOutputSynth || (DoesSynthPlay() && !IsSilenced()));
}

namespace SoundReport {

namespace {

using Findings = SoundFindings;

constexpr double kSmallFontMegabytes = 30;

QString Tr(const char* text) {
    return QCoreApplication::translate("SoundReport", text);
}

QString ToNumber(double value) {
    return QLocale(Kivora::GetCurrentLocale()).toString(value, 'f', 1);
}

QString GetDriverName(const QString& driver) {
    static const QMap<QString, QString> kNames{
        {"pipewire", "PipeWire"}, {"jack", "JACK"}, {"pulseaudio", "PulseAudio"}, {"alsa", "ALSA"}};
    return kNames.value(driver, driver);
}

/// Puts the lines together. What is wrong with the software synthesizer is trouble only where it is to play.
class Writer {
public:
    explicit Writer(const Findings& findings) : findings_(findings) {}

    QList<Line> Write() {
        AddVerdict();
        AddOutput();
        if (findings_.hasSynth) {
            AddFont();
            AddDrivers();
            AddVolume();
        }
        AddSequencer();
        AddPorts();
        AddRealtime();
        return lines_;
    }

private:
    void Add(Grade grade, const QString& text, const QString& advice = {}) { lines_ << Line{grade, text, advice}; }
    Grade OfSynth() const {
        return findings_.isOutputSynth || findings_.output.isEmpty() ? Grade::kTrouble : Grade::kHint;
    }

    void AddVerdict() {
        if (findings_.WouldSound()) {
            Add(Grade::kGood, Tr(QT_TRANSLATE_NOOP("SoundReport", "A key sounds: %1.")).arg(findings_.output));
        } else {
            Add(Grade::kTrouble, Tr(QT_TRANSLATE_NOOP("SoundReport", "No key sounds. What is marked below says why.")));
        }
    }

    void AddOutput() {
        if (findings_.output.isEmpty()) {
            Add(Grade::kTrouble, Tr(QT_TRANSLATE_NOOP("SoundReport", "There is no synthesizer to play to.")),
                Tr(QT_TRANSLATE_NOOP("SoundReport", "Connect one, or see to the software synthesizer's sound font.")));
        } else if (findings_.isOutputLoopBack) {
            Add(Grade::kTrouble,
                Tr(QT_TRANSLATE_NOOP("SoundReport",
                                     "The chosen synthesizer, %1, only hands the notes to other programs."))
                    .arg(findings_.output),
                Tr(QT_TRANSLATE_NOOP("SoundReport",
                                     "Choose another one in the settings, or let a program play them.")));
        } else if (!findings_.IsOutputThere() && !findings_.isOutputSynth) {  // of that one the sound font tells
            Add(Grade::kTrouble,
                Tr(QT_TRANSLATE_NOOP("SoundReport", "The chosen synthesizer, %1, is not connected."))
                    .arg(findings_.output),
                Tr(QT_TRANSLATE_NOOP("SoundReport", "Connect it, or choose another one in the settings.")));
        }
    }

    void AddFont() {
        switch (findings_.font) {
            case Findings::Font::kMissing:
                Add(OfSynth(),
                    Tr(QT_TRANSLATE_NOOP("SoundReport",
                                         "No sound font is found; without one the software synthesizer cannot play.")),
                    Tr(QT_TRANSLATE_NOOP("SoundReport",
                                         "Install the package timgm6mb-soundfont or, for a fuller sound, "
                                         "fluid-soundfont-gm, or choose a file in the settings.")));
                break;
            case Findings::Font::kUnplayable:
                Add(OfSynth(),
                    Tr(QT_TRANSLATE_NOOP("SoundReport", "The sound font %1 cannot be played. %2"))
                        .arg(findings_.fontPath, findings_.fontReason),
                    Tr(QT_TRANSLATE_NOOP("SoundReport", "Choose another one in the settings.")));
                break;
            case Findings::Font::kPlayable:
                Add(Grade::kGood,
                    Tr(QT_TRANSLATE_NOOP("SoundReport", "The sound font is %1 (%2 MB)."))
                        .arg(findings_.fontPath, ToNumber(findings_.fontMegabytes)),
                    findings_.fontMegabytes < kSmallFontMegabytes
                        ? Tr(QT_TRANSLATE_NOOP(
                              "SoundReport",
                              "It is a small one; that of the package fluid-soundfont-gm sounds fuller."))
                        : QString());
                break;
        }
    }

    void AddDrivers() {
        if (findings_.font != Findings::Font::kPlayable) {
            return;
        }
        const bool plays = findings_.DoesSynthPlay();
        for (const Findings::Driver& driver : findings_.drivers) {
            const QString name = GetDriverName(driver.name);
            if (driver.reason.isEmpty()) {
                Add(Grade::kGood, Tr(QT_TRANSLATE_NOOP("SoundReport", "%1 has taken a test note.")).arg(name));
            } else {
                Add(plays ? Grade::kHint : OfSynth(),
                    Tr(QT_TRANSLATE_NOOP("SoundReport", "%1 does not play. %2")).arg(name, driver.reason));
            }
        }
        if (!plays) {
            Add(OfSynth(), Tr(QT_TRANSLATE_NOOP("SoundReport", "No audio system takes the sound.")),
                Tr(QT_TRANSLATE_NOOP(
                    "SoundReport",
                    "Start a sound server (the package pipewire-pulse or pulseaudio), or connect a sound "
                    "card.")));
        }
        Add(Grade::kGood,
            Tr(QT_TRANSLATE_NOOP("SoundReport", "The latency is set to %1 ms.")).arg(ToNumber(findings_.latencyMs)));
    }

    void AddVolume() {
        switch (findings_.volume) {
            case Findings::Volume::kNotAsked:
                break;
            case Findings::Volume::kKnown:
                if (findings_.isMuted) {
                    Add(OfSynth(), Tr(QT_TRANSLATE_NOOP("SoundReport", "The system's sound is switched off.")),
                        Tr(QT_TRANSLATE_NOOP(
                            "SoundReport",
                            "Switch it on in the desktop's volume control, or with: pactl set-sink-mute "
                            "@DEFAULT_SINK@ 0")));
                } else {
                    Add(findings_.volumePercent == 0 ? OfSynth() : Grade::kGood,
                        Tr(QT_TRANSLATE_NOOP("SoundReport", "The system's volume is %1 %."))
                            .arg(findings_.volumePercent),
                        findings_.volumePercent == 0
                            ? Tr(QT_TRANSLATE_NOOP("SoundReport", "Turn it up in the desktop's volume control."))
                            : QString());
                }
                break;
            case Findings::Volume::kNoTool:
                Add(Grade::kHint, Tr(QT_TRANSLATE_NOOP("SoundReport", "The system's volume cannot be asked for.")),
                    Tr(QT_TRANSLATE_NOOP("SoundReport", "The package pulseaudio-utils is missing.")));
                break;
            case Findings::Volume::kNoAnswer:
                Add(Grade::kHint, Tr(QT_TRANSLATE_NOOP("SoundReport", "The system's volume cannot be asked for.")),
                    Tr(QT_TRANSLATE_NOOP("SoundReport", "The sound server does not tell it.")));
                break;
        }
    }

    void AddSequencer() {
        const QString unreachable =
            Tr(QT_TRANSLATE_NOOP("SoundReport", "No MIDI device and no other program can be reached: %1"));
        switch (findings_.sequencer) {
            case Findings::Sequencer::kReachable:
                Add(Grade::kGood,
                    Tr(QT_TRANSLATE_NOOP("SoundReport", "MIDI devices and other programs can be reached.")));
                break;
            case Findings::Sequencer::kMissing:
                Add(Grade::kHint,
                    unreachable.arg(Tr(QT_TRANSLATE_NOOP("SoundReport", "the system's MIDI sequencer is not there."))),
                    Tr(QT_TRANSLATE_NOOP("SoundReport", "Load it with: sudo modprobe snd-seq")));
                break;
            case Findings::Sequencer::kForbidden:
                Add(Grade::kHint,
                    unreachable.arg(
                        Tr(QT_TRANSLATE_NOOP("SoundReport", "you may not use the system's MIDI sequencer."))),
                    Tr(QT_TRANSLATE_NOOP("SoundReport",
                                         "Join the group audio with \"sudo adduser $USER audio\", and log in again.")));
                break;
            case Findings::Sequencer::kFailed:
                Add(Grade::kHint, unreachable.arg(Tr(
                                      QT_TRANSLATE_NOOP("SoundReport", "the system's MIDI sequencer does not open."))));
                break;
        }
    }

    void AddPorts() {
        if (!findings_.outputs.isEmpty()) {
            Add(Grade::kGood,
                Tr(QT_TRANSLATE_NOOP("SoundReport", "Synthesizers: %1.")).arg(findings_.outputs.join(", ")));
        }
        if (findings_.inputs.isEmpty()) {
            Add(Grade::kHint, Tr(QT_TRANSLATE_NOOP("SoundReport", "No MIDI keyboard is connected.")));
        } else {
            Add(Grade::kGood,
                Tr(QT_TRANSLATE_NOOP("SoundReport", "MIDI keyboards: %1.")).arg(findings_.inputs.join(", ")));
        }
    }

    void AddRealtime() {
        if (findings_.hasRealtime) {
            Add(Grade::kGood, Tr(QT_TRANSLATE_NOOP("SoundReport", "The system grants real-time priority.")));
        } else {
            Add(Grade::kHint,
                Tr(QT_TRANSLATE_NOOP(
                    "SoundReport", "The system refuses real-time priority, so notes may come late while it is busy.")),
                Tr(QT_TRANSLATE_NOOP("SoundReport", "Install the package rtkit.")));
        }
    }

    const Findings& findings_;
    QList<Line> lines_;
};

const char* GetMark(Grade grade) {
    switch (grade) {
        case Grade::kGood:
            return "[ok] ";
        case Grade::kHint:
            return "[--] ";
        case Grade::kTrouble:
            break;
    }
    return "[!!] ";
}

}  // namespace

QList<Line> Write(const SoundFindings& findings) {
    return Writer(findings).Write();
}

QString ToText(const QList<Line>& lines) {
    QString text;
    for (const Line& line : lines) {
        text += GetMark(line.grade) + line.text + (line.advice.isEmpty() ? QString() : ' ' + line.advice) + '\n';
    }
    return text;
}

}  // namespace SoundReport
