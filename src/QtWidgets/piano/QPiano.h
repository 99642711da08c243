// The piano keyboard on the screen.
#pragma once

#include <QBasicTimer>
#include <QColor>
#include <QFont>
#include <QPixmap>
#include <QRectF>
#include <QTimer>
#include <QWidget>

#include <array>
#include <bitset>
#include <map>
#include <utility>

#include "piano/CKeyboardPosCalc.h"
#include "piano/CKeyboardStatePoll.h"
#include "piano/CPianoColors.h"
#include "QtWidgets/piano/JudgedKeys.h"
#include "QtWidgets/piano/PianoKeySkin.h"
#include "QtWidgets/piano/PianoTypes.h"

class QInputDevice;
class QTouchEvent;

namespace NK {
struct TPressedInput;
}

/// What pressed keys are lit in: those of the main part, those of the bass part, and the tips of the main part's for a
/// voice that is layered over it. An invalid colour lights nothing.
struct TPianoLights {
    QColor main;
    QColor layer;
    QColor bass;

    friend bool operator==(const TPianoLights&, const TPianoLights&) = default;
};

/// Shows a range of keys along its width (or its height), lights the pressed ones and lets them be played with the
/// mouse, with several fingers and, when the cursor is enabled, with the computer keyboard's cursor keys and Space.
/// Makes no sound itself: it emits what is played, and shows what PressKey(), ReleaseKey() and ProcessMessage() tell.
///
/// Notes are 0..127, kNoKey stands for none. A changed key repaints its own area only. All of it [gui].
class QPiano : public QWidget, protected NK::Piano::CKeyboardPosCalc, public NK::Piano::CKeyboardStatePoll {
    Q_OBJECT
    Q_PROPERTY(bool vertical READ isVertical WRITE setVertical)
    Q_PROPERTY(QColor whiteColor READ whiteColor WRITE setWhiteColor)
    Q_PROPERTY(QColor bassColor READ bassColor WRITE setBassColor)
    Q_PROPERTY(QColor BlackColor READ blackColor WRITE setBlackColor)
    Q_PROPERTY(QColor BlackCursorColor READ blackCursorColor WRITE setBlackCursorColor)
    Q_PROPERTY(QColor WhiteCursorColor READ whiteCursorColor WRITE setWhiteCursorColor)
    Q_PROPERTY(qreal PressedKeyDarkener READ pressedKeyDarkener WRITE setPressedKeyDarkener)
    Q_PROPERTY(bool noteNames READ noteNames WRITE setNoteNames)
    Q_PROPERTY(bool secondaryNoteNames READ secondaryNoteNames WRITE setSecondaryNoteNames)
    Q_PROPERTY(bool octaves_0_11 READ octaves_0_11 WRITE setOctaves_0_11)
    Q_PROPERTY(QFont noteNameFont READ noteNameFont WRITE setNoteNameFont)
    Q_PROPERTY(TNoteText noteText READ noteText WRITE setNoteText)
    Q_PROPERTY(int keyNamesTransposing READ keyNamesTransposing WRITE setKeyNamesTransposing)
    Q_PROPERTY(int bassKeyNamesTransposing READ bassKeyNamesTransposing WRITE setBassKeyNamesTransposing)
    Q_PROPERTY(int secondaryKeyNamesTransposing READ secondaryKeyNamesTransposing WRITE setSecondaryKeyNamesTransposing)
    Q_PROPERTY(bool finePrint READ finePrint WRITE setFinePrint)
    Q_PROPERTY(bool finePrintVertically READ finePrintVertically WRITE setFinePrintVertically)
    Q_PROPERTY(QFont finePrintFont READ finePrintFont WRITE setFinePrintFont)
    Q_PROPERTY(BYTE splitMainPartStartKey READ splitMainPartStartKey WRITE setSplitMainPartStartKey)
    Q_PROPERTY(bool leftLight READ leftLight WRITE setLeftLight)
    Q_PROPERTY(bool shadows READ shadows WRITE setShadows)
    Q_PROPERTY(bool standalone READ isStandalone WRITE setStandalone)
    Q_PROPERTY(qreal blackKeyLengthK READ blackKeyLengthK WRITE setBlackKeyLengthK)
    Q_PROPERTY(bool enableCursor READ isCursorEnabled WRITE setEnableCursor)

public:
    static constexpr BYTE kNoKey = 255;

