// Findings about a sound that comes, and about one that does not.
#pragma once

#include "ui/dialogs/SoundFindings.h"

namespace KivoraTest {

inline SoundFindings FindSound() {
    SoundFindings findings;
    findings.font = SoundFindings::Font::kPlayable;
    findings.fontPath = "/usr/share/sounds/sf2/default-GM.sf2";
    findings.fontMegabytes = 148.3;
    findings.drivers = {{"jack", "No JACK server runs."}, {"pulseaudio", ""}, {"alsa", "There is no sound card."}};
    findings.latencyMs = 10.7;
    findings.volume = SoundFindings::Volume::kKnown;
    findings.volumePercent = 80;
    findings.sequencer = SoundFindings::Sequencer::kReachable;
    findings.outputs = QStringList{"Software synthesizer", "USB Piano"};
    findings.inputs = QStringList{"USB Piano"};
    findings.output = "Software synthesizer";
    findings.isOutputSynth = true;
    findings.hasRealtime = true;
    return findings;
}

inline SoundFindings FindNoSound() {
    SoundFindings findings = FindSound();
    findings.drivers[1].reason = "The sound server does not run.";
    findings.volume = SoundFindings::Volume::kNotAsked;
    findings.sequencer = SoundFindings::Sequencer::kMissing;
    findings.outputs = QStringList{"Software synthesizer"};
    findings.inputs.clear();
    findings.hasRealtime = false;
    return findings;
}

}  // namespace KivoraTest
