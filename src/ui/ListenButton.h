// A take that can be heard before anything is decided about it.
#pragma once

#include <functional>
#include <memory>
#include <QPushButton>
#include <QTimer>

#include "engine/SongPlayer.h"

/// Plays a take while it is checked, up to its end. When the button goes, what the player had before is there again,
/// stopped. [gui]
class ListenButton : public QPushButton {
    Q_OBJECT

public:
    /// The front outlives the button.
    ListenButton(Kivora::EngineFront& front, std::function<std::shared_ptr<const Kivora::Song>()> take,
                 QWidget* parent = nullptr);
    ~ListenButton() override;

private:
    void listen(bool on);

    Kivora::SongPlayer player_;
    const std::function<std::shared_ptr<const Kivora::Song>()> take_;
    std::shared_ptr<const Kivora::Song> heard_;   ///< null before it was pressed
    std::shared_ptr<const Kivora::Song> former_;  ///< of the player
    QTimer lookTimer_;
};
