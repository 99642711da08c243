// Colouring schemes: a colour for every pitch class.
#pragma once

#include <cstdint>

namespace NK::Piano {

/// The colourings of the keys, by the numbers under which they are saved.
enum EKeyColoring : int { kNoColoring, kRainbowColoring, kScriabinColoring, kColoringCount };

/// One entry of a scheme, 8 bits a component.
struct TKeyColor {
    std::uint8_t red;
    std::uint8_t green;
    std::uint8_t blue;
    std::uint8_t zero;  ///< always 0

    /// Pure black stands for "leave the key as it is".
    bool IsTint() const noexcept { return red != 0 || green != 0 || blue != 0; }
};

/// A scheme. Never deleted through this base. [any]
class CPianoColors {
public:
    /// The constant entry of the note's pitch class; the note is 0 or more.
    virtual const TKeyColor* GetNoteColor(int note) const noexcept = 0;

protected:
    ~CPianoColors() = default;
};

/// White keys run through the spectrum from red to violet; black keys are not tinted.
class CRainbowColors final : public CPianoColors {
public:
    const TKeyColor* GetNoteColor(int note) const noexcept override;
};

/// Every pitch class has its own colour, after Scriabin's.
class CScriabinColors final : public CPianoColors {
public:
    const TKeyColor* GetNoteColor(int note) const noexcept override;
};

/// The one instance of each scheme, made at the first call and alive until the program ends. [any]
const CPianoColors& GetRainbowColors();
const CPianoColors& GetScriabinColors();

}  // namespace NK::Piano
