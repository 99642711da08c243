// Files of the user's that are damaged, or cannot be read.
#include "ui/KivoraWidget.h"

#include <utility>

#include "engine/CKivora.h"
#include "engine/files/SettingsFile.h"
#include "ui/MainDisplay.h"
#include "ui/parts/FailureTexts.h"
#include "ui/parts/NoticeLine.h"

void KivoraWidget::tellAboutSettings() {
    using State = Kivora::SettingsFile::State;
    const Kivora::SettingsFile& file = engine_->GetSettingsFile();
    if (file.GetState() == State::kDamaged) {
        notices_.Tell(QMessageBox::Warning, tr("Warning"),
                      tr("The settings file is damaged. The default settings are in force; the file will be kept under "
                         "another name."));
    }
    tellUnreadable("settings",
                   file.GetState() == State::kUnreadable ? FailureTexts::OfFile(file.GetFailure()) : QString(),
                   tr("The settings file cannot be read at present. The default settings are in force. The file is "
                      "left as it is; what you change is kept beside it and taken over when it can be read."));
}

void KivoraWidget::tellUnreadable(const QString& name, const QString& why, const QString& text) {
    const bool isNews = engine_ == nullptr || KeptText(cacheFolder() + name + "-told.txt").Change(why);
    if (why.isEmpty()) {
        return;
    }
    const auto tell = [this, text, why] { notices_.Tell(QMessageBox::Warning, tr("Warning"), text, why); };
    if (isNews) {
        tell();
        return;
    }
    unreadable_.push_back(tell);
    NoticeLine& line = *display_->notice();
    line.tell(NoticeLine::Topic::kFiles, tr("A file cannot be read. Press here for more."), [this, &line] {
        line.withdraw(NoticeLine::Topic::kFiles);
        for (const auto& tellAgain : std::exchange(unreadable_, {})) {
            tellAgain();
        }
    });
}

void KivoraWidget::fileSetAside(const QString& path) {
    notices_.Tell(QMessageBox::Warning, tr("Warning"), tr("A damaged file was kept under another name:") + "\n" + path);
}
