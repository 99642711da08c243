// What was found of everything that a note passes on its way to the ear. [gui]
#pragma once

#include <QList>
#include <QString>
#include <QStringList>

struct SoundFindings {
    enum class Font { kPlayable, kMissing, kUnplayable };
    enum class Volume {
        kNotAsked,  ///< the sound takes another way
        kKnown,
        kNoTool,   ///< what asks for it is not installed
        kNoAnswer  ///< nobody tells
    };
    enum class Sequencer { kReachable, kMissing, kForbidden, kFailed };

    /// An audio system of the software synthesizer.
    struct Driver {
        QString name;    ///< FluidSynth's
        QString reason;  ///< why it does not play, in words; empty: it has played a test note
    };

    bool hasSynth = true;  ///< whether the program has a software synthesizer at all
    Font font = Font::kMissing;
    QString fontPath;
    QString fontReason;        ///< kUnplayable: in words
    double fontMegabytes = 0;  ///< of a million bytes
    QList<Driver> drivers;     ///< in the order in which they are tried; none without a font
    double latencyMs = 0;

    Volume volume = Volume::kNotAsked;
    bool isMuted = false;
    int volumePercent = 0;

    Sequencer sequencer = Sequencer::kMissing;
    QStringList outputs;
    QStringList inputs;
    QString output;  ///< where the keys go: what was chosen, else the first choice; empty: nowhere
    bool isOutputSynth = false;
    bool isOutputLoopBack = false;  ///< it sounds only where another program listens

    bool hasRealtime = false;

    bool IsOutputThere() const { return outputs.contains(output); }
    bool DoesSynthPlay() const;
    /// Whether the system lets nothing be heard.
    bool IsSilenced() const { return volume == Volume::kKnown && (isMuted || volumePercent == 0); }
    /// Whether a key would sound.
    bool WouldSound() const;
};
