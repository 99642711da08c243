#include "e2e/player/Session.h"
#include "support/FilePath.h"
#include "support/WaitUntil.h"

#include <algorithm>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QStringList>

namespace Player {

namespace {

using KivoraTest::FilePath;
using KivoraTest::FolderPath;
using KivoraTest::WaitUntil;

constexpr int kEscape = 9;
constexpr int kReturn = 36;
constexpr int kLeftButton = 1;
constexpr int kLimitMs = 30000;
/// The longest that a note of an arpeggio lasts, and more.
constexpr int kQuietLimitMs = 8000;
/// After which what sounds may be a latched chord or under a pedal that stays down.
constexpr int kLatchedMs = 2000;
constexpr int kThousandths = 1000;
constexpr int kMiddleC = 60;
/// Where it is on the panel, in thousandths, as that has any size.
constexpr int kPianoKeyX = 405;
constexpr int kPianoKeyY = 960;
constexpr int kComma = 59;
constexpr int kAlt = 64;
constexpr int kLetterL = 46;
constexpr int kLetterQ = 24;
constexpr int kLetterW = 25;

/// How the program comes to its end, as actions number it.
enum EEnd { kByClosing, kBySignal, kByServer };

constexpr const char* kSongName = "song.mid";

/// Two seconds on three channels, with a pedal, a bend and notes that end after it.
constexpr unsigned char kSong[] = {
    'M',  'T',  'h',  'd', 0,    0,    0,    6,    0,  0,    0,    1,   0, 96,  // one track, 96 ticks a beat
    'M',  'T',  'r',  'k', 0,    0,    0,    75,                                //
    0,    0xC0, 5,    0,   0xC1, 32,   0,    0xB0, 64, 127,                     // programs, pedal down
    0,    0x90, 60,   100, 0,    0x91, 48,   100,  0,  0x99, 36,   100,         //
    24,   0xE0, 0,    80,  48,   0x80, 60,   64,   0,  0x91, 52,   80,          // bend
    96,   0xB0, 64,   0,   0,    0x90, 67,   100,                               // pedal up
    0x81, 64,   0x80, 67,  64,   0,    0x81, 48,   64, 0,    0x81, 52,  0, 0,  0x89, 36, 0,  //
    0,    0xE0, 0,    64,  0,    0x90, 72,   90,   48, 0x80, 72,   0,                        //
    0,    0xFF, 0x2F, 0,                                                                     // the end
};

constexpr const char* kLayouts[] = {"us,ru,de,fr", "ru,us,gb,fr", "fr,de,us,ru", "gr,br,us,il"};

/// The lines that the program may not say: all but the ones about the missing sound card.
QStringList FindUnannounced(const QString& output) {
    static const QStringList kAnnounced = {"FluidSynth: ", "Software synthesizer: ", "ALSA lib ", "none: "};
    QStringList lines = output.split('\n', Qt::SkipEmptyParts);
    lines.removeIf([](const QString& line) {
        return std::any_of(kAnnounced.begin(), kAnnounced.end(),
                           [&](const QString& part) { return line.contains(part); });
    });
    return lines;
}

std::string Join(const std::vector<std::string>& names) {
    std::string text;
    for (const std::string& name : names) {
        text += (text.empty() ? "" : "; ") + name;
    }
    return text;
}

}  // namespace

Session::Session() : devices_((dir_ / "devices").native()) {
}

Session::~Session() = default;

bool Session::Start() {
    // The manual is asked for and goes nowhere.
    QFile::link("/bin/true", FilePath(dir_, "xdg-open"));
    QFile song(FilePath(dir_, kSongName));
    if (!song.open(QIODevice::WriteOnly) ||
        song.write(reinterpret_cast<const char*>(kSong), sizeof(kSong)) != sizeof(kSong)) {
        return false;
    }
    song.close();
    instrument_.KeepOutput();
    if (!instrument_.Start(
            {},
            {"KIVORA_STANDIN_DEVICES=" + FilePath(dir_, "devices"), "KIVORA_AUDIO_DRIVER=none",
             "XDG_RUNTIME_DIR=" + FolderPath(dir_), "PATH=" + FolderPath(dir_) + ":" + qEnvironmentVariable("PATH")},
            [this] { return devices_.IsAnyOutputReached(); })) {
        return false;
    }
    client_ = std::make_unique<XClient>(instrument_.GetDisplay().toStdString());
    windows_ = std::make_unique<WindowManager>(*client_, instrument_.GetWindow().toUInt());
    panel_ = client_->GetPlace(windows_->GetPanel());
    Do({EAct::kLayout, {0}});
    Meet();
    return !failure_;
}

void Session::Begin() {
    if (!Start()) {
        Fail(TFailure::EKind::kNoStart, "the program did not start");
    }
}

void Session::Carry(const CActions& actions) {
    for (const TAction& action : actions) {
        if (failure_ || hasEnded_ || windows_->IsGone()) {
            return;
        }
        Do(action);
        ++doneCount_;
    }
}

void Session::Finish() {
    if (!failure_ && !hasEnded_) {
        End(kByClosing);
    }
}

std::optional<TFailure> Session::Play(const CActions& actions) {
    Begin();
    Carry(actions);
    Finish();
    return failure_;
}

TFootprint Session::GetFootprint() const {
    const QString folder = "/proc/" + QString::number(instrument_.GetProcessId());
    TFootprint footprint;
    for (const QFileInfo& descriptor : QDir(folder + "/fd").entryInfoList(QDir::AllEntries | QDir::System)) {
        const QString target = descriptor.symLinkTarget();
        const bool isKept = target.endsWith(".kivtake") || target.endsWith(".cache");
        footprint.descriptors += descriptor.isSymLink() && !isKept ? 1 : 0;
    }
    footprint.threads = QDir(folder + "/task").entryList(QDir::Dirs | QDir::NoDotAndDotDot).size();
    QFile status(folder + "/status");
    if (status.open(QIODevice::ReadOnly)) {
        for (const QByteArray& line : status.readAll().split('\n')) {
            if (line.startsWith("RssAnon:")) {
                footprint.memoryKB = line.mid(8).replace("kB", "").trimmed().toLongLong();
            }
        }
    }
    return footprint;
}

void Session::Do(const TAction& action) {
    const auto& [first, second, third] = action.numbers;
    switch (action.act) {
        case EAct::kKeyDown:
            MoveKey(first, true);
            break;
        case EAct::kKeyUp:
            MoveKey(first, false);
            break;
        case EAct::kMove:
            client_->MovePointer(panel_.x + first, panel_.y + second);
            break;
        case EAct::kMoveOver:
            windows_->Attend();
            MovePointerOver(windows_->GetTop().id, first, second);
            break;
        case EAct::kButtonDown:
            MoveButton(first, true);
            break;
        case EAct::kButtonUp:
            MoveButton(first, false);
            break;
        case EAct::kGroup:
            client_->LockGroup(first);
            break;
        case EAct::kLayout:
            instrument_.RunOnDisplay("setxkbmap", {"-layout", kLayouts[first]});
            break;
        case EAct::kMIDI:
            SendMIDI(action.numbers);
            break;
        case EAct::kOverflow:
            devices_.Overflow();
            break;
        case EAct::kUnplug:
            devices_.Unplug(first);
            devices_.Listen(sounding_);
            if (first == Standin::kInput) {
                played_.clear();
            }
            break;
        case EAct::kPlug:
            devices_.PlugIn(first);
            break;
        case EAct::kFailWrite:
            devices_.FailNextWrite();
            break;
        case EAct::kLeave:
            windows_->Leave();
            break;
        case EAct::kReturn:
            windows_->Return();
            break;
        case EAct::kGrab:
            client_->GrabKeys();
            break;
        case EAct::kUngrab:
            client_->UngrabKeys();
            break;
        case EAct::kSong:
            OpenSong();
            break;
        case EAct::kFile:
            AnswerFileDialog(first != 0);
            break;
        case EAct::kMeet:
            Meet();
            break;
        case EAct::kRounds:
            PassRounds(first);
            break;
        case EAct::kRest:
            Rest();
            break;
        case EAct::kHome:
            GoHome();
            break;
        case EAct::kProve:
            Prove(first);
            break;
        case EAct::kEnd:
            End(first);
            break;
    }
}

bool Session::MayPress() const {
    // Nothing is pressed at random in a dialog that reaches the files of whoever runs the test.
    windows_->Attend();
    return windows_->GetTop().kind != WindowManager::EKind::kFileDialog;
}

void Session::MoveKey(int code, bool down) {
    if (down ? !keys_.contains(code) && MayPress() : keys_.contains(code)) {
        client_->MoveKey(code, down);
        down ? static_cast<void>(keys_.insert(code)) : static_cast<void>(keys_.erase(code));
    }
}

void Session::MovePointerOver(xcb_window_t window, int x, int y) {
    const TPlace place = client_->GetPlace(window);
    client_->MovePointer(place.x + place.width * x / kThousandths, place.y + place.height * y / kThousandths);
}

void Session::MoveButton(int button, bool down) {
    if (down ? !buttons_.contains(button) && MayPress() : buttons_.contains(button)) {
        client_->MoveButton(button, down);
        down ? static_cast<void>(buttons_.insert(button)) : static_cast<void>(buttons_.erase(button));
    }
}

void Session::SendMIDI(const std::array<int, 3>& message) {
    const auto& [status, data1, data2] = message;
    const int kind = status & 0xF0;
    const int channel = status & 0x0F;
    if (kind == 0x90 && data2 > 0) {
        played_.insert({0x80 | channel, data1});
    } else if (kind == 0x80 || kind == 0x90) {
        played_.erase({0x80 | channel, data1});
    } else if (kind == 0xB0 && (data1 == 64 || data1 == 66 || data1 == 69)) {
        played_.insert({status, data1});
    }
    devices_.Play(static_cast<std::uint32_t>(status | data1 << 8 | data2 << 16));
}

void Session::OpenSong() {
    // Nobody hands a file to a program that is about to end; one that has ended would be started anew.
    if (instrument_.IsRunning() && !windows_->IsGone() && !instrument_.OpenFile(FilePath(dir_, kSongName))) {
        Fail(TFailure::EKind::kStuck, "the program takes no file");
    }
}

void Session::AnswerFileDialog(bool accepts) {
    windows_->Attend();
    if (windows_->GetTop().kind != WindowManager::EKind::kFileDialog) {
        return;
    }
    const int key = accepts ? kReturn : kEscape;
    client_->MoveKey(key, true);
    client_->MoveKey(key, false);
}

void Session::LetGo() {
    client_->UngrabKeys();
    for (const int key : keys_) {
        client_->MoveKey(key, false);
    }
    for (const int button : buttons_) {
        client_->MoveButton(button, false);
    }
    for (const auto& [status, number] : played_) {
        devices_.Play(static_cast<std::uint32_t>(status | number << 8));
    }
    keys_.clear();
    buttons_.clear();
    played_.clear();
}

void Session::Meet() {
    if (!windows_->Meet(kLimitMs)) {
        CheckAlive();
        return;
    }
    QElapsedTimer timer;
    timer.start();
    while (!devices_.IsInputRead()) {
        if (timer.hasExpired(kLimitMs)) {
            Fail(TFailure::EKind::kStuck, "the program reads its input no more");
            return;
        }
        windows_->Wait();
    }
}

void Session::PassRounds(int count) {
    const std::uint32_t from = devices_.GetInputRounds();
    for (int met = 0; !failure_ && !windows_->IsGone(); ++met) {
        const auto passed = static_cast<int>(devices_.GetInputRounds() - from);
        // Nothing counts rounds without an input; then it is as often as the window answers.
        if (passed >= count || (met >= count && !devices_.IsReached(Standin::kInput))) {
            return;
        }
        Meet();
    }
}

bool Session::IsQuiet() {
    devices_.Listen(sounding_);
    return sounding_.IsQuiet();
}

void Session::Rest() {
    constexpr int kQuietRounds = 40;  // what was still on its way has been written by then
    LetGo();
    windows_->CloseSongPlayer();
    ++restCount_;
    QElapsedTimer timer;
    timer.start();
    bool isUnlatched = false;
    do {
        Meet();
        if (!isUnlatched && timer.hasExpired(kLatchedMs)) {
            // A song in a player that a dialog keeps from closing may play on.
            const bool wasAlone = windows_->IsPanelAlone() || windows_->HasSongPlayer();
            GoHome();
            if (!wasAlone && IsQuiet()) {
                Fail(TFailure::EKind::kHangs, "something sounded until a dialog was closed");
                return;
            }
            EndLatched();
            isUnlatched = true;
            timer.restart();
        }
        if (IsQuiet()) {
            PassRounds(kQuietRounds);
            if (IsQuiet()) {
                CheckAlive();
                return;
            }
        }
        if (windows_->IsGone()) {
            return;
        }
        windows_->Wait();
    } while (!failure_ && !timer.hasExpired(kQuietLimitMs));
    Fail(TFailure::EKind::kHangs, Join(sounding_.GetNames()) + "\nlast written:\n" + devices_.GetLastWritten(40));
}

/// A latched chord sounds on by its rule, and so does what a pedal of the strip beside the piano holds: by way of a
/// latch that is off, and a strip that is hidden, they end, and both are what they were.
void Session::EndLatched() {
    Do({EAct::kLayout, {0}});
    client_->LockGroup(0);
    windows_->Return();
    Meet();
    for (const int letter : {kLetterL, kLetterL, kLetterW, kLetterW}) {
        MoveKey(kAlt, true);
        MoveKey(letter, true);
        MoveKey(letter, false);
        MoveKey(kAlt, false);
        Meet();
    }
}

void Session::GoHome() {
    constexpr int kTries = 60;
    constexpr int kPoliteTries = 20;
    LetGo();
    windows_->Return();
    Meet();
    for (int tried = 0; !failure_ && !windows_->IsPanelAlone(); ++tried) {
        const WindowManager::TWindow top = windows_->GetTop();
        if (tried == kTries) {
            Fail(TFailure::EKind::kStuck, "a window does not close");
            return;
        }
        if (tried >= kPoliteTries && top.kind != WindowManager::EKind::kPopUp) {
            windows_->Close(top.id);
        } else {
            client_->MoveKey(kEscape, true);
            client_->MoveKey(kEscape, false);
        }
        Meet();
        windows_->Attend();
    }
    Meet();
}

/// As quick hands do, so that what is sent falls together; false where that way leads nowhere.
bool Session::HoldAKey(int way) {
    enum { kByMouse, kByMIDI };
    switch (way) {
        case kByMouse:
            MovePointerOver(windows_->GetPanel(), kPianoKeyX, kPianoKeyY);
            MoveButton(kLeftButton, true);
            return true;
        case kByMIDI:
            SendMIDI({0x90, kMiddleC, 80});
            SendMIDI({0x80, kMiddleC, 0});
            SendMIDI({0x90, kMiddleC, 80});
            return devices_.IsReached(Standin::kInput);
        default:
            // Two keys of one note.
            Do({EAct::kLayout, {0}});
            client_->LockGroup(0);
            MoveKey(kComma, true);
            MoveKey(kComma, false);
            MoveKey(kLetterQ, true);
            return true;
    }
}

void Session::Prove(int way) {
    constexpr int kWrittenByThen = 20;  // in rounds
    const auto isInTheWay = [this] {
        windows_->Attend();
        return !windows_->IsPanelAlone() || !windows_->HasFocus() || !devices_.IsAnyOutputReached();
    };
    LetGo();
    Meet();
    // A key of the panel may mean a note that was held on a keyboard whose plug was pulled; it ends when the program
    // notices.
    if (!WaitUntil([&] { return !devices_.IsInputStale() || isInTheWay(); }, std::chrono::milliseconds(kLimitMs))) {
        Fail(TFailure::EKind::kStuck, "the program does not notice that its input is gone");
    }
    if (isInTheWay() || !IsQuiet() || !HoldAKey(way)) {
        LetGo();
        return;
    }
    PassRounds(kWrittenByThen);
    // An arpeggio may have long steps and short notes, which fall between two looks; what it strikes from now on is of
    // the key that is held.
    devices_.Listen(sounding_);
    const std::size_t strikes = sounding_.GetStrikeCount();
    const auto sounds = [&] { return !IsQuiet() || sounding_.GetStrikeCount() > strikes; };
    if (!WaitUntil([&] { return sounds() || isInTheWay(); }, std::chrono::milliseconds(kQuietLimitMs))) {
        Fail(TFailure::EKind::kSilent,
             "a key is held and does not sound\nlast written:\n" + devices_.GetLastWritten(10));
    }
    LetGo();
}

void Session::CheckAlive() {
    if (!instrument_.IsRunning()) {
        const int code = instrument_.WaitForExitCode();
        if (code != 0) {
            Fail(TFailure::EKind::kEnded,
                 "the program ended with " + std::to_string(code) + "\n" + instrument_.GetOutput().toStdString());
        }
    } else if (!windows_->IsGone() && !windows_->Meet(kLimitMs)) {
        Fail(TFailure::EKind::kStuck, "the window does not answer");
    }
    CheckOutput();
}

void Session::CheckOutput() {
    if (const QStringList lines = FindUnannounced(instrument_.GetOutput()); !lines.isEmpty()) {
        Fail(TFailure::EKind::kPrinted, "the program said: " + lines.join('\n').toStdString());
    }
}

void Session::CloseWindow() {
    GoHome();
    bool asked = false;
    const bool ended = !failure_ && WaitUntil(
                                        [&] {
                                            windows_->Attend();
                                            // What is asked on the way is left; closing may have been refused over it.
                                            if (!windows_->IsPanelAlone()) {
                                                client_->MoveKey(kEscape, true);
                                                client_->MoveKey(kEscape, false);
                                                asked = false;
                                            } else if (!asked) {
                                                windows_->Close(windows_->GetPanel());
                                                asked = true;
                                            }
                                            return !instrument_.IsRunning();
                                        },
                                        std::chrono::milliseconds(kLimitMs));
    if (!ended) {
        Fail(TFailure::EKind::kStuck, "the program does not end");
    }
}

void Session::End(int way) {
    hasEnded_ = true;
    switch (way) {
        case kByClosing:
            CloseWindow();
            break;
        case kBySignal:
            instrument_.Terminate();
            break;
        default:
            instrument_.KillServer();
            break;
    }
    if (failure_) {
        return;
    }
    if (instrument_.IsRunning() &&
        !WaitUntil([this] { return !instrument_.IsRunning(); }, std::chrono::milliseconds(kLimitMs))) {
        Fail(TFailure::EKind::kStuck, "the program does not end");
    } else if (way != kByServer) {
        CheckAlive();
    }
    if (!IsQuiet()) {
        Fail(TFailure::EKind::kHangs,
             "after the end: " + Join(sounding_.GetNames()) + "\nlast written:\n" + devices_.GetLastWritten(40));
    }
}

void Session::Fail(TFailure::EKind kind, const std::string& text) {
    if (failure_) {
        return;
    }
    failure_ = TFailure{kind, doneCount_, text};
    if (client_ != nullptr && QDir().mkpath(KIVORA_PICTURES_DIR)) {
        instrument_.SavePicture(QDir(KIVORA_PICTURES_DIR).filePath("player-failure.png"));
    }
}

}  // namespace Player
