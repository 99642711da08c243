#include "ui/dialogs/PresetList.h"

#include <algorithm>
#include <iterator>
#include <QKeyEvent>
#include <QLayout>
#include <QScrollBar>
#include <vector>

#include "engine/EngineControls.h"
#include "engine/EngineExtras.h"
#include "nk/qt/nk_qt_string.h"
#include "ui/dialogs/QPresetNameValidator.h"
#include "ui/parts/FailureTexts.h"
#include "ui/parts/MessageBoxes.h"
#include "ui/parts/Mnemonics.h"
#include "ui_PresetList.h"

using NK::FromQt;
using NK::ToQt;

namespace {

constexpr int kFactoryRole = Qt::UserRole;
constexpr int kByName = 0;
constexpr int kByUse = 1;

}  // namespace

PresetList::PresetList(Kivora::EngineControls* controls, bool saveMode, QWidget* parent)
    : FittedDialog(parent),
      ui_(std::make_unique<Ui::PresetList>()),
      controls_(controls),
      saveMode_(saveMode),
      factoryIcon_(":/Resources/Preset_Factory.png"),
      userIcon_(":/Resources/Preset_User.png") {
    ui_->setupUi(this);
    normalFont_ = ui_->presetList->font();
    boldFont_ = normalFont_;
    boldFont_.setBold(true);

    ui_->presetNameLabel->setVisible(saveMode_);
    ui_->presetName->setVisible(saveMode_);
    ui_->saveBtn->setVisible(saveMode_);
    ui_->loadBtn->setVisible(!saveMode_);
    (saveMode_ ? ui_->saveBtn : ui_->loadBtn)->setDefault(true);
    ui_->presetName->setValidator(new QPresetNameValidator(this));
    retranslate();

    connect(ui_->presetList, &QListWidget::currentItemChanged, this, &PresetList::listSelectionChanged);
    connect(ui_->presetList, &QListWidget::itemClicked, this, &PresetList::listItemClicked);
    connect(ui_->presetList, &QListWidget::itemDoubleClicked, this, &PresetList::listItemDoubleClicked);
    connect(ui_->presetName, &QLineEdit::textChanged, this, &PresetList::nameEditChanged);
    connect(ui_->saveBtn, &QPushButton::clicked, this, &PresetList::savePreset);
    connect(ui_->loadBtn, &QPushButton::clicked, this, &PresetList::loadPreset);
    connect(ui_->delBtn, &QPushButton::clicked, this, &PresetList::deletePreset);
    connect(ui_->cancelBtn, &QPushButton::clicked, this, &PresetList::reject);

    ui_->presetSearch->installEventFilter(this);
    connect(ui_->presetSearch, &QLineEdit::textChanged, this, &PresetList::refill);
    if (controls_ != nullptr) {
        ui_->presetOrder->setCurrentIndex(controls_->GetEngine().WithExtras(
            [](const Kivora::EngineExtras& extras) { return extras.presets.sortsByUse ? kByUse : kByName; }));
    }
    connect(ui_->presetOrder, &QComboBox::currentIndexChanged, this, &PresetList::orderChosen);

    const QString current = controls_ != nullptr ? ToQt(controls_->GetEngine().GetPresetName()) : QString();
    ui_->presetName->setText(current);
    fillList();
    if (const auto found = ui_->presetList->findItems(current, Qt::MatchFixedString | Qt::MatchCaseSensitive);
        !found.isEmpty()) {
        ui_->presetList->setCurrentItem(found.last());  // the own one, where a factory preset bears its name
    }
    updateButtons();
    nameEditChanged();
    if (saveMode_) {
        ui_->presetName->setFocus();
        ui_->presetName->selectAll();
    } else {
        ui_->presetList->setFocus();
    }
}

PresetList::~PresetList() = default;

void PresetList::retranslate() {
    setWindowTitle(saveMode_ ? tr("Save Preset") : tr("Load Preset"));
    AssignMnemonics(*this);
}

void PresetList::changeEvent(QEvent* event) {
    if (event->type() == QEvent::LanguageChange) {
        ui_->retranslateUi(this);
        retranslate();
    }
    FittedDialog::changeEvent(event);
}

void PresetList::showEvent(QShowEvent* event) {
    FittedDialog::showEvent(event);
    if (QListWidgetItem* const current = ui_->presetList->currentItem(); current != nullptr) {
        layout()->activate();
        ui_->presetList->scrollToItem(current, QAbstractItemView::PositionAtCenter);
    }
}

void PresetList::fillList() {
    addPresets(true, boldFont_, factoryIcon_);
    addPresets(false, normalFont_, userIcon_);
}

void PresetList::addPresets(bool factory, const QFont& font, const QIcon& icon) {
    if (controls_ == nullptr) {
        return;
    }
    NK::CStringArray listed;
    controls_->GetEngine().ListPresets(listed, factory);
    const QStringList words = ui_->presetSearch->text().split(' ', Qt::SkipEmptyParts);
    std::vector<NK::CString> names;
    std::copy_if(listed.begin(), listed.end(), std::back_inserter(names), [&words](const NK::CString& name) {
        return std::all_of(words.begin(), words.end(), [text = ToQt(name)](const QString& word) {
            return text.contains(word, Qt::CaseInsensitive);
        });
    });
    if (ui_->presetOrder->currentIndex() == kByUse) {
        // A copy, to be sorted by without the engine's lock.
        const auto recent =
            controls_->GetEngine().WithExtras([](const Kivora::EngineExtras& extras) { return extras.presets; });
        std::stable_sort(names.begin(), names.end(), [&](const NK::CString& a, const NK::CString& b) {
            return recent.GetPlace(a, factory) < recent.GetPlace(b, factory);
        });
    }
    for (const NK::CString& name : names) {
        auto* const item = new QListWidgetItem(icon, ToQt(name), ui_->presetList);
        item->setData(kFactoryRole, factory);
        item->setFont(font);
    }
}

