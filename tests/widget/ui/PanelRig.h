// The front panel in a window, with an engine on fakes, worked by mouse and keys; and what answers its boxes.
#pragma once

#include <gtest/gtest.h>

#include <deque>
#include <functional>
#include <memory>
#include <QAbstractButton>
#include <QApplication>
#include <QDialog>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMainWindow>
#include <QMessageBox>
#include <QPushButton>
#include <QScopedValueRollback>
#include <QTimer>
#include <QtTest/QTest>
#include <stdexcept>
#include <string>
#include <vector>

#include "engine/EngineControls.h"
#include "locale/Locale.h"
#include "QtWidgets/piano/QPiano.h"
#include "ui/KivoraWidget.h"
#include "ui/parts/EmbeddedFonts.h"
#include "unit/engine/EngineRig.h"

namespace KivoraTest {

inline constexpr int kWaitMs = 30000;

/// The box that has come by itself and is open, if no dialog is before it.
inline QMessageBox* FindUnaskedBox() {
    for (QWidget* const window : QApplication::topLevelWidgets()) {
        auto* const box = qobject_cast<QMessageBox*>(window);
        if (box != nullptr && box->isVisible() && !box->isModal() && box->findChild<QTimer*>("deaf-time") != nullptr) {
            return QApplication::activeModalWidget() == nullptr ? box : nullptr;
        }
    }
    return nullptr;
}

/// Its first second, in which nothing acts, is over.
inline void EndDeafTime(QMessageBox& box) {
    auto* const deaf = box.findChild<QTimer*>("deaf-time");
    if (deaf != nullptr && deaf->isActive()) {
        deaf->start(0);
        ASSERT_TRUE(QTest::qWaitFor([deaf] { return !deaf->isActive(); }, kWaitMs));
    }
}

/// While it lives, answers each modal dialog and each box that comes by itself with the next of its answers, and notes
/// what was seen: "title: text" of a box, the title of any other dialog. A dialog without an answer is refused, so that
/// no test hangs.
class ModalAnswers {
public:
    using Answer = std::function<void(QDialog& dialog)>;

    ModalAnswers() { LookLater(); }

    ModalAnswers& Then(Answer answer) {
        answers_.push_back(std::move(answer));
        return *this;
    }
    /// Clicks that button of a box.
    ModalAnswers& Click(QMessageBox::StandardButton button) {
        return Then([button](QDialog& dialog) {
            auto* const box = qobject_cast<QMessageBox*>(&dialog);
            QAbstractButton* const found = box != nullptr ? box->button(button) : nullptr;
            if (found == nullptr) {
                ADD_FAILURE() << "no such button in " << dialog.windowTitle().toStdString();
                dialog.reject();
                return;
            }
            QTest::mouseClick(found, Qt::LeftButton);
        });
    }
    /// Types a file's name into a file dialog and presses Enter.
    ModalAnswers& TypeFile(const QString& path) {
        return Then([path](QDialog& dialog) {
            auto* const name = dialog.findChild<QLineEdit*>("fileNameEdit");
            if (name == nullptr) {
                ADD_FAILURE() << "no file dialog: " << dialog.windowTitle().toStdString();
                dialog.reject();
                return;
            }
            QApplication::setActiveWindow(&dialog);
            name->setFocus();  // else the dialog keeps the file that is selected in its list
            name->setText(path);
            QTest::keyClick(name, Qt::Key_Return);
        });
    }
    ModalAnswers& Refuse() {
        return Then([](QDialog& dialog) { dialog.reject(); });
    }

    bool AllGiven() const { return answers_.empty(); }
    std::vector<std::string> seen;
    std::vector<std::string> details;  ///< what stood below the text, of the boxes in which something did

private:
    /// A timer of its own each time: one that is being handled does not fire in the event loops of its handler.
    void LookLater() {
        QTimer::singleShot(1, &context_, [this] { Look(); });
    }
    void Look() {
        LookLater();
        auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
        if (dialog == nullptr) {
            dialog = FindUnaskedBox();
        }
        if (dialog == nullptr || !dialog->isVisible() || dialog == answering_) {
            return;
        }
        const QScopedValueRollback<const QDialog*> answering(answering_, dialog);
        auto* const box = qobject_cast<QMessageBox*>(dialog);
        if (box != nullptr) {
            EndDeafTime(*box);
        }
        seen.push_back(dialog->windowTitle().toStdString() + (box != nullptr ? ": " + box->text().toStdString() : ""));
        if (box != nullptr && !box->informativeText().isEmpty()) {
            details.push_back(box->informativeText().toStdString());
        }
        if (answers_.empty()) {
            dialog->reject();
            return;
        }
        const Answer answer = answers_.front();
        answers_.pop_front();
        answer(*dialog);
    }

