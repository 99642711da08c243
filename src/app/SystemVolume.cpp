#include "app/SystemVolume.h"

#include <algorithm>
#include <QProcess>
#include <QProcessEnvironment>
#include <QRegularExpression>
#include <QStandardPaths>

namespace Kivora {

namespace {

constexpr int kLimitMs = 1000;

/// What the tool says; nothing when it fails or does not answer.
std::optional<QByteArray> Ask(const QString& tool, const char* request) {
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("LC_ALL", "C");  // its words are translated
    process.setProcessEnvironment(environment);
    process.start(tool, {request, "@DEFAULT_SINK@"});
    if (!process.waitForFinished(kLimitMs)) {
        process.kill();
        process.waitForFinished(kLimitMs);
        return std::nullopt;
    }
    if (process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0) {
        return std::nullopt;
    }
    return process.readAllStandardOutput();
}

}  // namespace

std::optional<int> ParseVolume(const QByteArray& words) {
    static const QRegularExpression kPercent("(\\d{1,6})%");
    std::optional<int> loudest;
    auto matches = kPercent.globalMatch(QString::fromUtf8(words));
    while (matches.hasNext()) {
        loudest = std::max(loudest.value_or(0), matches.next().captured(1).toInt());
    }
    return loudest;
}

SystemVolume AskSystemVolume() {
    const QString tool = QStandardPaths::findExecutable("pactl");
    if (tool.isEmpty()) {
        return {.state = SoundFindings::Volume::kNoTool};
    }
    const std::optional<QByteArray> mute = Ask(tool, "get-sink-mute");
    const std::optional<QByteArray> volume = mute ? Ask(tool, "get-sink-volume") : std::nullopt;
    const std::optional<int> percent = volume ? ParseVolume(*volume) : std::nullopt;
    if (!percent) {
        return {};
    }
    return {SoundFindings::Volume::kKnown, mute->contains("yes"), *percent};
}

}  // namespace Kivora
