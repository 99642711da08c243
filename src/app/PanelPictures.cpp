#include "app/PanelPictures.h"

#include <iostream>
#include <QAbstractButton>
#include <QCoreApplication>
#include <QDir>
#include <QPixmap>
#include <QWidget>

#include "app/PictureFile.h"
#include "ui/dialogs/midiSettings.h"
#include "ui/parts/FailureTexts.h"

namespace Kivora {
namespace {

bool Save(QWidget& widget, const QString& path) {
    QCoreApplication::processEvents();
    if (SavePicture(widget.grab(), path)) {
        return true;
    }
    std::cerr << "kivora: the picture could not be written: " << FailureTexts::OfLastFile().toStdString() << "\n";
    return false;
}

}  // namespace

bool SavePanelPictures(QWidget& panel, const QString& dir) {
    const QDir folder(dir);
    folder.mkpath(".");
    if (!Save(panel, folder.filePath("panel.png"))) {
        return false;
    }
    for (const char* name : {"record-view", "arpeggio-view"}) {
        if (auto* button = panel.findChild<QAbstractButton*>(name)) {
            button->click();
        }
    }
    return Save(panel, folder.filePath("panel-alt.png"));
}

bool SaveSettingsPicture(EngineControls* controls, const QString& dir) {
    midiSettings dialog(controls);
    dialog.show();
    const QDir folder(dir);
    folder.mkpath(".");
    return Save(dialog, folder.filePath("settings.png"));
}

}  // namespace Kivora
