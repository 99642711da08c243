// Looks whether a dialog can be read, heard and reached by keys.
#pragma once

#include <QStringList>
#include <QWidget>

/// Controls inside the window that are visible and whose text is wider or higher than the room they have.
QStringList ClippedTexts(QWidget& window);

/// Controls inside the window that take the focus and have no name for a screen reader.
QStringList NamelessControls(QWidget& window);

/// Texts whose mnemonic is taken by another one in the window.
QStringList SharedMnemonics(QWidget& window);
