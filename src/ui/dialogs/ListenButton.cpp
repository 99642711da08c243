#include "ui/dialogs/ListenButton.h"

#include <QHideEvent>
#include <utility>

#include "engine/Song.h"
#include "ui/dialogs/SoundTexts.h"
#include "ui/parts/MessageBoxes.h"

namespace {
constexpr int kLookMs = 100;
}

ListenButton::ListenButton(Kivora::EngineControls& controls, std::function<std::shared_ptr<const Kivora::Song>()> take,
                           QWidget* parent)
    : QPushButton(tr("Listen"), parent), player_(controls), take_(std::move(take)) {
    setObjectName("listenBtn");
    setCheckable(true);
    setAutoDefault(false);
    connect(this, &QPushButton::clicked, this, &ListenButton::listen);
    connect(&lookTimer_, &QTimer::timeout, this, [this] {
        if (!isPlaying()) {
            listen(false);
        }
    });
}

ListenButton::~ListenButton() {
    restore();
}

void ListenButton::hideEvent(QHideEvent* event) {
    if (!event->spontaneous()) {
        listen(false);
        restore();
    }
    QPushButton::hideEvent(event);
}

void ListenButton::listen(bool on) {
    if (on) {
        if (!heard_) {
            heard_ = take_();
        }
        if (!hasTheSong()) {
            former_ = player_.GetSong();
            formerStatus_ = player_.GetStatus();
        }
        player_.OpenToListen(heard_);
    }
    const bool plays = on && player_.Play();
    if (!plays && hasTheSong()) {
        player_.Stop();
    }
    setChecked(plays);
    plays ? lookTimer_.start(kLookMs) : lookTimer_.stop();
    if (on && !plays) {
        MessageBoxes::Show(this, QMessageBox::Information, tr("Listen"), SoundTexts::NothingToHear());
    }
}

bool ListenButton::hasTheSong() const {
    return heard_ && player_.GetSong() == heard_;
}

bool ListenButton::isPlaying() const {
    return hasTheSong() && player_.GetStatus().state == Kivora::SongPlayer::State::kPlaying;
}

void ListenButton::restore() {
    if (hasTheSong()) {
        player_.OpenAgain(former_, formerStatus_);
    }
}
