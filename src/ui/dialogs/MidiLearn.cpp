#include "ui/dialogs/MidiLearn.h"

#include <algorithm>
#include <QAccessible>
#include <QCheckBox>
#include <QDir>
#include <QEvent>
#include <QFileDialog>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>

#include "nk/nk_file_failure.h"
#include "nk/qt/nk_qt_string.h"
#include "ui/dialogs/MidiControlTexts.h"
#include "ui/dialogs/MidiRemote.h"
#include "ui/parts/FailureTexts.h"
#include "ui/parts/MessageBoxes.h"
#include "ui/parts/Mnemonics.h"

using Kivora::EPanelFunction;
using Kivora::MidiBinding;
using Kivora::MidiBindings;
using Kivora::MidiControl;
using Kivora::StoredBindings;

namespace {

constexpr int kFunctionRole = Qt::UserRole;
constexpr QSize kListSize(560, 330);  // logical pixels, wide enough for a device's name
constexpr QSize kLeastListSize(280, 120);

template <class Part>
Part* Named(Part* part, const char* name) {
    part->setObjectName(name);
    return part;
}

}  // namespace

MidiLearn::MidiLearn(MidiRemote& remote, QWidget* parent)
    : FittedDialog(parent),
      remote_(remote),
      list_(Named(new QTreeWidget, "learnList")),
      latching_(Named(new QCheckBox, "learnLatching")),
      state_(Named(new QLabel, "learnState")),
      learn_(addButton("learnBtn", &MidiLearn::learn)),
      clear_(addButton("learnClearBtn", &MidiLearn::clear)),
      clearAll_(addButton("learnClearAllBtn", &MidiLearn::clearAll)),
      export_(addButton("learnExportBtn", &MidiLearn::exportBindings)),
      import_(addButton("learnImportBtn", &MidiLearn::importBindings)),
      close_(addButton("learnCloseBtn", &MidiLearn::accept)),
      buttons_(new QHBoxLayout) {
    setObjectName("MidiLearn");
    learn_->setDefault(true);
    learn_->setCheckable(true);
    list_->setColumnCount(2);
    list_->setRootIsDecorated(false);
    list_->setAllColumnsShowFocus(true);
    list_->setMinimumSize(kListSize);
    list_->header()->setSectionsMovable(false);
    state_->setWordWrap(true);
    state_->setTextFormat(Qt::PlainText);
    state_->setMinimumHeight(2 * state_->fontMetrics().lineSpacing());
    state_->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    auto* const ofOne = new QHBoxLayout;
    for (QPushButton* button : {learn_, clear_, clearAll_}) {
        ofOne->addWidget(button);
    }
    auto* const ofAll = new QHBoxLayout;
    for (QPushButton* button : {export_, import_}) {
        ofAll->addWidget(button);
    }
    ofAll->addStretch();
    ofAll->addWidget(close_);
    buttons_->addLayout(ofOne);
    buttons_->addLayout(ofAll, 1);
    auto* const all = new QVBoxLayout(this);
    all->addWidget(list_, 1);
    all->addWidget(latching_);
    all->addWidget(state_);
    all->addLayout(buttons_);
    fillList();
    connect(list_, &QTreeWidget::currentItemChanged, this, &MidiLearn::choose);
    connect(list_, &QTreeWidget::itemDoubleClicked, this, [this] {
        if (!learning_) {
            learn();
        }
    });
    connect(latching_, &QCheckBox::toggled, this, &MidiLearn::setLatching);
    connect(&remote_, &MidiRemote::learned, this, &MidiLearn::learned);
    retranslate();
    list_->setFocus();
    resize(sizeHint());
    list_->setMinimumSize(kLeastListSize);  // where the screen has no room for more
}

MidiLearn::~MidiLearn() {
    remote_.endLearning();
}

QPushButton* MidiLearn::addButton(const char* name, void (MidiLearn::*clicked)()) {
    auto* const button = Named(new QPushButton, name);
    connect(button, &QPushButton::clicked, this, clicked);
    return button;
}

void MidiLearn::fillList() {
    for (const EPanelFunction function : Kivora::GetPanelFunctions()) {
        auto* const item = new QTreeWidgetItem(list_);
        item->setData(0, kFunctionRole, static_cast<int>(function));
    }
    list_->setCurrentItem(list_->topLevelItem(0));
}

EPanelFunction MidiLearn::function() const {
    const QTreeWidgetItem* const item = list_->currentItem();
    return static_cast<EPanelFunction>(item != nullptr ? item->data(0, kFunctionRole).toInt() : 0);
}

