#include "e2e/InstrumentProcess.h"

#include <signal.h>
#include <unistd.h>
#include <xcb/xcb.h>
#include <xcb/xtest.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iostream>
#include <memory>
#include <QDir>
#include <QFile>
#include <QImage>
#include <QLibraryInfo>
#include <QProcessEnvironment>
#include <QStandardPaths>

#include "nk/desktop/nk_xcb_xkb.h"
#include "support/FilePath.h"
#include "support/WaitUntil.h"

using KivoraTest::FilePath;
using KivoraTest::FolderPath;
using KivoraTest::WaitUntil;

InstrumentProcess::InstrumentProcess() = default;

InstrumentProcess::~InstrumentProcess() {
    for (QProcess* process : {&program_, &sessionManager_, &compositor_, &server_}) {
        if (process->state() != QProcess::NotRunning) {
            process->terminate();
            if (!process->waitForFinished(kLimitMs)) {
                process->kill();
                process->waitForFinished(kLimitMs);
            }
        }
    }
}

bool InstrumentProcess::StartServer() {
    server_.setProcessChannelMode(QProcess::SeparateChannels);
    server_.setStandardErrorFile(QProcess::nullDevice());
    server_.start("Xvfb", {"-displayfd", "1", "-screen", "0", "1366x768x24", "-nolisten", "tcp", "-noreset"});
    if (!server_.waitForStarted(kLimitMs)) {
        std::cerr << "Xvfb did not start: " << server_.errorString().toStdString() << "\n";
        return false;
    }
    QByteArray number;
    WaitUntil([&] {
        server_.waitForReadyRead(10);
        number += server_.readAllStandardOutput();
        return number.endsWith('\n') || server_.state() == QProcess::NotRunning;
    });
    display_ = ":" + QString::fromLatin1(number.trimmed());
    return number.endsWith('\n');
}

bool InstrumentProcess::HasCompositor() {
    return !QStandardPaths::findExecutable("weston").isEmpty() && HasWaylandPlugin();
}

bool InstrumentProcess::HasWaylandPlugin() {
    return !QDir(QLibraryInfo::path(QLibraryInfo::PluginsPath) + "/platforms").entryList({"*wayland*"}).isEmpty();
}

void InstrumentProcess::UseCompositor(const QString& layouts, const QString& variants) {
    keyboard_ = {layouts, variants};
}

bool InstrumentProcess::StartCompositor() {
    bool ok = false;
    RunOnDisplay("setxkbmap", {"-layout", keyboard_[0], "-variant", keyboard_[1]}, &ok);
    // Keys repeat so soon that a test need not wait for it.
    QFile settings(FilePath(dir_, "weston.ini"));
    ok = ok && settings.open(QIODevice::WriteOnly) &&
         settings.write("[core]\nidle-time=0\n[keyboard]\nrepeat-delay=20\nrepeat-rate=100\n") > 0;
    settings.close();
    if (!ok) {
        std::cerr << "the compositor's keyboard cannot be set\n";
        return false;
    }
    QProcessEnvironment variables = QProcessEnvironment::systemEnvironment();
    variables.remove("WAYLAND_DISPLAY");
    variables.insert("XDG_RUNTIME_DIR", FolderPath(dir_));
    variables.insert("DISPLAY", display_);
    compositor_.setProcessEnvironment(variables);
    compositor_.setStandardErrorFile(QProcess::nullDevice());
    compositor_.setStandardOutputFile(QProcess::nullDevice());
    compositor_.start("weston", {"--backend=x11-backend.so", "--shell=kiosk-shell.so", "--use-pixman", "--width=1366",
                                 "--height=768", "--socket=kivora-test", "--config=" + FilePath(dir_, "weston.ini")});
    if (!WaitUntil([this] { return QFile::exists(FilePath(dir_, "kivora-test")); })) {
        std::cerr << "the compositor did not start\n";
        return false;
    }
    return true;
}

