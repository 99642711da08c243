// Keys that reach the controls of a dialog together with ALT.
#pragma once

class QWidget;

/// Gives the buttons, check boxes and labelled controls inside the dialog a mnemonic each, in the order in which they
/// were made: the first letter of a word that is still free, else any free letter of the text. Texts that stand there
/// more than once get none, and the letters that the dialog's own actions have with ALT are taken, with those that the
/// same keys type in the language in force. Works on the texts in that language, so it is called again when it changes.
/// [gui]
void AssignMnemonics(QWidget& dialog);
