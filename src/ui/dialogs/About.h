// What the program is, who made it and under which terms.
#pragma once

#include "ui/parts/FittedDialog.h"

class QLabel;
class QPushButton;
class QTextBrowser;

/// The about window. [gui]
class kivoraAbout : public FittedDialog {
    Q_OBJECT

public:
    explicit kivoraAbout(QWidget* parent = nullptr);

    /// Address of the product's web site in the language in force.
    static QString webSite();
    /// Path of the credits in the language in force, else of the English ones.
    static QString creditsFile();

signals:
    /// The web site's button; whoever listens opens the address.
    void webSiteWanted(const QString& address);

protected:
    void changeEvent(QEvent* event) override;

private slots:
    void showLegalInformation();

private:
    void retranslate();

    QLabel* version_;  // Qt's parent owns these
    QTextBrowser* credits_;
    QPushButton* webSiteButton_;
    QPushButton* legalButton_;
    QPushButton* closeButton_;
};

/// The copyright and library information. [gui]
class legalinfo : public FittedDialog {
    Q_OBJECT

public:
    explicit legalinfo(QWidget* parent = nullptr);

protected:
    void changeEvent(QEvent* event) override;

private:
    void retranslate();

    QTextBrowser* text_;  // Qt's parent owns these
    QPushButton* closeButton_;
};
