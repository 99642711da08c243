#include "libmidi/synth/Synthesizer.h"

#include <algorithm>
#include <exception>
#include <system_error>

#include "libmidi/synth/SoundFontFile.h"
#include "libmidi/synth/SynthApi.h"
#include "libmidi/synth/SynthOutPort.h"
#include "libmidi/synth/SynthSession.h"
#include "nk/nk_logger.h"
#include "nk/nk_thread_role.h"
#include "nk/nk_translation_mark.h"

namespace LibMidi {

namespace {

constexpr const char* kDriverOrder[] = {"pipewire", "jack", "pulseaudio", "alsa"};
constexpr std::uint32_t kBlockFrames = 64;
constexpr int kLooksBetweenAttempts = 2;

bool Contains(const std::vector<std::string>& list, const std::string& value) {
    return std::find(list.begin(), list.end(), value) != list.end();
}

SynthSettings Clamped(SynthSettings settings) {
    settings.latencyFrames =
        std::clamp(settings.latencyFrames, SynthSettings::kMinLatencyFrames, SynthSettings::kMaxLatencyFrames) /
        kBlockFrames * kBlockFrames;
    // Written so that a gain that is no number becomes 0.
    settings.gain = settings.gain > 0.0 ? std::min(settings.gain, SynthSettings::kMaxGain) : 0.0;
    return settings;
}

SynthEnvironment PreparedEnvironment() {
    PrepareAudioEnvironment();
    return SynthEnvironment::FromProcess();
}

}  // namespace

Synthesizer::Synthesizer() : Synthesizer(SystemSynthApi(), PreparedEnvironment(), Limits()) {
}

Synthesizer::Synthesizer(SynthApi& api, SynthEnvironment environment, Limits limits)
    : api_(api),
      environment_(std::move(environment)),
      limits_(limits),
      installedDrivers_(SynthDevice::ListDrivers(api)) {
}

Synthesizer::~Synthesizer() {
    EndSession(testSession_);
    spare_.reset();
    Close();
}

bool Synthesizer::Open() {
    NK_ASSERT_THREAD_ROLE(gui);
    if (session_ != nullptr) {
        return true;
    }
    EndSession(testSession_);
    if (IsSpareReady()) {
        session_ = std::move(spare_);
        activeDriver_ = spareDriver_;
        SetLastError({});
        return true;
    }
    spare_.reset();
    SynthReason reason;
    session_ = StartSession(reason);
    SetLastError(reason);
    return session_ != nullptr;
}

void Synthesizer::Close() {
    NK_ASSERT_THREAD_ROLE(gui);
    EndSession(session_);
    activeDriver_.clear();
    if (!IsSpareReady()) {
        spare_.reset();
    }
}

void Synthesizer::LetGo() {
    NK_ASSERT_THREAD_ROLE(gui);
    spare_.reset();
    looksToWait_ = 0;
}

DeviceState Synthesizer::LookAtSession() {
    NK_ASSERT_THREAD_ROLE(gui);
    if (session_ != nullptr && !session_->HasFailed()) {
        const auto standstill = GetStandstill();
        if (standstill < limits_.hang) {
            spare_.reset();
            looksToWait_ = 0;
            return standstill < limits_.stall ? DeviceState::kWorks : DeviceState::kStalled;
        }
        SetLastError(SynthReason(KIVORA_TR_NOOP("Synthesizer", "The audio system does not answer.")));
    } else if (session_ != nullptr) {
        SetLastError(session_->GetReason());
    }
    return LookForSpare() ? DeviceState::kBack : DeviceState::kLost;
}

std::chrono::steady_clock::duration Synthesizer::GetStandstill() {
    const auto now = std::chrono::steady_clock::now();
    const std::uint64_t played = session_->GetPlayedFrames();
    if (played != playedFrames_ || played == 0) {
        playedFrames_ = played;
        playedAt_ = now;
    }
    return now - playedAt_;
}

bool Synthesizer::IsSpareReady() const {
    if (spare_ == nullptr) {
        return false;
    }
    const SynthSession::Phase phase = spare_->WaitForDriver(SynthSession::Milliseconds(0));
    return phase == SynthSession::Phase::kLoading || (phase == SynthSession::Phase::kReady && !spare_->HasFailed());
}

bool Synthesizer::LookForSpare() {
    if (IsSpareReady()) {
        return true;
    }
    if (spare_ != nullptr && !spare_->HasFailed()) {
        if (std::chrono::steady_clock::now() - spareBegin_ < limits_.driverStart) {
            return false;
        }
        NoteStuck(spareDriver_, *spare_);
    }
    if (spare_ != nullptr) {
        spare_.reset();
        looksToWait_ = kLooksBetweenAttempts;
    }
    if (looksToWait_ > 0) {
        --looksToWait_;
    } else {
        BeginSpare();
    }
    return false;
}

void Synthesizer::BeginSpare() {
    const std::filesystem::path font = FindFont();
    if (font.empty() || !CheckSoundFont(font).IsEmpty()) {
        return;
    }
    const std::vector<std::string> candidates = GetCandidates();
    const bool isForced = !GetForcedDriver(settings_).empty();
    for (std::size_t count = 0; count < candidates.size(); ++count) {
        const std::string& driver = candidates[nextCandidate_++ % candidates.size()];
        if (!FindObstacle(driver, isForced).IsEmpty()) {
            continue;
        }
        SynthDeviceConfig config = MakeConfig(settings_);
        config.audioDriver = driver;
        try {
            spare_ = std::make_unique<SynthSession>(api_, config);
        } catch (const std::system_error&) {
            return;  // no thread to be had now
        }
        spareDriver_ = driver;
        spareBegin_ = std::chrono::steady_clock::now();
        return;
    }
}

void Synthesizer::NoteStuck(const std::string& driver, const SynthSession& session) {
    std::erase_if(stuck_, [](const StuckThread& thread) { return thread.second.expired(); });
    stuck_.emplace_back(driver, session.GetLife());
}

bool Synthesizer::Write(const MIDIEvent& event) {
    if (session_->Write(event)) {
        return true;
    }
    SetLastError(session_->GetReason());
    return false;
}

NK::CString Synthesizer::GetPortName() const {
    return SynthOutPort::kName;
}

std::vector<NK::CString> Synthesizer::GetAudioDrivers() const {
    std::vector<NK::CString> drivers;
    for (const char* driver : kDriverOrder) {
        if (Contains(installedDrivers_, driver)) {
            drivers.push_back(NK::CString::FromUtf8(driver));
        }
    }
    return drivers;
}

Result Synthesizer::ApplySettings(const SynthSettings& settings) {
    spare_.reset();  // it was begun with the former ones
    const SynthSettings target = Clamped(settings);
    const SynthSettings former = std::exchange(settings_, target);
    const bool isOtherFont = target.soundFont != former.soundFont;
    const std::filesystem::path formerRunFont =
        isOtherFont ? std::exchange(runFont_, std::filesystem::path()) : runFont_;
    SynthReason reason;
    if (isOtherFont && !target.soundFont.IsEmpty()) {
        reason = CheckSoundFont(FindFont());
    }
    if (reason.IsEmpty() && session_ != nullptr && !session_->IsOver()) {
        SynthDeviceConfig config = MakeConfig(target);
        const std::string forced = GetForcedDriver(target);
        config.audioDriver = forced.empty() ? activeDriver_ : forced;
        reason = FindObstacle(config.audioDriver, !forced.empty());
        if (reason.IsEmpty() && session_->Apply(config, limits_.apply, reason)) {
            activeDriver_ = config.audioDriver;
        }
    }
    if (!reason.IsEmpty()) {
        settings_ = former;
        runFont_ = formerRunFont;
    }
    SetLastError(reason);
    return reason.IsEmpty() ? kSuccess : kDeviceError;
}

double Synthesizer::GetLatencyMs(std::uint32_t latencyFrames) const {
    return 1000.0 * latencyFrames / SynthDevice::kSampleRate;
}

NK::CString Synthesizer::GetSoundFontPath() const {
    return NK::CString::FromUtf8(FindFont().native());
}

NK::CString Synthesizer::Test() {
    SynthReason reason;
    if (session_ != nullptr) {
        reason = session_->GetReason();
        if (reason.IsEmpty()) {
            session_->PlayTestNote(false);
        }
    } else {
        EndSession(testSession_);
        testSession_ = StartSession(reason);
        activeDriver_.clear();
        if (testSession_ != nullptr) {
            testSession_->PlayTestNote(true);
        }
    }
    SetLastError(reason);
    return reason.ToText();
}

NK::CString Synthesizer::GetLastError() const {
    const CLockGuard guard(errorLock_);
    return lastError_.ToText();
}

std::filesystem::path Synthesizer::FindFont() const {
    if (!runFont_.empty()) {
        return runFont_;
    }
    return settings_.soundFont.IsEmpty() ? FindSoundFont(environment_)
                                         : std::filesystem::path(settings_.soundFont.ToUtf8());
}

std::string Synthesizer::GetForcedDriver(const SynthSettings& settings) const {
    return environment_.audioDriver.empty() ? settings.audioDriver.ToUtf8() : environment_.audioDriver;
}

SynthDeviceConfig Synthesizer::MakeConfig(const SynthSettings& settings) const {
    return {.soundFont = FindFont().native(),
            .audioDriver = {},
            .audioFile = environment_.audioFile,
            .latencyFrames = settings.latencyFrames,
            .gain = settings.gain,
            .reverb = settings.reverb,
            .chorus = settings.chorus};
}

SynthReason Synthesizer::FindObstacle(const std::string& driver, bool isForced) const {
    if (!Contains(installedDrivers_, driver)) {
        return SynthReason(KIVORA_TR_NOOP("Synthesizer", "FluidSynth has no such audio driver here."));
    }
    if (driver == "file" && environment_.audioFile.empty()) {
        return SynthReason(KIVORA_TR_NOOP("Synthesizer", "KIVORA_AUDIO_FILE names no file to write."));
    }
    if (!isForced && driver == "jack" && !IsJackServerLikely(environment_)) {
        return SynthReason(KIVORA_TR_NOOP("Synthesizer", "No JACK server runs."));
    }
    if (!isForced && driver == "alsa" && !HasSoundDevices(environment_)) {
        return SynthReason(KIVORA_TR_NOOP("Synthesizer", "There is no sound card."));
    }
    return IsStuck(driver) ? SynthReason(KIVORA_TR_NOOP("Synthesizer", "The audio system does not answer."))
                           : SynthReason();
}

std::vector<std::string> Synthesizer::GetCandidates() const {
    if (const std::string forced = GetForcedDriver(settings_); !forced.empty()) {
        return {forced};
    }
    std::vector<std::string> drivers(std::begin(kDriverOrder), std::end(kDriverOrder));
    std::erase_if(drivers, [this](const std::string& driver) { return !Contains(installedDrivers_, driver); });
    return drivers;
}

std::unique_ptr<SynthSession> Synthesizer::StartSession(SynthReason& reason) {
    const std::filesystem::path font = FindFont();
    reason =
        font.empty() ? SynthReason(KIVORA_TR_NOOP("Synthesizer", "No sound font is found.")) : CheckSoundFont(font);
    std::unique_ptr<SynthSession> session;
    if (reason.IsEmpty()) {
        const bool isForced = !GetForcedDriver(settings_).empty();
        SynthReason reasons;
        for (const std::string& driver : GetCandidates()) {
            SynthReason why;
            session = TryDriver(driver, isForced, why);
            if (session != nullptr) {
                break;
            }
            reasons += SynthReason::AsItIs(L"\n" + NK::CString::FromUtf8(driver) + L": ") + why;
        }
        if (session == nullptr) {
            reason = SynthReason(KIVORA_TR_NOOP("Synthesizer", "No sound can be played.")) + reasons;
        }
    }
    if (session == nullptr) {
        NK::Log(L"Software synthesizer: " + reason.ToText());
    }
    return session;
}

std::unique_ptr<SynthSession> Synthesizer::TryDriver(const std::string& driver, bool isForced, SynthReason& reason) {
    reason = FindObstacle(driver, isForced);
    if (!reason.IsEmpty()) {
        return nullptr;
    }
    SynthDeviceConfig config = MakeConfig(settings_);
    config.audioDriver = driver;
    try {
        auto session = std::make_unique<SynthSession>(api_, config);
        SynthSession::Phase phase = session->WaitForDriver(limits_.driverStart);
        if (phase == SynthSession::Phase::kLoading) {
            phase = session->WaitForFont(limits_.fontLoad);
        }
        activeDriver_ = driver;
        if (phase == SynthSession::Phase::kReady || phase == SynthSession::Phase::kLoading) {
            return session;
        }
        if (phase == SynthSession::Phase::kFailed) {
            reason = session->GetReason();
        } else {
            reason = SynthReason(KIVORA_TR_NOOP("Synthesizer", "The audio system does not answer."));
            NoteStuck(driver, *session);
        }
        EndSession(session);
    } catch (const std::exception& failure) {
        reason = SynthReason::AsItIs(NK::CString::FromUtf8(failure.what()));
    }
    activeDriver_.clear();
    return nullptr;
}

void Synthesizer::EndSession(std::unique_ptr<SynthSession>& session) {
    if (session != nullptr) {
        session->End(limits_.close);
        session.reset();
    }
}

bool Synthesizer::IsStuck(const std::string& driver) const {
    return std::any_of(stuck_.begin(), stuck_.end(),
                       [&](const StuckThread& thread) { return thread.first == driver && !thread.second.expired(); });
}

void Synthesizer::SetLastError(const SynthReason& reason) {
    const CLockGuard guard(errorLock_);
    lastError_ = reason;
}

}  // namespace LibMidi
