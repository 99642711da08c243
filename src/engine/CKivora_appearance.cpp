// The settings of the interface that are kept with the engine's.
#include "engine/CKivora.h"

namespace Kivora {

Settings CKivora::GetSettings() const {
    const CLockGuard guard(lock_);
    return settings_;
}

void CKivora::ChangeSettings(const std::function<void(Settings& settings)>& change) {
    const Hold hold(*this);
    const Settings former = settings_;
    change(settings_);
    Tell(settings_.GetChanges(former));
}

void CKivora::Tell(const std::vector<EShownIn>& changes) {
    for (const EShownIn shownIn : changes) {
        switch (shownIn) {
            case EShownIn::kNothing:
                break;
            case EShownIn::kPatchNames:
                emit PatchChanged();
                break;
            case EShownIn::kKeyNames:
                emit KeyTranslationSettingChanged();
                break;
            case EShownIn::kKeyboard:
                emit KeyboardDisplayChanged();
                break;
            case EShownIn::kSkin:
                emit UISkinChanged();
                break;
        }
    }
}

void CKivora::SetTranslatePatchNames(bool on) {
    const Hold hold(*this);
    settings_.translatePatchNames = on;
    emit PatchChanged();
}

void CKivora::SetTranslateKeyNames(bool on) {
    const Hold hold(*this);
    settings_.translateKeyNames = on;
    emit KeyTranslationSettingChanged();
}

void CKivora::SetShowNoteNames(bool on) {
    const Hold hold(*this);
    settings_.showNoteNames = on;
    emit KeyboardDisplayChanged();
}

void CKivora::SetKeyboardColoring(int coloring) {
    const Hold hold(*this);
    settings_.keyboardColoring = coloring;
    emit KeyboardDisplayChanged();
}

void CKivora::SetPCKeyWay(NK::Piano::EPCKeyWay way) {
    ChangeSettings([way](Settings& settings) { settings.pcKeyWay = way; });
}

void CKivora::SetUIColor(const QColor& color) {
    ChangeSettings([&color](Settings& settings) { settings.uiColor = color; });
}

void CKivora::SetUIDisplayColor(const QColor& color) {
    ChangeSettings([&color](Settings& settings) { settings.uiDisplayColor = color; });
}

void CKivora::SetUIDisplay2Color(const QColor& color) {
    ChangeSettings([&color](Settings& settings) { settings.uiDisplay2Color = color; });
}

void CKivora::SetWallpaper(const QString& path) {
    ChangeSettings([&path](Settings& settings) { settings.wallpaper = path; });
}

bool CKivora::GetTranslatePatchNames() const {
    const CLockGuard guard(lock_);
    return settings_.translatePatchNames;
}

bool CKivora::GetTranslateKeyNames() const {
    const CLockGuard guard(lock_);
    return settings_.translateKeyNames;
}

NK::Piano::EPCKeyWay CKivora::GetPCKeyWay() const {
    const CLockGuard guard(lock_);
    return settings_.pcKeyWay;
}

bool CKivora::GetShowNoteNames() const {
    const CLockGuard guard(lock_);
    return settings_.showNoteNames;
}

int CKivora::GetKeyboardColoring() const {
    const CLockGuard guard(lock_);
    return settings_.keyboardColoring;
}

QColor CKivora::GetUIColor() const {
    const CLockGuard guard(lock_);
    return settings_.uiColor;
}

QColor CKivora::GetUIDisplayColor() const {
    const CLockGuard guard(lock_);
    return settings_.uiDisplayColor;
}

QColor CKivora::GetUIDisplay2Color() const {
    const CLockGuard guard(lock_);
    return settings_.uiDisplay2Color;
}

QString CKivora::GetWallpaper() const {
    const CLockGuard guard(lock_);
    return settings_.wallpaper;
}

NK::CString CKivora::GetPresetName() const {
    const CLockGuard guard(lock_);
    return presetName_;
}

}  // namespace Kivora
