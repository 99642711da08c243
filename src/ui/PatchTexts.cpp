#include "ui/PatchTexts.h"

#include <algorithm>
#include <array>
#include <memory>
#include <QCoreApplication>
#include <QTranslator>

#include "locale/Locale.h"
#include "midi/GMNames.h"
#include "midi/MIDIPrograms.h"
#include "nk/nk_exception.h"
#include "QtWidgets/piano/NoteNamesQt.h"

namespace PatchTexts {

namespace {

constexpr const char* kFamilyContext = "GM family";
constexpr const char* kProgramContext = "GM";
constexpr int kProgramsInFamily = 8;
constexpr int kHighestProgram = 127;

// General MIDI level 1 sound set, instrument families.
constexpr std::array<const char*, 16> kFamilies = {
    QT_TRANSLATE_NOOP("GM family", "Piano"),         QT_TRANSLATE_NOOP("GM family", "Chromatic Percussion"),
    QT_TRANSLATE_NOOP("GM family", "Organ"),         QT_TRANSLATE_NOOP("GM family", "Guitar"),
    QT_TRANSLATE_NOOP("GM family", "Bass"),          QT_TRANSLATE_NOOP("GM family", "Strings"),
    QT_TRANSLATE_NOOP("GM family", "Ensemble"),      QT_TRANSLATE_NOOP("GM family", "Brass"),
    QT_TRANSLATE_NOOP("GM family", "Reed"),          QT_TRANSLATE_NOOP("GM family", "Pipe"),
    QT_TRANSLATE_NOOP("GM family", "Synth Lead"),    QT_TRANSLATE_NOOP("GM family", "Synth Pad"),
    QT_TRANSLATE_NOOP("GM family", "Synth Effects"), QT_TRANSLATE_NOOP("GM family", "Ethnic"),
    QT_TRANSLATE_NOOP("GM family", "Percussive"),    QT_TRANSLATE_NOOP("GM family", "Sound Effects"),
};

constexpr const char* kPercussions = QT_TRANSLATE_NOOP("GM family", "Percussions");

QString FamilyText(const char* source, bool translated) {
    return translated ? QCoreApplication::translate(kFamilyContext, source) : QString::fromLatin1(source);
}

}  // namespace

QString Label(int program) {
    if (program >= 0) {
        return QString::number(program + 1);
    }
    switch (program) {
        case NK::MIDI::kDrumKit:
            return QStringLiteral("DK");
        case kNoSecondVoice:
            return {};
        default:
            return QStringLiteral("Err");
    }
}

Name NameOf(int program, bool translated) {
    if (program > kHighestProgram) {
        throw NK::CException(L"Invalid MIDI patch number.");
    }
    if (program < 0) {
        return {FamilyText(kPercussions, translated),
                translated ? GMDrumKitName() : QString::fromLatin1(NK::MIDI::GetDrumKitText())};
    }
    return {FamilyText(kFamilies.at(static_cast<std::size_t>(program / kProgramsInFamily)), translated),
            translated ? GMProgramName(program) : QString::fromLatin1(NK::MIDI::GetGMProgramText(program))};
}

QStringList Families(bool translated) {
    QStringList names;
    for (const char* family : kFamilies) {
        names << FamilyText(family, translated);
    }
    return names;
}

namespace {

std::vector<QString> CollectSearchTexts() {
    std::vector<QString> texts;
    const auto add = [&texts](std::size_t place, const QString& text) {
        texts.resize(std::max(texts.size(), place + 1));
        texts[place] += text + '\n';
    };
    constexpr std::size_t kKitPlace = kHighestProgram + 1;
    for (const char* code : Kivora::kSupportedLocales) {
        const std::unique_ptr<QTranslator> catalogue = Kivora::LoadCatalogue(code);
        const auto translated = [&](const char* context, const char* source) {
            const QString text = catalogue ? catalogue->translate(context, source) : QString();
            return text.isEmpty() ? QString::fromLatin1(source) : text;  // English is the source
        };
        for (int program = 0; program <= kHighestProgram; ++program) {
            const auto place = static_cast<std::size_t>(program);
            add(place, translated(kProgramContext, NK::MIDI::GetGMProgramText(program)));
            add(place, translated(kFamilyContext, kFamilies.at(place / kProgramsInFamily)));
        }
        add(kKitPlace, translated(kProgramContext, NK::MIDI::GetDrumKitText()));
        add(kKitPlace, translated(kFamilyContext, kPercussions));
    }
    return texts;
}

}  // namespace

const std::vector<QString>& SearchTexts() {
    static const std::vector<QString> texts = CollectSearchTexts();
    return texts;
}

Name ErrorName() {
    return {QCoreApplication::translate("KivoraWidget", "Error"),
            QCoreApplication::translate("KivoraWidget", "Error: pointer to the engine is NULL")};
}

}  // namespace PatchTexts