    /// Notes 36..96.
    explicit QPiano(QWidget* parent = nullptr);
    ~QPiano() override;

    /// Shows `count` notes from `first`, widened so that the keyboard begins and ends on a white key, and keeps the
    /// cursor inside. Throws CInvalidParameterException "Number of piano notes must be positive." for a count of 0 and
    /// "Piano's starting note must be within MIDI range: [0..127]." for a first note above 127.
    void SetKeys(BYTE first, BYTE count);
    /// The same range as it is: nothing is widened, the cursor stays. Throws as CKeyboardPosCalc::SetLayout() does.
    void setKeyRange(BYTE first, BYTE count);

    using CKeyboardPosCalc::GetBlackKeyWidthRatio;
    using CKeyboardPosCalc::GetFirstNote;
    using CKeyboardPosCalc::GetKeyCount;
    using CKeyboardPosCalc::GetKeyPos;
    using CKeyboardPosCalc::GetLastNote;
    using CKeyboardPosCalc::GetWhiteKeyWidth;

    void SetBlackKeyWidthRatio(double ratio) override;
    void Assign(const NK::Piano::CKeyboardPosCalc& other) override;

    /// Notes of 128 and more are ignored.
    void PressKey(std::uint8_t note) override;
    void ReleaseKey(std::uint8_t note) override;
    bool ReleaseAll() override;
    void EndPoll() override;
    void Assign(const NK::Piano::CKeyboardStatePoll& other);
    bool AssignCompare(const NK::Piano::CKeyboardStatePoll& other, bool compare);

    /// Colouring schemes. The scheme must outlive its use here; null is none.
    void setRainbowColors() { setColors(&NK::Piano::GetRainbowColors()); }
    void setScriabinColors() { setColors(&NK::Piano::GetScriabinColors()); }
    void setNoColors() { setColors(nullptr); }
    void setColors(const NK::Piano::CPianoColors* colors);
    const NK::Piano::CPianoColors* colors() const { return colors_; }

    /// None at first: a pressed key is drawn darker, in its own colour.
    void setLights(const TPianoLights& lights) { change(lights_, lights); }
    const TPianoLights& lights() const { return lights_; }

    /// The key at a point of the widget, or kNoKey. A border belongs to the key on its right, black keys lie on top.
    BYTE keyAt(const QPointF& position) const;
    /// The area of a key on the widget, without regard to the black keys on top of it.
    QRectF keyRect(BYTE note) const;
    /// 1 at the key's root to 127 at its tip; 0 for a key without length.
    BYTE velocityAt(BYTE note, const QPointF& position) const;

    /// kNoKey until the first SetKeys().
    BYTE cursorNote() const { return cursorNote_; }
    /// Whether the cursor is enabled and the widget has the focus.
    bool isCursorShown() const;
    /// Releases what the mouse, fingers and Space hold, for when their releases will go elsewhere.
    void releaseHeld();
    /// Releases what the mouse and Space hold although they are up: their releases went elsewhere.
    void releaseAllBut(const NK::TPressedInput& down);
    /// Plays a key for a moment at the velocity of the cursor, as the press action of accessibility does.
    void playBriefly(BYTE note);