bool InstrumentProcess::StartTouchScreen() {
    QProcessEnvironment variables = QProcessEnvironment::systemEnvironment();
    variables.insert("XDG_RUNTIME_DIR", FolderPath(dir_));
    compositor_.setProcessEnvironment(variables);
    compositor_.setStandardErrorFile(QProcess::nullDevice());
    compositor_.start(KIVORA_TOUCH_SCREEN, {"kivora-test"});
    if (!WaitUntil([this] { return QFile::exists(FilePath(dir_, "kivora-test")); })) {
        std::cerr << "the touch screen did not start\n";
        return false;
    }
    return true;
}

bool InstrumentProcess::StartSessionManager() {
    sessionManager_.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    sessionManager_.start(KIVORA_SESSION_MANAGER, {});
    if (!WaitUntil([this] {
            sessionManager_.waitForReadyRead(10);
            return sessionManager_.canReadLine() || sessionManager_.state() == QProcess::NotRunning;
        }) ||
        !sessionManager_.canReadLine()) {
        std::cerr << "the session manager did not start\n";
        return false;
    }
    session_ = QString::fromLocal8Bit(sessionManager_.readLine().trimmed());
    return true;
}

int InstrumentProcess::TellSession(const char* line) {
    sessionManager_.write(line);
    sessionManager_.waitForBytesWritten(kLimitMs);
    return WaitForExitCode();
}

void InstrumentProcess::Touch(const QString& deed) {
    compositor_.write(deed.toLatin1() + '\n');
    compositor_.waitForBytesWritten(kLimitMs);
}

bool InstrumentProcess::ReadWindowSize() {
    compositor_.waitForReadyRead(10);
    while (compositor_.canReadLine()) {
        const QList<QByteArray> words = compositor_.readLine().trimmed().split(' ');
        windowSize_ = QSize(words.value(1).toInt(), words.value(2).toInt());
    }
    return !windowSize_.isEmpty();
}

bool InstrumentProcess::FindWindow() {
    bool ok = false;
    // The compositor's has no name of its own, and is the last one where the root is counted.
    const bool isOwn = keyboard_.isEmpty();
    const QString found =
        RunOnDisplay("xdotool", {"search", "--onlyvisible", "--name", isOwn ? "^Kivora LX$" : ".*"}, &ok);
    window_ = isOwn ? found.section('\n', 0, 0).trimmed() : found.trimmed().section('\n', -1);
    return ok && !window_.isEmpty();
}

bool InstrumentProcess::WaitForWindow(const std::function<bool()>& isOutputOpen) {
    if (!WaitUntil([&] { return touches_ ? ReadWindowSize() : FindWindow(); })) {
        std::cerr << "the program's window did not appear\n";
        return false;
    }
    if (!WaitUntil([&] { return isOutputOpen ? isOutputOpen() : IsOutputOpen(); })) {
        std::cerr << "the program opened no output\n";
        return false;
    }
    return true;
}

bool InstrumentProcess::FocusUnderCompositor() {
    // The program gets the keyboard when the compositor has it, which no query tells: a key that plays does, and
    // another one that all messages of the former are out.
    constexpr std::uint8_t kScanX = 53;
    constexpr std::uint8_t kScanC = 54;
    const auto ended = [this](const char* note) {
        const std::vector<std::string> messages = GetNoteMessages();
        return std::any_of(messages.begin(), messages.end(), [&](const auto& text) { return text.starts_with(note); });
    };
    const auto play = [this](std::uint8_t code) {
        MoveKey(code, true);
        MoveKey(code, false);
    };
    if (!WaitUntil([&] {
            Xdotool({"windowfocus", window_, "mousemove", "640", "20", "click", "1"});
            play(kScanX);
            return ended("80 3E");
        })) {
        std::cerr << "the program does not get the keyboard\n";
        return false;
    }
    play(kScanC);
    return WaitUntil([&] { return ended("80 40"); });
}

