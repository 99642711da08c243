// The dialog that loads, saves and deletes presets.
#pragma once

#include <memory>
#include <QFont>
#include <QIcon>

#include "ui/parts/FittedDialog.h"

class QListWidgetItem;

namespace Kivora {
class EngineControls;
}
namespace Ui {
class PresetList;
}

/// Lists the factory's presets, then the user's. Each item holds its preset's name, and under Qt::UserRole whether it
/// is the factory's. Each of the two groups is sorted by name, or by when its presets were used last. While something
/// is searched for, only presets are listed whose names have every word of it. Opens at the current preset, and stays
/// where it is when one is deleted. Accepted once a preset has been loaded or saved. [gui]
class PresetList : public FittedDialog {
    Q_OBJECT

public:
    /// Saves or loads, for the whole life of the dialog. The controls are not owned; without one the list stays empty.
    PresetList(Kivora::EngineControls* controls, bool saveMode, QWidget* parent = nullptr);
    ~PresetList() override;

public slots:
    void savePreset();
    void loadPreset();
    void deletePreset();
    void nameEditChanged();
    void listSelectionChanged(QListWidgetItem* current, QListWidgetItem* previous);
    void listItemClicked(QListWidgetItem* item);
    void listItemDoubleClicked(QListWidgetItem* item);

protected:
    void changeEvent(QEvent* event) override;
    void showEvent(QShowEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void retranslate();
    void fillList();
    void addPresets(bool factory, const QFont& font, const QIcon& icon);
    void refill();
    void orderChosen(int index);
    void noteUse();
    void updateButtons();
    bool confirm(const QString& question);
    void showError(const QString& text);

    std::unique_ptr<Ui::PresetList> ui_;
    Kivora::EngineControls* controls_;
    const bool saveMode_;
    QString selectedName_;  ///< the preset that was selected last, in either group
    bool selectedFactory_ = false;
    QFont normalFont_;
    QFont boldFont_;
    const QIcon factoryIcon_;
    const QIcon userIcon_;
};
