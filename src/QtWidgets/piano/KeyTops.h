// What is printed on the keys of the computer's keyboard. [any]
#pragma once

#include <QString>

#include "nk/desktop/nk_keyboard_layout.h"

/// What stands on a key that types this: its letter in upper case where SHIFT types that, the accent of a dead key, a
/// mark that stands over or under others on a dotted circle, else the character without modifiers. Empty for a key that
/// types nothing.
QString KeyTopText(const NK::TKeyboardLayout::TKey& key);
