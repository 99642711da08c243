#include "app/SoundDoctor.h"

#include <algorithm>
#include <filesystem>
#include <system_error>
#include <thread>

#include "engine/CKivora.h"
#include "libmidi/PortNames.h"
#include "libmidi/synth/SoundFontFile.h"
#include "libmidi/synth/SynthOutPort.h"
#include "nk/nk_sleep.h"
#include "nk/nk_thread.h"
#include "nk/qt/nk_qt_string.h"

namespace Kivora {

namespace {

using NK::ToQt;
using NK::Platform::SequencerAccess;

constexpr std::uint32_t kTestNoteMs = 700;
constexpr double kMegabyte = 1e6;

QStringList ToQtList(const NK::CStringArray& names) {
    QStringList list;
    for (const NK::CString& name : names) {
        list << ToQt(name);
    }
    return list;
}

SoundFindings::Sequencer ToFinding(SequencerAccess access) {
    switch (access) {
        case SequencerAccess::kGranted:
            return SoundFindings::Sequencer::kReachable;
        case SequencerAccess::kAbsent:
            return SoundFindings::Sequencer::kMissing;
        case SequencerAccess::kForbidden:
            return SoundFindings::Sequencer::kForbidden;
        case SequencerAccess::kFailed:
            break;
    }
    return SoundFindings::Sequencer::kFailed;
}

bool HasRealtime() {
    bool granted = false;
    try {
        std::thread([&granted] { granted = NK::CThread::SetCallersLevel(NK::CThread::kLevelTimeCritical); }).join();
    } catch (const std::system_error&) {
        return false;
    }
    return granted;
}

void Listen() {
    NK::SystemSleeper().Sleep(kTestNoteMs);
}

}  // namespace

SoundDoctor::SoundDoctor(std::shared_ptr<LibMidi::Synthesizer> synthesizer)
    : SoundDoctor(std::move(synthesizer),
                  {AskSystemVolume, [] { return NK::Platform::LookAtSequencer(); }, HasRealtime, Listen}) {
}

SoundDoctor::SoundDoctor(std::shared_ptr<LibMidi::Synthesizer> synthesizer, System system)
    : synthesizer_(std::move(synthesizer)), system_(std::move(system)) {
}

SoundFindings SoundDoctor::Look(const CKivora* engine) const {
    SoundFindings findings;
    if (engine != nullptr) {
        findings.outputs = ToQtList(engine->GetOutputPortNames());
        findings.inputs = ToQtList(engine->GetInputPortNames());
        findings.output = ToQt(engine->GetOutputPortName());
        const int first = findings.output.isEmpty() ? engine->FindDefaultOutputPort() : -1;
        findings.output = first >= 0 ? findings.outputs.value(first) : findings.output;
    }
    findings.isOutputSynth = findings.output == NK::ToQt(LibMidi::SynthOutPort::kName);
    findings.isOutputLoopBack = LibMidi::HandsOn(findings.output.toStdString());
    LookAtSynth(findings);
    LookAtVolume(findings);
    findings.sequencer = ToFinding(system_.lookAtSequencer());
    findings.hasRealtime = system_.hasRealtime();
    return findings;
}

void SoundDoctor::LookAtSynth(SoundFindings& findings) const {
    const std::filesystem::path font(synthesizer_->GetSoundFontPath().ToUtf8());
    findings.latencyMs = synthesizer_->GetLatencyMs(synthesizer_->GetSettings().latencyFrames);
    if (font.empty()) {
        return;
    }
    findings.fontPath = QString::fromStdString(font.native());
    findings.fontReason = ToQt(LibMidi::CheckSoundFont(font).ToText());
    findings.font = findings.fontReason.isEmpty() ? SoundFindings::Font::kPlayable : SoundFindings::Font::kUnplayable;
    if (findings.font == SoundFindings::Font::kUnplayable) {
        return;
    }
    std::error_code ignored;
    findings.fontMegabytes = static_cast<double>(std::filesystem::file_size(font, ignored)) / kMegabyte;
    for (const LibMidi::SynthDriverTrial& trial : synthesizer_->TryDrivers(system_.listen)) {
        findings.drivers << SoundFindings::Driver{QString::fromStdString(trial.driver), ToQt(trial.reason)};
    }
}

void SoundDoctor::LookAtVolume(SoundFindings& findings) const {
    const auto playing = std::find_if(findings.drivers.begin(), findings.drivers.end(),
                                      [](const SoundFindings::Driver& driver) { return driver.reason.isEmpty(); });
    if (playing == findings.drivers.end() || (playing->name != "pulseaudio" && playing->name != "pipewire")) {
        return;
    }
    const SystemVolume volume = system_.askVolume();
    findings.volume = volume.state;
    findings.isMuted = volume.isMuted;
    findings.volumePercent = volume.percent;
}

}  // namespace Kivora
