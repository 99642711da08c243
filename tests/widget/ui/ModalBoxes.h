// Answers the modal windows that an operation opens, and keeps what they said.
#pragma once

#include <QAbstractButton>
#include <QApplication>
#include <QMessageBox>
#include <QTimer>

#include <deque>
#include <functional>
#include <string>
#include <vector>

/// While it lives, each modal window that appears is given to the next answer, which is to close it; a message box
/// without an answer left is closed by its Escape button.
class ModalBoxes : public QObject {
public:
    using Answer = std::function<void(QWidget& window)>;

    ModalBoxes() {
        connect(&timer_, &QTimer::timeout, this, &ModalBoxes::look);
        timer_.start(0);
    }
    void add(Answer answer) { answers_.push_back(std::move(answer)); }
    /// Clicks that button of the next message box.
    void click(QMessageBox::StandardButton button) {
        add([button](QWidget& window) {
            if (auto* const box = qobject_cast<QMessageBox*>(&window)) {
                box->button(button)->click();
            } else {
                window.close();
            }
        });
    }
    /// "title|text" of each message box that appeared since the last call.
    std::vector<std::string> take() { return std::exchange(texts_, {}); }

private:
    void look() {
        QWidget* const window = QApplication::activeModalWidget();
        if (window == nullptr || !window->isVisible() || window == ignored) {
            return;
        }
        if (auto* const box = qobject_cast<QMessageBox*>(window)) {
            texts_.push_back((box->windowTitle() + "|" + box->text()).toStdString());
        }
        if (answers_.empty()) {
            window->close();
            return;
        }
        const Answer answer = std::move(answers_.front());
        answers_.pop_front();
        answer(*window);
    }

public:
    const QWidget* ignored = nullptr;  ///< a modal window under test

private:
    QTimer timer_;
    std::deque<Answer> answers_;
    std::vector<std::string> texts_;
};
