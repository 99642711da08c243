#include "ui/dialogs/SoundTexts.h"

#include <QCoreApplication>

namespace SoundTexts {

namespace {

QString Tr(const char* text) {
    return QCoreApplication::translate("SoundTexts", text);
}

QString WhatToDo(OutputState state) {
    switch (state) {
        case OutputState::kStalled:
            return Tr(QT_TRANSLATE_NOOP("SoundTexts", "Sound goes on as soon as the audio system does."));
        case OutputState::kLost:
            return Tr(QT_TRANSLATE_NOOP(
                "SoundTexts",
                "As soon as it is back, it plays again by itself. You can also choose another synthesizer "
                "here, or look for the devices again."));
        case OutputState::kMissing:
            return Tr(QT_TRANSLATE_NOOP(
                "SoundTexts", "Connect it and look for the devices again, or choose another synthesizer here."));
        case OutputState::kFailed:
            return Tr(
                QT_TRANSLATE_NOOP("SoundTexts",
                                  "Choose another synthesizer here, or another audio system or sound font for the "
                                  "software synthesizer."));
        default:
            return Tr(QT_TRANSLATE_NOOP("SoundTexts",
                                        "Choose a sound font for the software synthesizer, or connect a MIDI "
                                        "synthesizer and look for the devices again."));
    }
}

QString Lines(const QString& what, const QString& reason, const QString& toDo) {
    return reason.isEmpty() ? what + '\n' + toDo : what + '\n' + reason + '\n' + toDo;
}

}  // namespace

QString PortName(const NK::CString& name) {
    return QCoreApplication::translate("Ports", name.ToUtf8().c_str());
}

QString OutputNotice(OutputState state, const QString& port, bool isRecording) {
    switch (state) {
        case OutputState::kStalled:
            return Tr(QT_TRANSLATE_NOOP("SoundTexts", "No sound now: the audio system does not answer"));
        case OutputState::kLost:
            return (isRecording ? Tr(QT_TRANSLATE_NOOP("SoundTexts",
                                                       "Nothing sounds or is recorded: the connection to %1 was lost"))
                                : Tr(QT_TRANSLATE_NOOP("SoundTexts", "No sound: the connection to %1 was lost")))
                .arg(port);
        case OutputState::kMissing:
            return Tr(QT_TRANSLATE_NOOP("SoundTexts", "No sound: %1 is not connected")).arg(port);
        case OutputState::kFailed:
            return Tr(QT_TRANSLATE_NOOP("SoundTexts", "No sound: no synthesizer could be opened"));
        case OutputState::kNone:
            return Tr(QT_TRANSLATE_NOOP("SoundTexts", "No sound: there is no synthesizer"));
        case OutputState::kNoFont:
            return Tr(QT_TRANSLATE_NOOP("SoundTexts", "No sound: the software synthesizer has no sound font"));
        case OutputState::kHandsOn:
            return Tr(QT_TRANSLATE_NOOP("SoundTexts", "No sound here: %1 hands the notes to other programs")).arg(port);
        default:
            return {};
    }
}

QString OutputExplanation(OutputState state, const QString& port, const QString& reason) {
    const QString notice = OutputNotice(state, port, false);
    return notice.isEmpty() ? QString() : Lines(notice + '.', reason, WhatToDo(state));
}

QString NoEngineNotice(const QString& reason) {
    return Tr(QT_TRANSLATE_NOOP("SoundTexts", "No sound: %1")).arg(reason);
}

QString NoEngineExplanation(const QString& reason) {
    return Lines(NoEngineNotice(reason), {}, WhatToDo(OutputState::kNone));
}

QString InputNotice(const QString& port) {
    return Tr(QT_TRANSLATE_NOOP("SoundTexts", "The MIDI keyboard was disconnected: %1")).arg(port);
}

QString InputExplanation(const QString& port) {
    return InputNotice(port) + ".\n" +
           Tr(QT_TRANSLATE_NOOP(
               "SoundTexts",
               "Connect it again. If it does not play then, look for the devices again; with an external "
               "synthesizer this ends what sounds there."));
}

QString InputReturned(const QString& port) {
    return Tr(QT_TRANSLATE_NOOP("SoundTexts", "The MIDI keyboard is connected again: %1")).arg(port);
}

QString NothingToRecord() {
    return Tr(QT_TRANSLATE_NOOP("SoundTexts", "Not recording: nothing sounds, so nothing would be recorded"));
}

QString NothingToHear() {
    return Tr(QT_TRANSLATE_NOOP("SoundTexts", "Nothing would be heard: no output plays now. The settings tell why."));
}

}  // namespace SoundTexts