    bool isVertical() const { return vertical_; }
    void setVertical(bool vertical);
    QColor whiteColor() const { return whiteColor_; }
    void setWhiteColor(const QColor& color) { change(whiteColor_, color); }
    QColor bassColor() const { return bassColor_; }
    void setBassColor(const QColor& color) { change(bassColor_, color); }
    QColor blackColor() const { return blackColor_; }
    void setBlackColor(const QColor& color) { change(blackColor_, color); }
    QColor blackCursorColor() const { return blackCursorColor_; }
    void setBlackCursorColor(const QColor& color) { change(blackCursorColor_, color); }
    QColor whiteCursorColor() const { return whiteCursorColor_; }
    void setWhiteCursorColor(const QColor& color) { change(whiteCursorColor_, color); }
    qreal pressedKeyDarkener() const { return pressedKeyDarkener_; }
    void setPressedKeyDarkener(qreal darkener) { change(pressedKeyDarkener_, darkener); }
    bool noteNames() const { return noteNames_; }
    void setNoteNames(bool on) { change(noteNames_, on); }
    bool secondaryNoteNames() const { return secondaryNoteNames_; }
    void setSecondaryNoteNames(bool on) { change(secondaryNoteNames_, on); }
    bool octaves_0_11() const { return octavesFromZero_; }
    /// Octaves are numbered from 0 (C5 is note 60) instead of from -1 (C4 is note 60).
    void setOctaves_0_11(bool on) { change(octavesFromZero_, on); }
    QFont noteNameFont() const { return noteNameFont_; }
    void setNoteNameFont(const QFont& font) { change(noteNameFont_, font); }
    TNoteText noteText() const { return noteText_; }
    void setNoteText(const TNoteText& text) { change(noteText_, text); }
    int keyNamesTransposing() const { return keyNamesTransposing_; }
    void setKeyNamesTransposing(int semitones) { change(keyNamesTransposing_, semitones); }
    int bassKeyNamesTransposing() const { return bassKeyNamesTransposing_; }
    void setBassKeyNamesTransposing(int semitones) { change(bassKeyNamesTransposing_, semitones); }
    int secondaryKeyNamesTransposing() const { return secondaryKeyNamesTransposing_; }
    void setSecondaryKeyNamesTransposing(int semitones) { change(secondaryKeyNamesTransposing_, semitones); }
    bool finePrint() const { return finePrint_; }
    void setFinePrint(bool on) { change(finePrint_, on); }
    bool finePrintVertically() const { return finePrintVertically_; }
    void setFinePrintVertically(bool on) { change(finePrintVertically_, on); }
    QFont finePrintFont() const { return finePrintFont_; }
    void setFinePrintFont(const QFont& font) { change(finePrintFont_, font); }
    BYTE splitMainPartStartKey() const { return splitMainPartStartKey_; }
    void setSplitMainPartStartKey(BYTE note) { change(splitMainPartStartKey_, note); }
    bool leftLight() const { return leftLight_; }
    void setLeftLight(bool on) { change(leftLight_, on); }
    bool shadows() const { return shadows_; }
    void setShadows(bool on) { change(shadows_, on); }
    bool isStandalone() const { return standalone_; }
    void setStandalone(bool standalone);
    qreal blackKeyLengthK() const { return blackKeyLengthK_; }
    void setBlackKeyLengthK(qreal ratio);
    bool isCursorEnabled() const { return cursorEnabled_; }
    /// A widget that takes no focus yet takes it by the Tab key from then on.
    void setEnableCursor(bool enable);

