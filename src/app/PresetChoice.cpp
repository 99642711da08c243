#include "app/PresetChoice.h"

#include <QCoreApplication>

#include "app/ConsoleOutput.h"
#include "engine/CKivora.h"
#include "engine/EngineFront.h"
#include "engine/PresetStore.h"
#include "nk/nk_file_failure.h"
#include "nk/nk_paths.h"

namespace Kivora {

namespace {

QString Tr(const char* text) {
    return QCoreApplication::translate("CommandLine", text);
}

bool NamesFile(const QString& nameOrFile) {
    return nameOrFile.contains('/') ||
           nameOrFile.endsWith('.' + QString::fromWCharArray(PresetStore::kExtension), Qt::CaseInsensitive);
}

}  // namespace

PresetResult LoadChosenPreset(EngineFront& front, const QString& nameOrFile, QString& failure) {
    CKivora& engine = front.GetEngine();
    const NK::CString path(nameOrFile.toStdWString());
    NK::CString name = path;
    NK::CIniFile file;
    bool isRead = false;
    NK::ForgetFileFailure();
    if (NamesFile(nameOrFile)) {
        name = NK::GetFileStem(path);
        isRead = file.Load(path) && file.SelectSection(PresetStore::kSection);
    } else {
        const bool isOwn = engine.PresetExists(name, false);
        if (!isOwn && !engine.PresetExists(name, true)) {
            failure = Tr(QT_TRANSLATE_NOOP("CommandLine", "There is no preset \"%1\".")).arg(nameOrFile);
            return PresetResult::kUnknown;
        }
        isRead = engine.ReadPreset(name, !isOwn, file);
    }
    if (!isRead || !front.ReplaceVoices([&] { return engine.ApplyPreset(name, file); })) {
        failure =
            NK::GetFileFailure().error == 0
                ? Tr(QT_TRANSLATE_NOOP("CommandLine", "%1 is no preset.")).arg(nameOrFile)
                : WithFileFailure(Tr(QT_TRANSLATE_NOOP("CommandLine", "The preset %1 cannot be read")), nameOrFile);
        return PresetResult::kUnreadable;
    }
    return PresetResult::kLoaded;
}

}  // namespace Kivora
