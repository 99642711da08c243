#include "ui/parts/FileMarks.h"

#include <QFileInfo>

#include "ui/parts/InstrumentMarks.h"

FileMarks::FileMarks()
    : file_(InstrumentMarks::Find(QStyle::SP_FileIcon)),
      folder_(InstrumentMarks::Find(QStyle::SP_DirIcon)),
      drive_(InstrumentMarks::Find(QStyle::SP_DriveHDIcon)),
      computer_(InstrumentMarks::Find(QStyle::SP_ComputerIcon)) {
}

QIcon FileMarks::icon(IconType type) const {
    switch (type) {
        case Computer:
        case Desktop:
        case Network:
            return computer_;
        case Drive:
            return drive_;
        case Folder:
        case Trashcan:
            return folder_;
        default:
            return file_;
    }
}

QIcon FileMarks::icon(const QFileInfo& file) const {
    return file.isRoot() ? drive_ : file.isDir() ? folder_ : file_;
}
