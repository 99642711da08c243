// The built program in a window of a virtual X server of its own, playing to the stand-in for PortMidi.
#pragma once

#include <cstdint>
#include <functional>
#include <QByteArray>
#include <QProcess>
#include <QSize>
#include <QString>
#include <QStringList>
#include <string>
#include <vector>

#include "support/FilePath.h"

struct xcb_connection_t;

/// Starts the server and the program, and ends both. All waits have a limit of a minute.
class InstrumentProcess {
public:
    static constexpr int kLimitMs = 60000;

    InstrumentProcess();
    ~InstrumentProcess();

    /// Before Start(): there are no settings, so the card of the computer keys is shown first; else all of
    /// them are at their defaults.
    void MakeFirstStart();
    /// Before Start(): a line of the settings, of those that are not at their defaults.
    void AddSetting(const QByteArray& line) { settings_ += line + '\n'; }
    /// Whether there is Qt's part for Wayland; and a compositor, too.
    static bool HasWaylandPlugin();
    static bool HasCompositor();
    /// Before Start(): the program is a client of a Wayland compositor that fills the display, passes its mouse on, and
    /// its keyboard with these layouts, such as "us,fr", of which LockLayout() makes one the active.
    void UseCompositor(const QString& layouts, const QString& variants = {});
    /// Before Start(): the program is a client of a Wayland compositor with a touch screen and nothing else.
    void UseTouchScreen() { touches_ = true; }
    /// Tells the touch screen what fingers do; its source has the words.
    void Touch(const QString& deed);
    /// In the pixels of the touch screen.
    QSize GetWindowSize() const { return windowSize_; }
    /// True once the program's main window is there and has the focus; says what failed otherwise.
    /// `isOutputOpen` tells of a stand-in that does not log what it is sent.
    bool Start(const QStringList& arguments = {}, const QStringList& environment = {},
               const std::function<bool()>& isOutputOpen = {});
    /// Nobody reads what the program prints. Before Start().
    void BreakOutput();
    /// Opens a file as the desktop's file manager does: starts the program with it, which hands it to the one that runs
    /// and ends. True when it did.
    bool OpenFile(const QString& path) const;
    /// Runs xdotool on the program's display; true when it succeeded.
    bool Xdotool(const QStringList& arguments);
    /// Calls `action` with a connection to the program's display and waits until the server has done it.
    void WithServer(const std::function<void(xcb_connection_t* server)>& action) const;
    /// Makes the keyboard layout of that number, from 0, the active one, as a desktop's switch does.
    void LockLayout(std::uint8_t number);
    /// Presses or releases a key in the active layout, for which xdotool would turn to the first one.
    void MoveKey(std::uint8_t code, bool down);
    /// Runs any program on the program's display and returns what it printed.
    QString RunOnDisplay(const QString& program, const QStringList& arguments, bool* ok = nullptr);
    /// Messages written so far, each as "90 3C 50".
    std::vector<std::string> GetMessages() const;
    /// The same without system, program and controller messages.
    std::vector<std::string> GetNoteMessages() const;
    /// Waits until at least `count` note messages were written.
    bool WaitForNoteMessages(std::size_t count) const;
    /// Waits until a dialog of the program is there and has the focus.
    bool WaitForDialog();
    /// Waits until no dialog of the program is left and gives the main window the focus back, which a window manager
    /// would do.
    bool FocusAlone();
    /// Saves what the display shows as a PNG file.
    bool SavePicture(const QString& path);
    /// Closes the window as a person does and waits for the program's end; its exit code, or -1.
    int Close();
    /// Asks the program to end as the system does, by SIGTERM, and waits for its end; its exit code, or -1.
    int Terminate();
    /// Before Start(): the program is in a session, of a session manager of X11.
    void UseSessionManager() { hasSession_ = true; }
    /// Ends that session, with the program saved before, and waits for the program's end; its exit code, or -1.
    int EndSession() { return TellSession("end\n"); }
    /// The same without a warning.
    int BreakSession() { return TellSession("die\n"); }
    /// Kills the Wayland compositor and waits for the program's end; its exit code, or -1.
    int KillCompositor();
    /// Kills the X server and waits for the program's end; its exit code, or -1.
    int KillServer();
    /// Cuts the program's connection to the X server, as xkill does, and waits for its end; its exit code, or -1.
    int KillClient();
    /// Sends the program a signal.
    void Signal(int number) const;
    /// Before the start: what the program prints is kept in a file instead of being passed on.
    void KeepOutput();
    /// What the program printed so far, where it is kept.
    QString GetOutput() const;
    bool IsRunning();
    qint64 GetProcessId() const { return program_.processId(); }
    /// Waits for the program's end, which it came to by itself; its exit code, or -1.
    int WaitForExitCode();
    QString GetDisplay() const { return display_; }
    QString GetWindow() const { return window_; }
    QString GetDataDir() const { return KivoraTest::FolderPath(dir_); }

private:
    bool StartServer();
    bool StartCompositor();
    bool StartTouchScreen();
    bool StartSessionManager();
    int TellSession(const char* line);
    bool FocusUnderCompositor();
    /// Waits for the program's window, and for the output that it opens when that has been painted.
    bool WaitForWindow(const std::function<bool()>& isOutputOpen);
    /// The window's number on the X display; the compositor's with one.
    bool FindWindow();
    /// What the touch screen has told.
    bool ReadWindowSize();
    bool WriteSettings();
    bool IsOutputOpen() const;

    QByteArray settings_;
    KivoraTest::CTemporaryFolder dir_;
    QProcess server_;
    QProcess compositor_;
    QProcess sessionManager_;
    QString session_;  ///< its address; empty without one
    QProcess program_;
    QString display_;
    QString window_;        ///< with a compositor its own
    QStringList keyboard_;  ///< the compositor's layouts and variants; empty without one
    QSize windowSize_;
    bool touches_ = false;
    bool hasSession_ = false;
    bool keepsOutput_ = false;
    bool startsFirst_ = false;
};
