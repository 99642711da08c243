// One program of a display takes the files that the desktop opens, however many run.
#pragma once

#include <memory>
#include <QObject>
#include <QSocketNotifier>
#include <QString>

#include "nk/nk_hand_over.h"
#include "nk/nk_string.h"

namespace Kivora {

/// Gives a file to the program that runs on that display already, where one does and takes it: a display as
/// FindWindowDisplay() names it. Waits at most NK::kHandOverLimitMs. An application object need not exist.
bool HandToRunningInstance(const QString& path, const QString& display);

/// Takes what HandToRunningInstance() gives on one display. Where another program does so already it waits for its
/// turn, which it looks for whenever this program gets the keyboard. [gui]
class FileReceiver : public QObject {
    Q_OBJECT

public:
    explicit FileReceiver(const QString& display);

    bool IsListening() const { return listener_ != nullptr; }

signals:
    /// An absolute path. Who opened the file expects the window before them.
    void FileReceived(const QString& path);

private:
    void TryToListen();
    void Take();

    const NK::CString place_;  ///< empty: programs cannot meet
    std::unique_ptr<NK::CHandOverListener> listener_;
    std::unique_ptr<QSocketNotifier> notifier_;
};

}  // namespace Kivora
