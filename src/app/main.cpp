#include <memory>
#include <optional>
#include <QApplication>
#include <QIcon>
#include <QStyleFactory>

#include "app/Backends.h"
#include "app/CommandLine.h"
#include "app/ConsoleOutput.h"
#include "app/ConsoleRun.h"
#include "app/Demonstration.h"
#include "app/EmergencyEnd.h"
#include "app/EndRequests.h"
#include "app/HeldInput.h"
#include "app/LostCompositor.h"
#include "app/MainWindow.h"
#include "app/PanelPictures.h"
#include "app/RunChoices.h"
#include "app/RunningInstance.h"
#include "app/SoundDoctor.h"
#include "app/WindowDisplay.h"
#include "locale/Locale.h"
#include "nk/desktop/nk_keyboard_layout.h"
#include "nk/desktop/nk_realtime_kit.h"
#include "nk/desktop/nk_session_bus.h"
#include "nk/nk_standard_streams.h"
#include "nk/nk_thread.h"
#include "nk/nk_thread_role.h"
#include "nk/nk_time.h"
#include "ui/InputLanguage.h"
#include "ui/parts/EmbeddedFonts.h"
#include "ui/parts/FailureTexts.h"
#include "ui/parts/InstrumentStyle.h"
#include "ui/parts/PlainTexts.h"
#include "ui/PlacedShortcuts.h"

namespace {

/// For what is decided before there is an application object, which takes the toolkit's own arguments out of them.
QStringList GetAllArguments(int argc, char** argv) {
    QStringList arguments;
    for (int i = 0; i < argc; ++i) {
        arguments << QString::fromLocal8Bit(argv[i]);
    }
    return arguments;
}

/// Otherwise the command line asks for what needs no display, or for nothing that can be done.
bool IsWindowWanted(const Kivora::CommandLine& line) {
    return line.refusal.isEmpty() && line.action == Kivora::CommandLine::Action::kPlay;
}

/// The style that the panel is designed for, or its successor where it is not installed, under the panel's own look.
void SetStyle() {
    QStyle* const style = QStyleFactory::create("Cleanlooks");
    InstrumentStyle::Dress(style != nullptr ? style : QStyleFactory::create("Fusion"));
}

}  // namespace

