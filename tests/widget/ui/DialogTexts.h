// Looks whether a dialog can be read, heard and reached by keys.
#pragma once

#include <QWidget>

#include <string>

// Each names the controls with their texts; empty for none.

/// Controls inside the window that are visible and whose text is wider or higher than the room they have.
std::string ClippedTexts(QWidget& window);

/// Controls inside the window that take the focus and have no name for a screen reader.
std::string NamelessControls(QWidget& window);

/// Texts whose mnemonic is taken by another one in the window.
std::string SharedMnemonics(QWidget& window);
