// For the main function of a test program with an application object of Qt's.
#pragma once

#include <array>
#include <cstdio>
#include <QString>
#include <QtGlobal>

#include "support/FatalLog.h"
#include "support/TestMain.h"

namespace KivoraTest {

/// What Qt says of the platform that tests run on, and of a mark in a typeface that is no glyph: nobody can change it.
inline constexpr std::array kAnnouncedByQt = {"This plugin does not support", "load glyph failed"};

/// Puts Qt's warnings into the fatal log, so that one that the test did not announce fails it. [any]
inline void TakeQtMessage(QtMsgType type, const QMessageLogContext& context, const QString& message) {
    if (type == QtDebugMsg || type == QtInfoMsg || type == QtFatalMsg) {
        std::fprintf(stderr, "%s\n", qPrintable(qFormatLogMessage(type, context, message)));
        return;
    }
    for (const char* const announced : kAnnouncedByQt) {
        if (message.contains(QLatin1String(announced))) {
            return;
        }
    }
    CFatalLog::Instance().Add(L"Qt: " + message.toStdWString());
}

/// Runs the program's tests with an application object; returns the exit code. `prepare` is called before the first
/// test.
template <class Application, class Prepare>
int QtTestMain(int argc, char** argv, const Prepare& prepare) {
    Application application(argc, argv);
    prepare();
    const QtMessageHandler former = qInstallMessageHandler(&TakeQtMessage);
    const int result = KivoraTestMain(argc, argv);
    qInstallMessageHandler(former);
    return result;
}

template <class Application>
int QtTestMain(int argc, char** argv) {
    return QtTestMain<Application>(argc, argv, [] {});
}

}  // namespace KivoraTest
