// A dialog that fits the screen.
#pragma once

#include <QDialog>

class QBoxLayout;

/// As large as its contents want, or as its own resize() before it was shown if that is more, and never larger than its
/// screen has room for; grows when they come to want more, and stays on the screen then. [gui]
class FittedDialog : public QDialog {
    Q_OBJECT

public:
    explicit FittedDialog(QWidget* parent = nullptr);

    /// As if the screen had that room, in logical pixels, for the dialog without its frame.
    void fitInto(const QSize& room);

protected:
    bool event(QEvent* event) override;
    void showEvent(QShowEvent* event) override;
    /// Lays the contents out for a room of that width.
    virtual void arrange(int width);
    /// Makes a row of the contents a column where the dialog would be wider than that, else a row.
    void fold(QBoxLayout& row, int width);

private:
    QSize roomOfScreen() const;
    void moveOntoScreen();

    QSize preferred_;  ///< set before it was shown
    QSize room_;       ///< what there was at the last fit
    QSize wanted_;     ///< by the contents at the last fit
};
