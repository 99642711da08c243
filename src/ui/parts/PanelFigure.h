// A text on the panel that tells the state of something.
#pragma once

#include <QString>

/// Shows the text on a label or a key, whose accessible name says what the text is about, and describes the widget by
/// it for screen readers. [gui]
template <class Widget>
void ShowFigure(Widget* widget, const QString& text) {
    widget->setText(text);
    widget->setAccessibleDescription(text);
}
