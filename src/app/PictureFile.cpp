#include "app/PictureFile.h"

#include <QBuffer>
#include <QPixmap>

#include "nk/nk_atomic_save.h"
#include "nk/qt/nk_qt_string.h"

namespace Kivora {

bool SavePicture(const QPixmap& picture, const QString& path) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    const auto write = [&bytes](NK::CFile& file) {
        const auto size = static_cast<std::size_t>(bytes.size());
        return file.Write(bytes.constData(), 1, size) == size;
    };
    return picture.save(&buffer, "PNG") && NK::SaveAtomically(NK::FromQt(path), write);
}

}  // namespace Kivora