bool InstrumentProcess::WriteSettings() {
    // An arpeggiator without settings of its own is bypassed.
    const QByteArray settings =
        "[Kivora]\n" + settings_ + "[Kivora_Arpeggiator0]\nBypass=0\n[Kivora_Arpeggiator1]\nBypass=0\n";
    const QDir folder(FilePath(dir_, "data/Brennholt/Kivora"));
    QFile file(folder.filePath("Kivora.ini"));
    return file.exists() || (folder.mkpath(".") && file.open(QIODevice::WriteOnly) && file.write(settings) > 0);
}

void InstrumentProcess::MakeFirstStart() {
    startsFirst_ = true;
}

bool InstrumentProcess::IsOutputOpen() const {
    // The last that is written then is the third voice's program.
    const std::vector<std::string> messages = GetMessages();
    return std::any_of(messages.begin(), messages.end(), [](const auto& text) { return text.starts_with("C2 "); });
}

bool InstrumentProcess::Start(const QStringList& arguments, const QStringList& environment,
                              const std::function<bool()>& isOutputOpen) {
    const bool isOnWayland = touches_ || !keyboard_.isEmpty();
    if (!(touches_ ? StartTouchScreen() : StartServer()) || (!keyboard_.isEmpty() && !StartCompositor()) ||
        (hasSession_ && !StartSessionManager())) {
        return false;
    }
    QProcessEnvironment variables = QProcessEnvironment::systemEnvironment();
    for (const char* unwanted : {"WAYLAND_DISPLAY", "QT_QPA_PLATFORM", "PULSE_SERVER", "SESSION_MANAGER"}) {
        variables.remove(unwanted);
    }
    if (!session_.isEmpty()) {
        variables.insert("SESSION_MANAGER", session_);
    }
    if (!startsFirst_ && !WriteSettings()) {
        std::cerr << "the settings cannot be written\n";
        return false;
    }
    // Without an address libdbus starts a bus that outlives the program.
    variables.insert("DBUS_SESSION_BUS_ADDRESS", "disabled:");
    variables.insert("DISPLAY", display_);
    variables.insert("XDG_DATA_HOME", FilePath(dir_, "data"));
    variables.insert("HOME", FolderPath(dir_));
    variables.insert("LANG", "C.UTF-8");
    variables.insert("LD_LIBRARY_PATH", KIVORA_STANDIN_DIR);
    variables.insert("KIVORA_MIDI", "portmidi");  // the stand-in, on a machine with a sequencer too
    variables.insert("KIVORA_STANDIN_LOG", FilePath(dir_, "midi.log"));
    if (isOnWayland) {
        variables.remove("DISPLAY");
        variables.insert("XDG_RUNTIME_DIR", FolderPath(dir_));
        variables.insert("WAYLAND_DISPLAY", "kivora-test");
        variables.insert("QT_QPA_PLATFORM", "wayland");
        variables.insert("QT_WAYLAND_DISABLE_WINDOWDECORATION", "1");
        // The toolkit keeps its proxies until the process ends, which a checker of leaks knows by whole stacks only.
        variables.insert("ASAN_OPTIONS", variables.value("ASAN_OPTIONS") + ":fast_unwind_on_malloc=0");
    }
    for (const QString& variable : environment) {
        variables.insert(variable.section('=', 0, 0), variable.section('=', 1));
    }
    program_.setProcessEnvironment(variables);
    if (keepsOutput_) {
        program_.setProcessChannelMode(QProcess::MergedChannels);
        program_.setStandardOutputFile(FilePath(dir_, "output"));
    } else {
        program_.setProcessChannelMode(QProcess::ForwardedChannels);
    }
    program_.start(KIVORA_PROGRAM, arguments);
    if (!program_.waitForStarted(kLimitMs)) {
        std::cerr << "the program did not start: " << program_.errorString().toStdString() << "\n";
        return false;
    }
    if (!WaitForWindow(isOutputOpen)) {
        return false;
    }
    if (touches_) {
        return true;
    }
    if (!keyboard_.isEmpty()) {
        return FocusUnderCompositor();
    }
    return WaitUntil([&] {
        Xdotool({"windowfocus", window_});
        return RunOnDisplay("xdotool", {"getwindowfocus"}).trimmed() == window_;
    });
}

