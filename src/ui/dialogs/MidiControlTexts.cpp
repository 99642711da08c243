#include "ui/dialogs/MidiControlTexts.h"

#include <array>
#include <QCoreApplication>
#include <QStringList>

#include "nk/qt/nk_qt_string.h"

using Kivora::EPanelFunction;
using Kivora::MidiControl;

namespace {

constexpr std::array<const char*, Kivora::kPanelFunctions> kNames = {
    QT_TRANSLATE_NOOP("MidiControlTexts", "Volume of voice 1"),
    QT_TRANSLATE_NOOP("MidiControlTexts", "Volume of voice 2"),
    QT_TRANSLATE_NOOP("MidiControlTexts", "Tempo"),
    QT_TRANSLATE_NOOP("MidiControlTexts", "Next patch of voice 1"),
    QT_TRANSLATE_NOOP("MidiControlTexts", "Previous patch of voice 1"),
    QT_TRANSLATE_NOOP("MidiControlTexts", "Next patch of voice 2"),
    QT_TRANSLATE_NOOP("MidiControlTexts", "Previous patch of voice 2"),
    QT_TRANSLATE_NOOP("MidiControlTexts", "Next preset"),
    QT_TRANSLATE_NOOP("MidiControlTexts", "Previous preset"),
    QT_TRANSLATE_NOOP("MidiControlTexts", "Record and stop"),
    QT_TRANSLATE_NOOP("MidiControlTexts", "Panic"),
    QT_TRANSLATE_NOOP("MidiControlTexts", "Next voice mode"),
    QT_TRANSLATE_NOOP("MidiControlTexts", "Single voice"),
    QT_TRANSLATE_NOOP("MidiControlTexts", "Dual voices"),
    QT_TRANSLATE_NOOP("MidiControlTexts", "Split keyboard"),
    QT_TRANSLATE_NOOP("MidiControlTexts", "Arpeggio on or off"),
    QT_TRANSLATE_NOOP("MidiControlTexts", "Arpeggiator 1 on or off"),
    QT_TRANSLATE_NOOP("MidiControlTexts", "Arpeggiator 2 on or off"),
    QT_TRANSLATE_NOOP("MidiControlTexts", "Latch on or off"),
};

QString Translate(const char* text) {
    return QCoreApplication::translate("MidiControlTexts", text);
}

}  // namespace

QString MidiControlTexts::NameOf(EPanelFunction function) {
    return Translate(kNames[static_cast<std::size_t>(function)]);
}

QString MidiControlTexts::Describe(const MidiControl& control) {
    const int channel = control.channel + 1;
    switch (control.kind) {
        case MidiControl::Kind::kNote:
            return QCoreApplication::translate("MidiControlTexts", "Note %1, channel %2")
                .arg(control.number)
                .arg(channel);
        case MidiControl::Kind::kProgram:
            return QCoreApplication::translate("MidiControlTexts", "Program %1, channel %2")
                .arg(control.number)
                .arg(channel);
        case MidiControl::Kind::kController:
            break;
    }
    return QCoreApplication::translate("MidiControlTexts", "Controller %1, channel %2")
        .arg(control.number)
        .arg(channel);
}

QString MidiControlTexts::Describe(const NK::CString& device, const MidiControl& control) {
    return NK::ToQt(device) + ": " + Describe(control);
}

QString MidiControlTexts::DescribeBindings(const Kivora::MidiBindings& bindings, EPanelFunction function) {
    QStringList texts;
    for (const Kivora::MidiBinding& binding : bindings.GetAll()) {
        if (binding.function == function) {
            texts << Describe(binding.device, binding.control);
        }
    }
    return texts.join("; ");
}
