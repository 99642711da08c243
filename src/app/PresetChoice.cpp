#include "app/PresetChoice.h"

#include <QCoreApplication>
#include <QFileInfo>

#include "app/ConsoleOutput.h"
#include "engine/CKivora.h"
#include "engine/EngineControls.h"
#include "engine/files/PresetStore.h"
#include "nk/nk_file_failure.h"
#include "nk/nk_paths.h"
#include "nk/qt/nk_qt_string.h"

namespace Kivora {

namespace {

QString Tr(const char* text) {
    return QCoreApplication::translate("CommandLine", text);
}

bool NamesFile(const QString& nameOrFile) {
    return nameOrFile.contains('/') ||
           nameOrFile.endsWith('.' + NK::ToQt(PresetStore::kExtension), Qt::CaseInsensitive);
}

bool IsIn(const NK::CString& folder, const QString& path) {
    const QString its = QFileInfo(path).canonicalPath();
    return !its.isEmpty() && its == QFileInfo(NK::ToQt(folder)).canonicalFilePath();
}

/// `told` is how the user knows the preset.
PresetResult Apply(EngineControls& controls, const NK::CString& name, bool isRead, NK::CIniFile& file,
                   const QString& told, QString& failure) {
    if (isRead && controls.ApplyPreset(name, file)) {
        return PresetResult::kLoaded;
    }
    failure = NK::GetFileFailure().error == 0
                  ? Tr(QT_TRANSLATE_NOOP("CommandLine", "%1 is no preset.")).arg(told)
                  : WithFileFailure(Tr(QT_TRANSLATE_NOOP("CommandLine", "The preset %1 cannot be read")), told);
    return PresetResult::kUnreadable;
}

}  // namespace

PresetResult LoadPresetFile(EngineControls& controls, const QString& path, QString& failure) {
    const NK::CString name = NK::FromQt(path);
    NK::CIniFile file;
    NK::ForgetFileFailure();
    const bool isRead = file.Load(name) && file.SelectSection(PresetStore::kSection);
    const PresetResult result = Apply(controls, NK::GetFileStem(name), isRead, file, path, failure);
    for (const bool factory : {false, true}) {
        if (result == PresetResult::kLoaded && IsIn(controls.GetEngine().GetPresetsDir(factory), path)) {
            controls.NotePreset(NK::GetFileStem(name), factory);
        }
    }
    return result;
}

PresetResult LoadChosenPreset(EngineControls& controls, const QString& nameOrFile, QString& failure) {
    if (NamesFile(nameOrFile)) {
        return LoadPresetFile(controls, nameOrFile, failure);
    }
    const CKivora& engine = controls.GetEngine();
    const NK::CString name = NK::FromQt(nameOrFile);
    const bool isOwn = engine.PresetExists(name, false);
    if (!isOwn && !engine.PresetExists(name, true)) {
        failure = Tr(QT_TRANSLATE_NOOP("CommandLine", "There is no preset \"%1\".")).arg(nameOrFile);
        return PresetResult::kUnknown;
    }
    NK::CIniFile file;
    NK::ForgetFileFailure();
    const bool isRead = engine.ReadPreset(name, !isOwn, file);
    const PresetResult result = Apply(controls, name, isRead, file, nameOrFile, failure);
    if (result == PresetResult::kLoaded) {
        controls.NotePreset(name, !isOwn);
    }
    return result;
}

}  // namespace Kivora