bool InstrumentProcess::OpenFile(const QString& path) const {
    QProcess opener;
    opener.setProcessEnvironment(program_.processEnvironment());
    opener.setProcessChannelMode(QProcess::ForwardedChannels);
    opener.start(KIVORA_PROGRAM, {path});
    if (!opener.waitForFinished(kLimitMs)) {
        opener.kill();
        opener.waitForFinished(kLimitMs);
        return false;
    }
    return opener.exitStatus() == QProcess::NormalExit && opener.exitCode() == 0;
}

void InstrumentProcess::BreakOutput() {
    program_.setChildProcessModifier([] {
        int ends[2] = {-1, -1};
        if (pipe(ends) == 0) {
            dup2(ends[1], STDOUT_FILENO);
            dup2(ends[1], STDERR_FILENO);
            close(ends[0]);
            close(ends[1]);
        }
        signal(SIGPIPE, SIG_DFL);
    });
}

QString InstrumentProcess::RunOnDisplay(const QString& program, const QStringList& arguments, bool* ok) {
    QProcess process;
    QProcessEnvironment variables = QProcessEnvironment::systemEnvironment();
    variables.insert("DISPLAY", display_);
    process.setProcessEnvironment(variables);
    process.start(program, arguments);
    const bool finished = process.waitForFinished(kLimitMs);
    if (ok != nullptr) {
        *ok = finished && process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0;
    }
    return QString::fromUtf8(process.readAllStandardOutput());
}

bool InstrumentProcess::Xdotool(const QStringList& arguments) {
    bool ok = false;
    RunOnDisplay("xdotool", arguments, &ok);
    return ok;
}

void InstrumentProcess::WithServer(const std::function<void(xcb_connection_t* server)>& action) const {
    xcb_connection_t* server = xcb_connect(display_.toLatin1().constData(), nullptr);
    action(server);
    std::free(xcb_get_input_focus_reply(server, xcb_get_input_focus(server), nullptr));
    xcb_disconnect(server);
}

void InstrumentProcess::LockLayout(std::uint8_t number) {
    WithServer([&](xcb_connection_t* server) {
        std::free(xcb_xkb_use_extension_reply(server, xcb_xkb_use_extension(server, 1, 0), nullptr));
        xcb_xkb_latch_lock_state(server, XCB_XKB_ID_USE_CORE_KBD, 0, 0, 1, number, 0, 0, 0);
    });
}

void InstrumentProcess::MoveKey(std::uint8_t code, bool down) {
    WithServer([&](xcb_connection_t* server) {
        xcb_test_fake_input(server, down ? XCB_KEY_PRESS : XCB_KEY_RELEASE, code, XCB_CURRENT_TIME, XCB_NONE, 0, 0, 0);
    });
}

std::vector<std::string> InstrumentProcess::GetNoteMessages() const {
    std::vector<std::string> messages = GetMessages();
    std::erase_if(messages, [](const std::string& line) { return line[0] != '8' && line[0] != '9' && line[0] != 'A'; });
    return messages;
}

std::vector<std::string> InstrumentProcess::GetMessages() const {
    std::vector<std::string> messages;
    std::ifstream log(dir_ / "midi.log");
    for (std::string line; std::getline(log, line);) {
        if (line.size() >= 8) {
            messages.push_back(line.substr(0, 8));
        }
    }
    return messages;
}

bool InstrumentProcess::WaitForNoteMessages(std::size_t count) const {
    return WaitUntil([&] { return GetNoteMessages().size() >= count; });
}

bool InstrumentProcess::WaitForDialog() {
    return WaitUntil([&] {
        const QString focused = RunOnDisplay("xdotool", {"getwindowfocus"}).trimmed();
        return focused != window_ &&
               RunOnDisplay("xdotool", {"search", "--onlyvisible", "--name", "."}).split('\n').contains(focused);
    });
}