    QObject context_;
    const QDialog* answering_ = nullptr;  ///< whose answer waits for something itself
    std::deque<Answer> answers_;
};

/// Calls `action` once a pop-up menu is open; the menu is closed afterwards if it is still there.
inline void OnPopUp(std::function<void(QWidget& popUp)> action) {
    auto* const timer = new QTimer(qApp);
    QObject::connect(timer, &QTimer::timeout, [timer, action = std::move(action)] {
        QWidget* const popUp = QApplication::activePopupWidget();
        if (popUp == nullptr) {
            return;
        }
        timer->stop();
        action(*popUp);
        if (QApplication::activePopupWidget() == popUp) {
            popUp->close();
        }
        timer->deleteLater();  // not before, as events that the action waits for would delete what is running here
    });
    timer->start(1);
}

/// English, an output open by default, the window active.
class PanelTest : public testing::Test {
protected:
    PanelTest() {
        [[maybe_unused]] static const bool registered = [] {
            Kivora::RegisterEmbeddedFonts();
            return true;
        }();
        Kivora::SetLocale("en_US", false);
        rig.backend.defaultOutput = kSynth;
    }
    ~PanelTest() override {
        CloseWindow();
        if (controls) {
            controls->Close();
        }
        Kivora::SetLocale("en_US", false);
    }

    void CreateEngine() {
        rig.Create();
        controls = std::make_unique<Kivora::EngineControls>(*rig.engine);
    }
    void ShowPanel() {
        CreateWindow();
        window->activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(window.get(), kWaitMs));
        QApplication::processEvents();
        rig.TakeWritten();
    }
    /// For a window that comes up with a box before it.
    void CreateWindow() {
        window = std::make_unique<QMainWindow>();
        panel = new KivoraWidget(controls.get(), window.get());
        window->setCentralWidget(panel);
        window->setFixedSize(panel->sizeHint());
        window->show();
    }
    void CloseWindow() {
        window.reset();
        panel = nullptr;
    }
    void SetUp() override {
        CreateEngine();
        ShowPanel();
    }

    Kivora::CKivora& Engine() { return *rig.engine; }
    template <class Widget = QWidget>
    Widget& Find(const char* name) {
        auto* const found = panel->findChild<Widget*>(name);
        if (found == nullptr) {
            throw std::runtime_error(name);
        }
        return *found;
    }
    QAbstractButton& Button(const char* name) { return Find<QAbstractButton>(name); }
    QPiano& Piano() { return Find<QPiano>("piano"); }
    std::string Label(const char* name) { return Find<QLabel>(name).text().toStdString(); }
    std::string Caption(const char* name) { return Button(name).text().toStdString(); }
    void Click(const char* name) { QTest::mouseClick(&Find(name), Qt::LeftButton); }
    void RightClick(QWidget& widget, const QPoint& position) {
        QTest::mouseClick(&widget, Qt::RightButton, {}, position);
        QContextMenuEvent event(QContextMenuEvent::Mouse, position, widget.mapToGlobal(position));
        QApplication::sendEvent(&widget, &event);
    }
    /// A key goes where the focus is, as a key of the system does.
    void Press(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) { QTest::keyPress(Receiver(), key, modifiers, 0); }
    void Release(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
        QTest::keyRelease(Receiver(), key, modifiers, 0);
    }
    void Type(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
        Press(key, modifiers);
        Release(key, modifiers);
    }
    /// Lets what was played get shown.
    void Show() {
        rig.RunPlayer();
        QApplication::processEvents();
    }
    void Wait(const std::function<bool()>& condition) { ASSERT_TRUE(QTest::qWaitFor(condition, kWaitMs)); }
    QString PathOf(const std::string& name) { return QString::fromStdString((rig.folder / name).native()); }

    EngineRig rig;
    std::unique_ptr<Kivora::EngineControls> controls;
    std::unique_ptr<QMainWindow> window;
    KivoraWidget* panel = nullptr;

private:
    QWidget* Receiver() {
        QWidget* const focused = QApplication::focusWidget();
        return focused != nullptr ? focused : panel;
    }
};

}  // namespace KivoraTest
