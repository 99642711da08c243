#include "ui/dialogs/ColorChooser.h"

#include <QColorDialog>
#include <QDialogButtonBox>
#include <QPushButton>
#include <QVBoxLayout>

#include "ui/parts/ScrolledForm.h"

ColorChooser::ColorChooser(const QColor& color, QWidget* parent)
    : FittedDialog(parent), colors_(new QColorDialog(color)) {
    colors_->setWindowFlags(Qt::Widget);
    colors_->setOption(QColorDialog::DontUseNativeDialog);  // not every desktop's own tells of moves
    colors_->setOption(QColorDialog::NoButtons);
    auto* const form = new ScrolledForm;
    form->setWidget(colors_);
    auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    buttons->button(QDialogButtonBox::Ok)->setDefault(true);
    auto* const layout = new QVBoxLayout(this);
    layout->addWidget(form);
    layout->addWidget(buttons);
    connect(colors_, &QColorDialog::currentColorChanged, this, &ColorChooser::currentColorChanged);
    connect(colors_, &QDialog::rejected, this, &QDialog::reject);  // by Escape
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
}
