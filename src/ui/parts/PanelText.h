// The type styles of the panel, and how a text is fitted into its room. [gui]
#pragma once

#include <QColor>
#include <QFont>
#include <QPointF>
#include <QString>

#include <vector>

class QPainter;

/// Sizes and distances in logical pixels.
struct PanelTextStyle {
    enum class Family { kLegend, kDisplay };

    Family family;
    QFont::Weight weight;
    double pixels;
    double spacing;  ///< between letters
    bool capitals;   ///< texts are shown in capitals
    QColor color;
    double smallest;  ///< what a text that is too wide may shrink to

    /// At the style's size, rounded to whole pixels.
    QFont Font() const;
    PanelTextStyle Colored(const QColor& other) const;
    PanelTextStyle Sized(double otherPixels) const;
};

namespace PanelText {

inline constexpr QColor kInk(3, 10, 26);          ///< on a lit display
inline constexpr QColor kLitGlassInk(4, 21, 11);  ///< on a lit parameter key

extern const PanelTextStyle kLegend;        ///< plates and bays
extern const PanelTextStyle kHeaderLegend;  ///< the same in the header
extern const PanelTextStyle kSmallLegend;   ///< arpeggiators, octave names
extern const PanelTextStyle kTitle;
extern const PanelTextStyle kCaption;  ///< on keys
extern const PanelTextStyle kPatchName;
extern const PanelTextStyle kPatchFamily;
extern const PanelTextStyle kVoiceValue;
extern const PanelTextStyle kVoiceBadge;
extern const PanelTextStyle kStatusValue;
extern const PanelTextStyle kStatusLabel;
extern const PanelTextStyle kParameter;
extern const PanelTextStyle kBigFigure;  ///< tempo, time
extern const PanelTextStyle kOctaveFigure;
extern const PanelTextStyle kGateFigure;
extern const PanelTextStyle kComboText;

/// A text made to fit. Qt's fonts have whole pixel sizes only, so the font is twice as large as the text and is drawn
/// by a painter scaled to kFontScale.
struct Fitted {
    QFont font;
    QString text;  ///< in capitals and elided where need be

    double Size() const;       ///< of the letters as drawn
    double Width() const;      ///< of the text as drawn
    double CapHeight() const;  ///< of the text as drawn
};
inline constexpr double kFontScale = 0.5;

/// The whole text at a size in steps of half a pixel.
Fitted AtSize(const PanelTextStyle& style, const QString& text, double pixels);

/// Shrinks in steps of half a pixel down to the style's smallest size, then elides on the right.
Fitted Fit(const PanelTextStyle& style, const QString& text, double width);

/// A text and how wide it may be.
struct InRoom {
    QString text;
    double width;
};

/// The largest size, in steps of half a pixel down to the style's smallest, at which every one of the texts fits: texts
/// of one row are of one size.
double CommonSize(const PanelTextStyle& style, const std::vector<InRoom>& texts);

/// Draws a fitted text. `baseline` is the left end, the middle or the right end of the line that the letters stand on,
/// by the horizontal alignment.
void Draw(QPainter& painter, const PanelTextStyle& style, const QString& text, const QPointF& baseline,
          Qt::Alignment alignment, double width);

}  // namespace PanelText
