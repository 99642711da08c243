// A MIDI file that is to be played.
#pragma once

#include <memory>
#include <optional>
#include <QString>

namespace Kivora {
class Song;
}

struct SongFile {
    std::shared_ptr<const Kivora::Song> song;  ///< of at least one event
    QString title;                             ///< the file's name
    QString damage;  ///< a sentence when the file is damaged, and what is whole of it is the song; empty otherwise

    /// Nothing, and a sentence in the user's language in `failure`, when nothing of it can be played. Never waits for
    /// what is no regular file. [gui]
    static std::optional<SongFile> Read(const QString& path, QString& failure);
};
