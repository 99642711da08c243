#include "app/RunningInstance.h"

#include <QFileInfo>
#include <QGuiApplication>
#include <QRegularExpression>

#include "nk/nk_paths.h"
#include "nk/qt/nk_qt_string.h"

namespace Kivora {

namespace {

// What a Wayland compositor gives a program to show that the user wants its window. The toolkit looks there when a
// window is to come to the controls.
constexpr const char* kTokenVariable = "XDG_ACTIVATION_TOKEN";

/// A socket for each display: another user's seat or a virtual display is no place to open this one's files. Empty
/// where programs cannot meet.
NK::CString GetMeetingPlace(QString display) {
    static const QRegularExpression kUnsafe("[^A-Za-z0-9.-]");
    display.replace(kUnsafe, "_");
    const NK::CString folder = NK::GetMeetingDir(L"kivora");
    return folder.IsEmpty() || display.isEmpty() ? NK::CString() : NK::JoinPath(folder, NK::FromQt("open" + display));
}

}  // namespace

bool HandToRunningInstance(const QString& path, const QString& display) {
    const NK::CString place = GetMeetingPlace(display);
    if (place.IsEmpty()) {
        return false;
    }
    const QByteArray message = QFileInfo(path).absoluteFilePath().toUtf8() + '\0' + qgetenv(kTokenVariable);
    return NK::HandOver(place, {message.constData(), static_cast<std::size_t>(message.size())});
}

FileReceiver::FileReceiver(const QString& display) : place_(GetMeetingPlace(display)) {
    connect(qApp, &QGuiApplication::applicationStateChanged, this, [this](Qt::ApplicationState state) {
        if (state == Qt::ApplicationActive) {
            TryToListen();
        }
    });
    TryToListen();
}

void FileReceiver::TryToListen() {
    if (listener_ || place_.IsEmpty()) {
        return;
    }
    listener_ = NK::CHandOverListener::Listen(place_);
    if (listener_) {
        notifier_ = std::make_unique<QSocketNotifier>(listener_->GetDescriptor(), QSocketNotifier::Read);
        connect(notifier_.get(), &QSocketNotifier::activated, this, &FileReceiver::Take);
    }
}

void FileReceiver::Take() {
    while (const std::optional<std::string> message = listener_->Take()) {
        const QList<QByteArray> parts = QByteArray::fromStdString(*message).split('\0');
        if (!parts.value(1).isEmpty()) {
            qputenv(kTokenVariable, parts[1]);
        }
        emit FileReceived(QString::fromUtf8(parts.first()));
    }
}

}  // namespace Kivora
