#include "ui/KeptText.h"

#include <QFileInfo>

#include "nk/nk_atomic_save.h"
#include "nk/nk_directory.h"
#include "nk/nk_disk_file.h"
#include "nk/nk_string_serializable.h"
#include "nk/qt/nk_qt_string.h"

QString KeptText::Get() const {
    NK::CDiskFile file(NK::FromQt(path_), NK::CDiskFile::kRead);
    NK::CStringSerializable text;
    return text.ReadFrom(file) ? NK::ToQt(text) : QString();
}

bool KeptText::Keep(const QString& text) const {
    const NK::CString path = NK::FromQt(path_);
    if (text.isEmpty()) {
        NK::RemoveFile(path);
        return true;
    }
    const NK::CStringSerializable written(NK::FromQt(text));
    return NK::CreateFolder(NK::FromQt(QFileInfo(path_).path())) &&
           NK::SaveAtomically(path, [&](NK::CFile& file) { return written.WriteTo(file); });
}

bool KeptText::Change(const QString& text) const {
    const bool changes = Get() != text;
    if (changes) {
        Keep(text);
    }
    return changes;
}
