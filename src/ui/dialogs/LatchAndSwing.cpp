#include "ui/dialogs/LatchAndSwing.h"

#include <QCheckBox>
#include <QEvent>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QSpinBox>
#include <QVBoxLayout>

#include "engine/EngineControls.h"
#include "midi/arpeggiator/CArpeggiator1.h"
#include "ui/parts/Mnemonics.h"

using NK::MIDI::ArpeggiatorSettings;
using NK::MIDI::CArpeggiator1;

LatchAndSwing::LatchAndSwing(Kivora::EngineControls& controls, QWidget* parent)
    : FittedDialog(parent), controls_(controls), groups_{addGroup(0), addGroup(1)}, close_(new QPushButton) {
    setObjectName("LatchAndSwing");
    close_->setObjectName("latchCloseBtn");
    close_->setDefault(true);
    connect(close_, &QPushButton::clicked, this, &QDialog::accept);
    auto* const buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(close_);
    auto* const all = new QVBoxLayout(this);
    for (const Group& group : groups_) {
        all->addWidget(group.box);
    }
    all->addLayout(buttons);
    retranslate();
}

LatchAndSwing::Group LatchAndSwing::addGroup(int index) {
    const Group group{new QGroupBox, new QCheckBox, new QLabel, new QSpinBox};
    const QString number = QString::number(index + 1);
    group.latch->setObjectName("latch" + number);
    group.swing->setObjectName("swing" + number);
    group.swing->setRange(ArpeggiatorSettings::kStraight, ArpeggiatorSettings::kMostSwing);
    group.swing->setSuffix(" %");
    group.swingLabel->setBuddy(group.swing);
    auto* const grid = new QGridLayout(group.box);
    grid->addWidget(group.latch, 0, 0, 1, 2);
    grid->addWidget(group.swingLabel, 1, 0);
    grid->addWidget(group.swing, 1, 1);
    grid->setColumnStretch(0, 1);
    controls_.GetEngine().WithArpeggiator(index, [&group](const CArpeggiator1& arpeggiator) {
        group.latch->setChecked(arpeggiator.GetSettings().latch);
        group.swing->setValue(arpeggiator.GetSettings().swing);
    });
    connect(group.latch, &QCheckBox::toggled, this, [this, index](bool on) {
        controls_.ChangeArpeggiator(index, [on](CArpeggiator1& arpeggiator) { arpeggiator.SetLatch(on); });
    });
    connect(group.swing, &QSpinBox::valueChanged, this, [this, index](int percent) {
        controls_.ChangeArpeggiator(index, [percent](CArpeggiator1& arpeggiator) { arpeggiator.SetSwing(percent); });
    });
    return group;
}

void LatchAndSwing::changeEvent(QEvent* event) {
    FittedDialog::changeEvent(event);
    if (event->type() == QEvent::LanguageChange) {
        retranslate();
    }
}

void LatchAndSwing::retranslate() {
    setWindowTitle(tr("Latch and Swing"));
    groups_[0].box->setTitle(tr("Arpeggiator 1"));
    groups_[1].box->setTitle(tr("Arpeggiator 2"));
    for (const Group& group : groups_) {
        group.latch->setText(tr("Latch: the chord stays until the next one begins"));
        group.swingLabel->setText(tr("Swing:"));
        group.swing->setToolTip(
            tr("Where the second of two steps comes: 50 is straight, 67 is a triplet's place, 75 a dotted note's"));
        group.latch->setAccessibleName(group.box->title() + ": " + group.latch->text());
        group.swing->setAccessibleName(group.box->title() + ": " + group.swingLabel->text());
    }
    close_->setText(tr("Close"));
    AssignMnemonics(*this);
}
