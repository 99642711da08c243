#include "ui/RecordingTexts.h"

#include <QCoreApplication>

namespace RecordingTexts {

namespace {
constexpr int kMsInSecond = 1000;
constexpr int kSecondsInMinute = 60;
constexpr int kShownMinutes = 100;

QString Text(const char* source) {
    return QCoreApplication::translate("KivoraWidget", source);
}
}  // namespace

QString ReasonToStop(int timeMs, int idleMs) {
    if (idleMs > kLongestIdleMs) {
        return Text(QT_TRANSLATE_NOOP(
            "KivoraWidget",
            "Recording has been automatically stopped because you were not playing anything for too long."));
    }
    if (timeMs > kLongestMs) {
        return Text(QT_TRANSLATE_NOOP("KivoraWidget",
                                      "Recording has been automatically stopped because the recording is too long."));
    }
    return {};
}

QString Elapsed(int timeMs) {
    const int seconds = (timeMs + kMsInSecond / 2) / kMsInSecond;
    return QString("%1:%2")
        .arg(seconds / kSecondsInMinute % kShownMinutes, 2, 10, QChar('0'))
        .arg(seconds % kSecondsInMinute, 2, 10, QChar('0'));
}

QString Limits() {
    return Text(QT_TRANSLATE_NOOP("KivoraWidget",
                                  "Maximal recording time is 60 minutes.\nIf you are not playing for 30 seconds, "
                                  "recording is stopped."));
}

}  // namespace RecordingTexts