void MidiLearn::changeEvent(QEvent* event) {
    FittedDialog::changeEvent(event);
    if (event->type() == QEvent::LanguageChange) {
        retranslate();
    }
}

void MidiLearn::arrange(int width) {
    fold(*buttons_, width);
}

void MidiLearn::retranslate() {
    setWindowTitle(tr("MIDI Learn"));
    list_->setHeaderLabels({tr("On the panel"), tr("On a MIDI keyboard")});
    list_->setAccessibleName(tr("What is bound"));
    latching_->setText(tr("The button sends on and off in turn: each is a press"));
    learn_->setText(tr("Learn"));
    clear_->setText(tr("Clear"));
    clearAll_->setText(tr("Clear All"));
    export_->setText(tr("Export..."));
    import_->setText(tr("Import..."));
    close_->setText(tr("Close"));
    for (int row = 0; row < list_->topLevelItemCount(); ++row) {
        QTreeWidgetItem* const item = list_->topLevelItem(row);
        item->setText(0, MidiControlTexts::NameOf(static_cast<EPanelFunction>(item->data(0, kFunctionRole).toInt())));
    }
    list_->resizeColumnToContents(0);
    showBindings();
    choose();
    AssignMnemonics(*this);
}

void MidiLearn::showBindings() {
    for (int row = 0; row < list_->topLevelItemCount(); ++row) {
        QTreeWidgetItem* const item = list_->topLevelItem(row);
        const auto bound = static_cast<EPanelFunction>(item->data(0, kFunctionRole).toInt());
        const QString text = MidiControlTexts::DescribeBindings(remote_.bindings(), bound);
        item->setText(1, text.isEmpty() ? QString(QChar(0x2013)) : text);
        item->setToolTip(1, text);
    }
    enable();
}

