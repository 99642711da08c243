// What the panel asks of the desktop: to show the manual and the web site.
#pragma once

#include <memory>
#include <QObject>

#include "locale/CLauncher.h"
#include "locale/HelpFile.h"

class QWidget;

/// Says in a box over its parent when there is no manual, and in one that lets everybody play on when it cannot be
/// opened. [gui]
class HelpPages : public QObject {
    Q_OBJECT

public:
    explicit HelpPages(QWidget* parent, const QString& programDir = Kivora::GetProgramDir());

    /// Both return at once, unless there is no manual.
    void showHelp();
    void showWebSite(const QString& address);

private:
    QWidget* window_;
    Kivora::HelpOpener help_;
    std::unique_ptr<Kivora::CLauncher> webSite_;
};
