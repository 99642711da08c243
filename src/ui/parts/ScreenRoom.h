// How much of a screen windows may cover.
#pragma once

#include <QSize>

class QScreen;

/// What there is for windows on a screen, in logical pixels, of which no part sticks out: at scales between the whole
/// ones the toolkit rounds, and a screen's own size may be one more of the system's pixels than it has. [gui]
QSize screenRoom(const QScreen& screen);