void PresetList::refill() {
    // Where nothing was found it stays the one before.
    if (const QListWidgetItem* const former = ui_->presetList->currentItem(); former != nullptr) {
        selectedName_ = former->text();
        selectedFactory_ = former->data(kFactoryRole).toBool();
    }
    ui_->presetList->clear();
    fillList();
    int row = ui_->presetSearch->text().trimmed().isEmpty() ? -1 : 0;
    for (int i = 0; i < ui_->presetList->count(); ++i) {
        const QListWidgetItem* const item = ui_->presetList->item(i);
        if (item->text() == selectedName_ && item->data(kFactoryRole).toBool() == selectedFactory_) {
            row = i;
        }
    }
    ui_->presetList->setCurrentRow(row);
    updateButtons();
}

void PresetList::orderChosen(int index) {
    if (controls_ != nullptr) {
        controls_->SortPresetsByUse(index == kByUse);
    }
    refill();
}

void PresetList::noteUse() {
    const QListWidgetItem* const item = ui_->presetList->currentItem();
    const bool factory = !saveMode_ && item != nullptr && item->data(kFactoryRole).toBool();
    controls_->NotePreset(controls_->GetEngine().GetPresetName(), factory);
}

bool PresetList::eventFilter(QObject* watched, QEvent* event) {
    if (watched == ui_->presetSearch && event->type() == QEvent::KeyPress) {
        // From the field into what it has found. While saving, Enter does that too: it would save under another name.
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (key == Qt::Key_Down || (saveMode_ && (key == Qt::Key_Return || key == Qt::Key_Enter))) {
            ui_->presetList->setFocus();
            return true;
        }
    }
    return FittedDialog::eventFilter(watched, event);
}

void PresetList::updateButtons() {
    const QListWidgetItem* const item = ui_->presetList->currentItem();
    ui_->loadBtn->setEnabled(item != nullptr);
    ui_->delBtn->setEnabled(item != nullptr && !item->data(kFactoryRole).toBool());
}

void PresetList::listSelectionChanged(QListWidgetItem* current, QListWidgetItem* previous) {
    updateButtons();
    // Moving by the arrow keys names a preset as a click does; that the focus arrives, which makes the first item the
    // current one, does not.
    if (current != nullptr && previous != nullptr && ui_->presetList->hasFocus()) {
        ui_->presetName->setText(current->text());
    }
}

void PresetList::listItemClicked(QListWidgetItem* item) {
    ui_->presetName->setText(item->text());
    updateButtons();
}

void PresetList::listItemDoubleClicked(QListWidgetItem* item) {
    listItemClicked(item);
    if (saveMode_) {
        savePreset();
    } else {
        loadPreset();
    }
}

void PresetList::nameEditChanged() {
    ui_->saveBtn->setEnabled(!ui_->presetName->text().trimmed().isEmpty());
}

void PresetList::loadPreset() {
    const QListWidgetItem* const item = ui_->presetList->currentItem();
    if (saveMode_ || controls_ == nullptr || item == nullptr) {
        return;
    }
    if (controls_->LoadPreset(FromQt(item->text()), item->data(kFactoryRole).toBool())) {
        noteUse();
        accept();
    } else {
        showError(tr("Failed to load the preset."));
    }
}

void PresetList::savePreset() {
    const QString name = ui_->presetName->text();
    if (!saveMode_ || controls_ == nullptr || name.trimmed().isEmpty()) {
        return;
    }
    if (controls_->GetEngine().PresetExists(FromQt(name), false) &&
        !confirm(tr("Overwrite preset") + " \"" + name + "\"?")) {
        return;
    }
    if (controls_->SavePreset(FromQt(name))) {
        noteUse();
        accept();
    } else {
        showError(tr("Failed to save preset under this name."));
    }
}

void PresetList::deletePreset() {
    const QListWidgetItem* const item = ui_->presetList->currentItem();
    if (controls_ == nullptr || item == nullptr || item->data(kFactoryRole).toBool()) {
        return;
    }
    const QString name = item->text();
    if (!confirm(tr("Delete preset") + " \"" + name + "\"?")) {
        return;
    }
    if (!controls_->DeletePreset(FromQt(name))) {
        showError(tr("Failed to delete the preset."));
    }
    const int row = ui_->presetList->currentRow();
    const int place = ui_->presetList->verticalScrollBar()->value();
    ui_->presetList->clear();
    fillList();
    ui_->presetList->setCurrentRow(std::min(row, ui_->presetList->count() - 1));
    ui_->presetList->verticalScrollBar()->setValue(place);
    updateButtons();
}

bool PresetList::confirm(const QString& question) {
    return MessageBoxes::Show(this, QMessageBox::Question, tr("Please Confirm"), question,
                              QMessageBox::Yes | QMessageBox::No) == QMessageBox::Yes;
}

void PresetList::showError(const QString& text) {
    MessageBoxes::ShowFailure(this, QMessageBox::Critical, tr("Error"), text, FailureTexts::OfLastFile());
}
