// The keys of a PC keyboard by their places, and a test that presses them.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <QImage>
#include <string>
#include <vector>

#include "e2e/InstrumentProcess.h"

/// Key codes of X.
namespace PlaceCodes {

inline constexpr std::uint8_t kShift = 50;
inline constexpr std::uint8_t kCtrl = 37;
inline constexpr std::uint8_t kISO = 94;  ///< between the left SHIFT and Z on European keyboards
inline constexpr std::uint8_t kX = 53;
inline constexpr std::uint8_t kY = 29;
inline constexpr std::uint8_t kZ = 52;

}  // namespace PlaceCodes

/// A layout and its variant.
struct TPlacedLayout {
    const char* layout;
    const char* variant = "";
};

/// Those on which playing by place is tried.
extern const std::vector<TPlacedLayout> kPlacedLayouts;

/// A program that plays by the places of its keys.
class PlacesTest : public testing::Test {
protected:
    /// A press and a release.
    void Move(std::uint8_t code);
    /// Presses all keys of the four rows one after another, which must play what they play on a US keyboard and nothing
    /// else. `asTyped` leaves out the one key that types a character that plays.
    void ExpectAllPlaces(const char* velocity, bool asTyped = false);
    /// Those messages, and none before them that was not expected.
    void ExpectNotes(const std::vector<std::string>& expected, int code);
    /// Of a press and a release.
    static std::vector<std::string> MessagesOf(int note, const char* velocity);
    /// The strip above the piano.
    QImage GrabHints();
    /// All that has been played so far is taken for expected.
    void ForgetNotes() { seen_ = instrument.GetNoteMessages().size(); }

    InstrumentProcess instrument;

private:
    std::size_t seen_ = 0;
};
