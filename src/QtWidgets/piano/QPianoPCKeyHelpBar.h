// The strip that shows under which computer key each note lies.
#pragma once

#include <QColor>
#include <QFont>
#include <QMap>
#include <QString>
#include <QWidget>

#include <array>
#include <optional>
#include <vector>

#include "QtWidgets/piano/PianoTypes.h"

/// One cell a note from the left, all of the same width, unless it is told where the keys are. Its accessible
/// description is what it shows, from the left. [gui]
class QPianoPCKeyHelpBar : public QWidget {
    Q_OBJECT
    Q_PROPERTY(int octaveShift READ octaveShift WRITE setOctaveShift)
    Q_PROPERTY(bool translateKeyNames READ translateKeyNames WRITE setTranslateKeyNames)
    Q_PROPERTY(QColor textColor READ textColor WRITE setTextColor)

public:
    /// Notes 36..96.
    explicit QPianoPCKeyHelpBar(QWidget* parent = nullptr);

    BYTE firstNote() const { return firstNote_; }
    BYTE keyCount() const { return keyCount_; }
    void setRange(BYTE first, BYTE count);
    /// Semitones that a computer key's note is raised by.
    int octaveShift() const { return octaveShift_; }
    void setOctaveShift(int semitones);
    /// Whether hints are shown as the letters of the localized keyboard.
    bool translateKeyNames() const { return translateKeyNames_; }
    void setTranslateKeyNames(bool on);
    /// What is shown instead where the hints are not translated characters: by hint character, what stands on that key.
    /// Nothing for the characters; without translation they are shown all the same.
    void setKeyTops(const std::optional<QMap<char, QString>>& tops);
    QColor textColor() const { return textColor_; }
    void setTextColor(const QColor& color);

    /// Where on the bar the hint of each note 0..127 is centred; empty for the cells. Throws CInvalidParameterException
    /// "A centre is needed for each note." for any other number of them.
    void setCentres(const std::vector<double>& centres);
    /// Logical pixels from the bar's left edge.
    double centreOf(BYTE note) const;
    /// The hint of a note 0..127; empty where no key plays it.
    QString label(BYTE note) const { return labels_.at(note); }

protected:
    void paintEvent(QPaintEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void rebuildLabels();
    QString labelOf(char hint) const;
    int endOfRange() const;  ///< the note after the last that is shown
    double cellWidth() const { return static_cast<double>(width()) / keyCount_; }
    QFont fontForBar() const;

    BYTE firstNote_ = 36;
    BYTE keyCount_ = 61;
    std::array<QString, 128> labels_;
    std::vector<double> centres_;  ///< by note; empty for cells
    int octaveShift_ = 0;
    bool translateKeyNames_ = true;
    std::optional<QMap<char, QString>> keyTops_;
    QColor textColor_ = Qt::white;
};

/// How a hint character is shown to the user of a localized keyboard.
QString PCKeyHintText(char hint);