int main(int argc, char** argv) {
    NK::SecureStandardStreams();
    NK::InstallRealtimeKit();
    const QStringList allArguments = GetAllArguments(argc, argv);
    const Kivora::CommandLine early = Kivora::CommandLine::Parse(allArguments);  // in English
    if (!IsWindowWanted(early) || !Kivora::HasWindowDisplay(allArguments)) {
        return Kivora::RunWithoutWindow(argc, argv);
    }
    const QString display = Kivora::FindWindowDisplay(allArguments);
    if (early.mayHandOver && Kivora::HandToRunningInstance(early.file, display)) {
        return Kivora::kSuccessExit;
    }
    NK_REGISTER_THREAD_ROLE(gui);
    // A key goes before what other programs compute. Qt's thread that reads the keys is started below and inherits it.
    NK::CThread::SetCallersLevel(NK::CThread::kLevelAboveNormal);
    NK::SeedRandom();  // else random arpeggios would be the same in every run
    NK::LeaveOutSilentBuses();
    // The window's menu bar is never shown; the desktop's own would be looked for on the session's bus.
    QCoreApplication::setAttribute(Qt::AA_DontUseNativeMenuBar);
    QApplication application(argc, argv);
    const PlainTexts plainTexts;
    Kivora::SetIdentity();
    QGuiApplication::setDesktopFileName("kivora");
    QApplication::setWindowIcon(QIcon(":/Resources/Kivora.ico"));
    NK::GetKeyboardLanguage();  // connects to the X server, which the first key would have to wait for
    Kivora::RegisterEmbeddedFonts();
    SetStyle();
    const Kivora::LocaleFileState localeFile = Kivora::InitLocale();
    const QString localeFailure = FailureTexts::OfLastFile();
    const Kivora::CommandLine commandLine = Kivora::CommandLine::Parse(QApplication::arguments());
    if (!commandLine.locale.isEmpty()) {
        Kivora::SetLocale(commandLine.locale, false);
    }
    if (!commandLine.refusal.isEmpty()) {
        return Kivora::RefuseArguments(commandLine);
    }
    if (const QString failure =
            commandLine.soundFont.isEmpty() ? QString() : Kivora::ExplainSoundFont(commandLine.soundFont);
        !failure.isEmpty()) {
        Kivora::PrintError(failure);
        return Kivora::kFailureExit;
    }

    Kivora::EndRequests endRequests;
    std::optional<Kivora::Demonstration> demonstration;
    if (!commandLine.demonstrationDir.isEmpty()) {
        demonstration.emplace(commandLine.demonstrationDir);
    }
    // Pictures show the panel as it is designed, whatever the screen.
    const bool forPictures = demonstration || !commandLine.pictureDir.isEmpty();
    const auto synthesizer = Kivora::CreateSynthesizer(commandLine.soundFont);
    const Kivora::SoundDoctor soundDoctor(synthesizer);
    const Kivora::EngineDependencies dependencies = Kivora::CreateEngineDependencies(synthesizer);
    Kivora::MainWindow window(
        [&] { return std::make_unique<Kivora::CKivora>(dependencies); }, Kivora::MainWindow::Ports::kOpenWhenPainted,
        dependencies.synth.get(),
        forPictures ? Kivora::MainWindow::EPanelSize::kAsDesigned : Kivora::MainWindow::EPanelSize::kFitsScreen);
    if (window.GetControls() != nullptr) {
        if (const auto exitCode = Kivora::ApplyChoices(commandLine, *window.GetControls(), window.GetRunPorts())) {
            window.SetQuiet();
            return *exitCode;
        }
    }
    window.SetSoundDoctor([&soundDoctor](const Kivora::CKivora* engine) { return soundDoctor.Look(engine); });
    window.TellAboutLocaleFile(localeFile, localeFailure);
    QObject::connect(&endRequests, &Kivora::EndRequests::SaveWanted, &window, &Kivora::MainWindow::Save);
    const Kivora::EmergencyEnd emergencyEnd([&window] { window.EndAtOnce(); });
    const Kivora::LostCompositor lostCompositor;
    const PlacedShortcuts placedShortcuts(&Kivora::GetInputLayout);
    std::optional<Kivora::HeldInput> heldInput;
    if (!demonstration) {  // which plays with keys that nobody holds
        heldInput.emplace(*window.GetPanel());
        QObject::connect(&window, &Kivora::MainWindow::PanelReplaced, &window,
                         [&] { heldInput.emplace(*window.GetPanel()); });
    }
    std::optional<Kivora::FileReceiver> receiver;
    if (!forPictures) {
        receiver.emplace(display);
        QObject::connect(&*receiver, &Kivora::FileReceiver::FileReceived, &window, [&window](const QString& path) {
            window.ComeToFront();
            window.OpenFile(path);  // whose player stands over the panel
        });
    }
    if (!commandLine.file.isEmpty()) {
        window.OpenFile(commandLine.file);
    }
    window.show();
    if (demonstration) {
        window.OpenPorts();
        window.SetQuiet();
        demonstration->Start(window);
    }
    if (!commandLine.pictureDir.isEmpty()) {
        window.OpenPorts();
        window.SetQuiet();
        const bool saved = Kivora::SavePanelPictures(*window.centralWidget(), commandLine.pictureDir) &&
                           Kivora::SaveSettingsPicture(window.GetControls(), commandLine.pictureDir);
        return saved ? 0 : 1;
    }
    const int exitCode = endRequests.IsEndWanted() ? 0 : QApplication::exec();
    if (endRequests.IsEndWanted()) {
        window.SetQuiet();
    }
    return exitCode;
}
