// Texts that come from outside are shown as they are.
#pragma once

#include <QObject>

/// Names of devices, files, presets and fonts and messages of the system can look like markup, and Qt's labels follow
/// what looks like it, up to opening the file that a picture names. While this lives no label guesses: one that is not
/// told its format shows plain text, in tooltips and in the boxes of Qt's own dialogs too. [gui]
class PlainTexts : public QObject {
public:
    /// After the application object, which has the object for a filter.
    PlainTexts();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
};
