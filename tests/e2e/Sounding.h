// What written messages leave sounding.
#pragma once

#include <set>
#include <string>
#include <vector>

/// "channel/note" of each note and "channel/pedal" of each pedal that is down after those messages, which are written
/// as "90 3C 50"; the channel counts from 0.
std::set<std::string> SoundingAfter(const std::vector<std::string>& messages);
