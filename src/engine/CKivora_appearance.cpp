// The settings of the interface that are kept with the engine's.
#include "engine/CKivora.h"

namespace Kivora {

void CKivora::SetTranslatePatchNames(bool on) {
    const Hold hold(*this);
    translatePatchNames_ = on;
    emit PatchChanged();
}

void CKivora::SetTranslateKeyNames(bool on) {
    const Hold hold(*this);
    translateKeyNames_ = on;
    emit KeyTranslationSettingChanged();
}

void CKivora::SetPCKeyWay(NK::Piano::EPCKeyWay way) {
    const Hold hold(*this);
    if (way != pcKeyWay_) {
        pcKeyWay_ = way;
        emit KeyTranslationSettingChanged();
    }
}

void CKivora::SetShowNoteNames(bool on) {
    const Hold hold(*this);
    showNoteNames_ = on;
    emit KeyboardDisplayChanged();
}

void CKivora::SetKeyboardColoring(int coloring) {
    const Hold hold(*this);
    keyboardColoring_ = coloring;
    emit KeyboardDisplayChanged();
}

void CKivora::SetUIColor(const QColor& color) {
    const Hold hold(*this);
    if (color != uiColor_) {
        uiColor_ = color;
        emit UISkinChanged();
    }
}

void CKivora::SetUIDisplayColor(const QColor& color) {
    const Hold hold(*this);
    if (color != uiDisplayColor_) {
        uiDisplayColor_ = color;
        emit UISkinChanged();
    }
}

void CKivora::SetUIDisplay2Color(const QColor& color) {
    const Hold hold(*this);
    if (color != uiDisplay2Color_) {
        uiDisplay2Color_ = color;
        emit UISkinChanged();
    }
}

void CKivora::SetWallpaper(const QString& path) {
    const Hold hold(*this);
    if (path != wallpaper_) {
        wallpaper_ = path;
        emit UISkinChanged();
    }
}

bool CKivora::GetTranslatePatchNames() const {
    const CLockGuard guard(lock_);
    return translatePatchNames_;
}

bool CKivora::GetTranslateKeyNames() const {
    const CLockGuard guard(lock_);
    return translateKeyNames_;
}

NK::Piano::EPCKeyWay CKivora::GetPCKeyWay() const {
    const CLockGuard guard(lock_);
    return pcKeyWay_;
}

bool CKivora::GetShowNoteNames() const {
    const CLockGuard guard(lock_);
    return showNoteNames_;
}

int CKivora::GetKeyboardColoring() const {
    const CLockGuard guard(lock_);
    return keyboardColoring_;
}

QColor CKivora::GetUIColor() const {
    const CLockGuard guard(lock_);
    return uiColor_;
}

QColor CKivora::GetUIDisplayColor() const {
    const CLockGuard guard(lock_);
    return uiDisplayColor_;
}

QColor CKivora::GetUIDisplay2Color() const {
    const CLockGuard guard(lock_);
    return uiDisplay2Color_;
}

QString CKivora::GetWallpaper() const {
    const CLockGuard guard(lock_);
    return wallpaper_;
}

NK::CString CKivora::GetPresetName() const {
    const CLockGuard guard(lock_);
    return presetName_;
}

}  // namespace Kivora