void MidiLearn::showState(const QString& text) {
    if (state_->text() == text) {
        return;
    }
    state_->setText(text);
    state_->setAccessibleName(text);
    QAccessibleEvent alert(state_, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
}

void MidiLearn::enable() {
    const auto& all = remote_.bindings().GetAll();
    const auto isIts = [this](const MidiBinding& binding) { return binding.function == function(); };
    const auto isButton = [&](const MidiBinding& binding) {
        return isIts(binding) && binding.control.kind == MidiControl::Kind::kController;
    };
    clear_->setEnabled(std::any_of(all.begin(), all.end(), isIts));
    clearAll_->setEnabled(!all.empty());
    export_->setEnabled(!all.empty());
    latching_->setEnabled(!Kivora::IsValue(function()) && std::any_of(all.begin(), all.end(), isButton));
    loading_ = true;
    latching_->setChecked(std::any_of(all.begin(), all.end(),
                                      [&](const MidiBinding& binding) { return isIts(binding) && binding.latches; }));
    loading_ = false;
}

void MidiLearn::choose() {
    enable();
    if (learning_) {
        stopLearning();
    } else {
        invite();
    }
}

void MidiLearn::invite() {
    showState(tr("Choose what to work from the MIDI keyboard, and press \"Learn\"."));
}

void MidiLearn::learn() {
    if (learning_) {
        stopLearning();
        return;
    }
    learning_ = true;
    learn_->setChecked(true);
    remote_.beginLearning(function());
    const QString name = MidiControlTexts::NameOf(function());
    showState(Kivora::IsValue(function()) ? tr("%1: move a knob or a fader of the MIDI keyboard.").arg(name)
                                          : tr("%1: press a button or a pad of the MIDI keyboard.").arg(name));
}

void MidiLearn::endLearning() {
    learning_ = false;
    learn_->setChecked(false);
    remote_.endLearning();
}

void MidiLearn::stopLearning() {
    endLearning();
    invite();
}

void MidiLearn::reject() {
    if (learning_) {
        stopLearning();
    } else {
        FittedDialog::reject();
    }
}

void MidiLearn::learned(const Kivora::BoundControls::Learned& control) {
    if (!learning_) {
        return;
    }
    if (!control.control) {
        showState(tr("%1: a pitch bend or a pressure cannot be bound. Take another control, or let this one send a "
                     "controller.")
                      .arg(NK::ToQt(control.device)));
        return;
    }
    const QString came = MidiControlTexts::Describe(control.device, *control.control);
    if (control.control->IsReserved()) {
        showState(came + ". " + tr("It is needed for playing and cannot be bound. Take another one."));
        return;
    }
    if (!control.canBeBound) {
        showState(came + ". " + tr("It cannot set a value. Move a knob or a fader."));
        return;
    }
    const MidiBinding binding{control.device, *control.control, function(), false};
    const MidiBinding* const former = remote_.bindings().Find(binding.device, binding.control);
    if (former != nullptr && former->function != binding.function &&
        MessageBoxes::Show(
            this, QMessageBox::Question, windowTitle(),
            tr("%1 is bound already: %2. Bind it to \"%3\" instead?")
                .arg(came, MidiControlTexts::NameOf(former->function), MidiControlTexts::NameOf(function())),
            QMessageBox::Yes | QMessageBox::No) != QMessageBox::Yes) {
        stopLearning();
        return;
    }
    change([&binding](MidiBindings& bindings) { bindings.Bind(binding); });
    endLearning();
    showState(tr("Bound: %1.").arg(came));
}

void MidiLearn::clear() {
    change([bound = function()](MidiBindings& bindings) { bindings.Clear(bound); });
}

void MidiLearn::clearAll() {
    if (MessageBoxes::Show(this, QMessageBox::Question, windowTitle(),
                           tr("Clear everything that is bound, on devices that are not plugged in too?"),
                           QMessageBox::Yes | QMessageBox::No) == QMessageBox::Yes) {
        change([](MidiBindings& bindings) { bindings = {}; });
    }
}

void MidiLearn::setLatching(bool latches) {
    if (!loading_) {
        change([bound = function(), latches](MidiBindings& bindings) { bindings.SetLatching(bound, latches); });
    }
}

void MidiLearn::change(const std::function<void(MidiBindings&)>& change) {
    const bool isSaved = remote_.change(change);
    showBindings();
    if (!isSaved) {
        MessageBoxes::ShowFailure(this, QMessageBox::Warning, windowTitle(),
                                  tr("What is bound is in force, but could not be saved."), FailureTexts::OfLastFile());
    }
}

QString MidiLearn::startFolder() const {
    return remote_.exchangeFolder.isEmpty() ? QDir::homePath() : remote_.exchangeFolder;
}

void MidiLearn::exportBindings() {
    QFileDialog dialog(this, tr("Export Bindings"), startFolder(), tr("Bindings (*.ini)"));
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setDefaultSuffix("ini");
    dialog.selectFile(tr("MIDI bindings", "suggested file name") + ".ini");
    while (dialog.exec() == QDialog::Accepted) {
        const QString path = dialog.selectedFiles().value(0);
        if (Kivora::WriteBindings(remote_.bindings(), NK::FromQt(path))) {
            remote_.exchangeFolder = dialog.directory().absolutePath();
            showState(tr("Exported to %1.").arg(path));
            return;
        }
        MessageBoxes::ShowFailure(this, QMessageBox::Critical, windowTitle(), tr("The bindings could not be exported."),
                                  FailureTexts::OfLastFile());
    }
}

void MidiLearn::importBindings() {
    const QString path = QFileDialog::getOpenFileName(this, tr("Import Bindings"), startFolder(),
                                                      tr("Bindings (*.ini)") + ";;" + tr("All files (*)"));
    if (path.isEmpty()) {
        return;
    }
    NK::ForgetFileFailure();
    const StoredBindings stored = StoredBindings::Read(NK::FromQt(path));
    using State = StoredBindings::State;
    if (stored.state == State::kAbsent || stored.state == State::kUnreadable) {
        MessageBoxes::ShowFailure(this, QMessageBox::Critical, windowTitle(), tr("The file cannot be read."),
                                  FailureTexts::OfLastFile());
    } else if (stored.bindings.IsEmpty()) {
        MessageBoxes::ShowFailure(this, QMessageBox::Critical, windowTitle(),
                                  tr("The file holds no bindings. Nothing has changed."), path);
    } else {
        remote_.exchangeFolder = QFileInfo(path).absolutePath();
        takeOver(stored);
    }
}

void MidiLearn::takeOver(const StoredBindings& stored) {
    const QString question =
        stored.state == StoredBindings::State::kNewer
            ? tr("Lines of the file that mean nothing to this version: %1. Take over the others: %2?")
            : tr("The file is damaged. Lines that cannot be understood: %1. Take over what is whole: %2?");
    if (stored.refused != 0 && MessageBoxes::Show(this, QMessageBox::Warning, windowTitle(),
                                                  question.arg(stored.refused).arg(stored.bindings.GetAll().size()),
                                                  QMessageBox::Yes | QMessageBox::No) != QMessageBox::Yes) {
        return;
    }
    std::size_t count = 0;
    change([&](MidiBindings& all) { count = all.TakeOver(stored.bindings); });
    const QString taken = tr("Bindings taken over: %1.").arg(count);
    const std::size_t left = stored.bindings.GetAll().size() - count;
    showState(left == 0 ? taken : taken + ' ' + tr("No room for the others: %1.").arg(left));
}
