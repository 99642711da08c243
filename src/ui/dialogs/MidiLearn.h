// The dialog in which controls of MIDI keyboards are bound to the panel.
#pragma once

#include "engine/BoundControls.h"
#include "ui/parts/FittedDialog.h"

class MidiRemote;
class QCheckBox;
class QHBoxLayout;
class QLabel;
class QPushButton;
class QTreeWidget;
class QTreeWidgetItem;

namespace Kivora {
struct StoredBindings;
}

/// Lists what can be bound and to what it is. What is changed in it is in force at once, and saved. [gui]
class MidiLearn : public FittedDialog {
    Q_OBJECT

public:
    /// The remote is not owned and outlives the dialog.
    explicit MidiLearn(MidiRemote& remote, QWidget* parent = nullptr);
    ~MidiLearn() override;

    /// The first time it ends the learning, if something is learned.
    void reject() override;

protected:
    void changeEvent(QEvent* event) override;
    void arrange(int width) override;

private:
    QPushButton* addButton(const char* name, void (MidiLearn::*clicked)());
    void fillList();
    void retranslate();
    void showBindings();
    void showState(const QString& text);
    void choose();
    void enable();
    Kivora::EPanelFunction function() const;

    void learn();
    void stopLearning();
    void endLearning();
    void invite();
    void learned(const Kivora::BoundControls::Learned& control);
    void clear();
    void clearAll();
    void exportBindings();
    void importBindings();
    void setLatching(bool latches);
    void change(const std::function<void(Kivora::MidiBindings& bindings)>& change);
    void takeOver(const Kivora::StoredBindings& stored);
    QString startFolder() const;

    MidiRemote& remote_;
    bool learning_ = false;
    bool loading_ = false;

    // Qt's parent owns these.
    QTreeWidget* list_;
    QCheckBox* latching_;
    QLabel* state_;
    QPushButton* learn_;
    QPushButton* clear_;
    QPushButton* clearAll_;
    QPushButton* export_;
    QPushButton* import_;
    QPushButton* close_;
    QHBoxLayout* buttons_;
};
