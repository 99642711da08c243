// The findings about the sound in sentences. [gui]
#pragma once

#include <QList>
#include <QString>

struct SoundFindings;

namespace SoundReport {

enum class Grade {
    kGood,
    kHint,    ///< could be better; a key sounds all the same
    kTrouble  ///< keeps the keys from sounding
};

struct Line {
    Grade grade;
    QString text;    ///< what was found
    QString advice;  ///< what to do about it; may be empty
};

/// In the user's language, the way of a note from the verdict to the ear. The first line is the verdict.
QList<Line> Write(const SoundFindings& findings);
/// A line each, with its grade in controls.
QString ToText(const QList<Line>& lines);

}  // namespace SoundReport