    QSize sizeHint() const override;

signals:
    void geometryChanged();
    void keyPressed(BYTE key);
    void keyPressed(BYTE key, BYTE velocity);
    void keyAfterTouch(BYTE key, BYTE velocity);
    void keyReleased(BYTE key);
    void cursorChanged(BYTE key);

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void changeEvent(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void timerEvent(QTimerEvent* event) override;

private slots:
    void onTimer();

private:
    /// The key under one pointer.
    struct THold {
        BYTE note = kNoKey;
        BYTE velocity = 0;
    };
    struct TKeyLight {
        bool pressed = false;
        bool cursor = false;
    };
    using CKeySet = std::bitset<NK::Piano::kNoteCount>;

    template <class T>
    void change(T& member, const T& value) {
        if (!(member == value)) {
            member = value;
            repaintAll();
        }
    }

    // QPiano_layout.cpp. Frame: the coordinates of a horizontal keyboard.
    int lengthAlongKeys() const { return vertical_ ? height() : width(); }
    int lengthAcrossKeys() const { return vertical_ ? width() : height(); }
    qreal blackKeyLength() const { return lengthAcrossKeys() * blackKeyLengthK_; }
    int lastNote() const;
    bool isInRange(BYTE note) const { return note >= GetFirstNote() && note <= lastNote(); }
    QPointF toFrame(const QPointF& position) const { return vertical_ ? position.transposed() : position; }
    QRectF toWidget(const QRectF& rect) const;
    void rebuildRects();
    void layoutKeys();
    QRect keyArea(BYTE note) const;  ///< on the widget: all that changes with the key

    // QPiano.cpp
    void updateKey(BYTE note);
    void scheduleChanges();
    void repaintAll();
    void setCursorNote(BYTE note);

    // QPiano_mouse.cpp
    void press(THold& hold, const QPointF& position);
    void move(THold& hold, const QPointF& position);
    void release(THold& hold);
    void releasePointers();
    bool isHeld(BYTE note) const;
    bool touchEvent(const QTouchEvent& event);

    // QPiano_keys.cpp
    struct TCursorKey {
        int code;
    };
    void carryOutRelease(const TCursorKey& key);
    void settleKeyRelease();
    void releaseSpace();
    void releaseBriefNotes();
    void play(BYTE note);
    void stop(BYTE note);

    // QPiano_paint.cpp
    struct TKeyPlace {
        int left;   ///< device pixels along the keyboard
        int width;  ///< device pixels
    };
    TKeyPlace placeOf(BYTE note) const;
    TKeyLight lightOf(BYTE note) const;
    QColor keyColor(BYTE note, bool cursor) const;
    PianoKeyLook lookOf(BYTE note, const TKeyLight& light, int width) const;
    bool isTinted(BYTE note) const;
    void prepareUnpressed();
    void drawKeys(QPainter& painter, const QRectF& frame, bool unpressed);
    void drawKey(QPainter& painter, BYTE note, const TKeyLight& light);
    void drawPicture(QPainter& painter, const QPoint& framePosition, const QPixmap& picture) const;
    void drawTexts(QPainter& painter, BYTE note, const TKeyLight& light) const;
    void drawName(QPainter& painter, const QString& name, const QRectF& row, bool patch) const;
    QString keyName(int note) const;

    bool vertical_ = false;
    QColor whiteColor_;
    QColor bassColor_;
    QColor blackColor_;
    QColor blackCursorColor_;
    QColor whiteCursorColor_;
    qreal pressedKeyDarkener_ = 1.0;
    bool noteNames_ = false;
    bool secondaryNoteNames_ = false;
    bool octavesFromZero_ = false;
    QFont noteNameFont_;
    TNoteText noteText_;
    int keyNamesTransposing_ = 0;
    int bassKeyNamesTransposing_ = 0;
    int secondaryKeyNamesTransposing_ = 0;
    bool finePrint_ = false;
    bool finePrintVertically_ = true;
    QFont finePrintFont_;
    BYTE splitMainPartStartKey_ = 0;
    bool leftLight_ = true;
    bool shadows_ = true;
    bool standalone_ = false;
    qreal blackKeyLengthK_ = 0.67;
    bool cursorEnabled_ = false;

    std::array<QRectF, NK::Piano::kNoteCount> keyRects_;    ///< in the frame
    std::array<QRectF, NK::Piano::kNoteCount> labelRects_;  ///< in the frame
    THold mouse_;
    std::map<std::pair<const QInputDevice*, int>, THold> fingers_;  ///< by the screen and the touch point's id
    BYTE cursorNote_ = kNoKey;
    BYTE spaceNote_ = kNoKey;
    quint32 spaceScanCode_ = 0;
    JudgedKeys<TCursorKey> keys_;
    QBasicTimer keySettleTimer_;
    CKeySet briefNotes_;
    QBasicTimer briefTimer_;
    std::array<std::int32_t, NK::Piano::kNoteCount> fadeCounters_{};
    const NK::Piano::CPianoColors* colors_ = nullptr;
    TPianoLights lights_;
    QTimer fadeTimer_;

    CKeySet shownPressed_;    ///< as last scheduled for painting
    qreal paintRatio_ = 1.0;  ///< device pixels a logical pixel at the latest painting
    PianoKeySkin skin_;
    QPixmap unpressed_;  ///< the keyboard with every key up; null when to be drawn anew
};