bool InstrumentProcess::FocusAlone() {
    QStringList windows;
    const auto isAlone = [&] {
        windows = RunOnDisplay("xdotool", {"search", "--onlyvisible", "--name", "."}).split('\n', Qt::SkipEmptyParts);
        return windows.size() == 1;
    };
    if (WaitUntil([&] {
            return isAlone() && Xdotool({"windowfocus", window_}) &&
                   RunOnDisplay("xdotool", {"getwindowfocus"}).trimmed() == window_;
        })) {
        return true;
    }
    std::cerr << "not alone: the panel is " << window_.toStdString() << ", the focus is at "
              << RunOnDisplay("xdotool", {"getwindowfocus"}).trimmed().toStdString() << ", visible are\n";
    for (const QString& window : windows) {
        std::cerr << window.toStdString() << " "
                  << RunOnDisplay("xdotool", {"getwindowname", window, "getwindowgeometry", window}).toStdString();
    }
    return false;
}

bool InstrumentProcess::SavePicture(const QString& path) {
    const std::unique_ptr<xcb_connection_t, decltype(&xcb_disconnect)> server(
        xcb_connect(display_.toLatin1().constData(), nullptr), &xcb_disconnect);
    const xcb_screen_t* screen = xcb_setup_roots_iterator(xcb_get_setup(server.get())).data;
    if (screen == nullptr) {
        return false;
    }
    const auto cookie = xcb_get_image(server.get(), XCB_IMAGE_FORMAT_Z_PIXMAP, screen->root, 0, 0,
                                      screen->width_in_pixels, screen->height_in_pixels, ~0U);
    const std::unique_ptr<xcb_get_image_reply_t, decltype(&std::free)> reply(
        xcb_get_image_reply(server.get(), cookie, nullptr), &std::free);
    if (!reply) {
        return false;
    }
    const QImage picture(xcb_get_image_data(reply.get()), screen->width_in_pixels, screen->height_in_pixels,
                         QImage::Format_RGB32);
    return picture.save(path);
}

void InstrumentProcess::KeepOutput() {
    keepsOutput_ = true;
}

QString InstrumentProcess::GetOutput() const {
    QFile file(FilePath(dir_, "output"));
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

bool InstrumentProcess::IsRunning() {
    return program_.state() != QProcess::NotRunning && !program_.waitForFinished(0);
}

int InstrumentProcess::Close() {
    // There is no window manager that would ask the window to close, so its message is sent from here (ICCCM, 4.2.8.1).
    xcb_connection_t* server = xcb_connect(display_.toLatin1().constData(), nullptr);
    const auto atom = [&](const char* name) {
        const auto cookie = xcb_intern_atom(server, 0, static_cast<std::uint16_t>(std::strlen(name)), name);
        const std::unique_ptr<xcb_intern_atom_reply_t, decltype(&std::free)> reply(
            xcb_intern_atom_reply(server, cookie, nullptr), &std::free);
        return reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
    };
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = window_.toUInt();
    message.type = atom("WM_PROTOCOLS");
    message.data.data32[0] = atom("WM_DELETE_WINDOW");
    xcb_send_event(server, 0, message.window, XCB_EVENT_MASK_NO_EVENT, reinterpret_cast<const char*>(&message));
    xcb_flush(server);
    const int exitCode = WaitForExitCode();
    xcb_disconnect(server);
    return exitCode;
}

int InstrumentProcess::Terminate() {
    program_.terminate();
    return WaitForExitCode();
}

int InstrumentProcess::KillCompositor() {
    compositor_.kill();
    return WaitForExitCode();
}

int InstrumentProcess::KillServer() {
    server_.kill();
    return WaitForExitCode();
}

int InstrumentProcess::KillClient() {
    WithServer([&](xcb_connection_t* server) { xcb_kill_client(server, window_.toUInt()); });
    return WaitForExitCode();
}

void InstrumentProcess::Signal(int number) const {
    ::kill(static_cast<pid_t>(program_.processId()), number);
}

int InstrumentProcess::WaitForExitCode() {
    const bool finished = program_.state() == QProcess::NotRunning || program_.waitForFinished(kLimitMs);
    return finished && program_.exitStatus() == QProcess::NormalExit ? program_.exitCode() : -1;
}
