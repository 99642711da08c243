#include "ui/ListenButton.h"

#include <utility>

#include "engine/Song.h"

namespace {
constexpr int kLookMs = 100;
}

ListenButton::ListenButton(Kivora::EngineFront& front, std::function<std::shared_ptr<const Kivora::Song>()> take,
                           QWidget* parent)
    : QPushButton(tr("Listen"), parent), player_(front), take_(std::move(take)) {
    setObjectName("listenBtn");
    setCheckable(true);
    setAutoDefault(false);
    connect(this, &QPushButton::clicked, this, &ListenButton::listen);
    connect(&lookTimer_, &QTimer::timeout, this, [this] {
        if (player_.GetStatus().state != Kivora::SongPlayer::State::kPlaying) {
            listen(false);
        }
    });
}

ListenButton::~ListenButton() {
    if (heard_ && player_.GetSong() == heard_) {
        player_.Open(former_);
    }
}

void ListenButton::listen(bool on) {
    if (on && !heard_) {
        heard_ = take_();
        former_ = player_.GetSong();
    }
    if (on) {
        player_.Open(heard_);
    }
    const bool plays = on && player_.Play();
    if (!plays) {
        player_.Stop();
    }
    setChecked(plays);
    plays ? lookTimer_.start(kLookMs) : lookTimer_.stop();
}
