// The page that says what would sound, what would not and what to do about it.
#pragma once

#include <QList>
#include <QTimer>

#include "ui/dialogs/SoundDoctorTools.h"
#include "ui/dialogs/SoundReport.h"
#include "ui/parts/FittedDialog.h"

class QLabel;
class QPushButton;
class ScrolledForm;

/// Looks once it is shown, and again when asked to. A note that was begun is ended, at the latest when the page goes.
/// [gui]
class SoundCheck : public FittedDialog {
    Q_OBJECT

public:
    explicit SoundCheck(SoundDoctorTools tools, QWidget* parent = nullptr);
    ~SoundCheck() override;

public slots:
    void look();
    /// By the way of the keys, to the output that they play.
    void playNote();

protected:
    void showEvent(QShowEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void retranslate();
    void showLines(const QList<SoundReport::Line>& lines);
    void endNote();

    const SoundDoctorTools tools_;
    QLabel* waiting_;
    ScrolledForm* form_;
    QPushButton* again_;
    QPushButton* note_;
    QPushButton* close_;
    QTimer noteTimer_;
    bool isNoteDown_ = false;
    bool hasLooked_ = false;
};
