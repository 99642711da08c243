#include "QtWidgets/piano/QGMPatchMenu.h"

#include "QtWidgets/piano/NoteNamesQt.h"

namespace {
constexpr int kProgramCount = 128;
constexpr int kFamilySize = 8;
}  // namespace

QGMPatchMenu::QGMPatchMenu(int voice, int currentProgram, QWidget* parent) : QMenu(parent), voice_(voice) {
    for (int program = 0; program < kProgramCount; ++program) {
        addProgram(QString::asprintf("%03d ", program + 1) + GMProgramName(program), program, currentProgram);
        if ((program + 1) % kFamilySize == 0) {
            addSeparator();
        }
    }
    addProgram(GMDrumKitName(), kDrumKit, currentProgram);
}

void QGMPatchMenu::addProgram(const QString& label, int program, int currentProgram) {
    QAction* action = addAction(label);
    action->setData(program);
    if (program == currentProgram) {
        action->setCheckable(true);
        action->setChecked(true);
    }
}

std::optional<int> QGMPatchMenu::choose(const QPoint& globalPosition) {
    const QAction* action = exec(globalPosition);
    if (action == nullptr) {
        return std::nullopt;
    }
    bool isNumber = false;
    const int program = action->data().toInt(&isNumber);
    if (!isNumber || program < kDrumKit || program >= kProgramCount) {
        return std::nullopt;
    }
    return program;
}
