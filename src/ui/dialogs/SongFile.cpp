#include "ui/dialogs/SongFile.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <utility>

#include "engine/Song.h"
#include "midi/reader/SMFReader.h"
#include "nk/nk_file_failure.h"
#include "nk/qt/nk_qt_string.h"

namespace {

QString Tr(const char* text) {
    return QCoreApplication::translate("SongFile", text);
}

QString DescribeUnread(const QString& path) {
    const QString reason = NK::ToQt(NK::DescribeFileError(NK::GetFileFailure().error));
    return reason.isEmpty() ? Tr(QT_TRANSLATE_NOOP("SongFile", "%1 cannot be read.")).arg(path)
                            : Tr(QT_TRANSLATE_NOOP("SongFile", "%1 cannot be read: %2.")).arg(path, reason);
}

}  // namespace

std::optional<SongFile> SongFile::Read(const QString& path, QString& failure) {
    NK::ForgetFileFailure();
    std::optional<NK::MIDI::SMFContent> content = NK::MIDI::ReadSMFFile(NK::FromQt(path));
    if (!content) {
        failure = DescribeUnread(path);
        return std::nullopt;
    }
    const QString damage = content->damage ? NK::ToQt(NK::MIDI::Describe(*content->damage)) : QString();
    auto song = std::make_shared<const Kivora::Song>(*std::move(content));
    if (song->IsEmpty()) {
        failure = damage.isEmpty() ? Tr(QT_TRANSLATE_NOOP("SongFile", "%1 holds nothing that can be played.")).arg(path)
                                   : path + ": " + damage;
        return std::nullopt;
    }
    return SongFile{std::move(song), QFileInfo(path).fileName(), damage};
}
