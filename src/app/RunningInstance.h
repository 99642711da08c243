// One program of a display takes the files that the desktop opens, however many run.
#pragma once

#include <memory>
#include <QObject>
#include <QSocketNotifier>
#include <QString>

#include "nk/nk_hand_over.h"

namespace Kivora {

/// Gives a file to the program that runs on this display already, where one does and takes it. Waits at most
/// NK::kHandOverLimitMs. An application object need not exist.
bool HandToRunningInstance(const QString& path);

/// Takes what HandToRunningInstance() gives. Where another program does so already it waits for its turn, which it
/// looks for whenever this program gets the keyboard. [gui]
class FileReceiver : public QObject {
    Q_OBJECT

public:
    FileReceiver();

    bool IsListening() const { return listener_ != nullptr; }

signals:
    /// An absolute path. Who opened the file expects the window before them.
    void FileReceived(const QString& path);

private:
    void TryToListen();
    void Take();

    std::unique_ptr<NK::CHandOverListener> listener_;
    std::unique_ptr<QSocketNotifier> notifier_;
};

}  // namespace Kivora
