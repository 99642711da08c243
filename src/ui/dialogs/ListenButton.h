// A take that can be heard before anything is decided about it.
#pragma once

#include <functional>
#include <memory>
#include <QPushButton>
#include <QTimer>

#include "engine/SongPlayer.h"

/// Plays a take while it is checked, up to its end, into no take that runs, and says why where nothing would be heard.
/// When the button is hidden or goes, what the player had before is there again as it was, stopped; if another song was
/// opened meanwhile, that stays. [gui]
class ListenButton : public QPushButton {
    Q_OBJECT

public:
    /// The controls outlive the button.
    ListenButton(Kivora::EngineControls& controls, std::function<std::shared_ptr<const Kivora::Song>()> take,
                 QWidget* parent = nullptr);
    ~ListenButton() override;

protected:
    void hideEvent(QHideEvent* event) override;

private:
    void listen(bool on);
    /// False for a button that heard nothing, and when another song was opened.
    bool hasTheSong() const;
    bool isPlaying() const;
    void restore();

    Kivora::SongPlayer player_;
    const std::function<std::shared_ptr<const Kivora::Song>()> take_;
    std::shared_ptr<const Kivora::Song> heard_;   ///< null before it was pressed
    std::shared_ptr<const Kivora::Song> former_;  ///< of the player
    Kivora::SongPlayer::Status formerStatus_;
    QTimer lookTimer_;
};
