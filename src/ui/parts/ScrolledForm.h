// A form in a dialog that may be larger than the screen.
#pragma once

#include <QScrollArea>

/// Wants the room of its whole contents, and scrolls where it gets less. What gets the keyboard is scrolled into sight;
/// the wheel turns only what has it, and scrolls over everything else. [gui]
class ScrolledForm : public QScrollArea {
    Q_OBJECT

public:
    explicit ScrolledForm(QWidget* parent = nullptr);
    ~ScrolledForm() override;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void showEvent(QShowEvent* event) override;

private:
    void showFocused(QWidget* former, QWidget* focused);
};
