// Which three-key chords a computer keyboard reports.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

namespace NK::Piano {

/// Goes through chords of three keys, one after the other, and finds those of which the keyboard drops a key: its
/// wiring cannot tell that one from others that are down. Nobody is told of such a key, but it comes in the same report
/// of the keyboard in which one of the others goes. A chord is decided when one of its keys is let go; the next one's
/// turn comes when all keys are up. Keys are native scan codes. [gui]
class CRolloverTest {
public:
    /// What comes within this time is one report of the keyboard.
    static constexpr std::uint64_t kReportMs = 5;

    using CChord = std::array<std::uint32_t, 3>;
    struct TDropped {
        CChord chord;
        std::uint32_t key;  ///< of the chord, which is dropped

        friend bool operator==(const TDropped&, const TDropped&) = default;
    };

    CRolloverTest();

    /// Time stamps of the events in ms; 0 is unknown.
    void Press(std::uint32_t key, std::uint64_t timeMs);
    void Release(std::uint32_t key, std::uint64_t timeMs);
    /// The releases will go elsewhere; the chord is tried again.
    void ReleaseAll();
    void StartAgain();

    bool IsDown(std::uint32_t key) const noexcept;
    std::size_t GetDownCount() const noexcept { return down_.size(); }
    std::size_t GetMostDown() const noexcept { return most_; }

    std::size_t GetChordCount() const noexcept;
    /// Of the chord whose turn it is, from 0; the count when all are decided.
    std::size_t GetNumber() const noexcept { return number_; }
    bool IsFinished() const noexcept { return number_ == GetChordCount(); }
    /// Whose turn it is; of keys 0 when all are decided.
    CChord GetChord() const noexcept;
    bool IsWholeChordDown() const noexcept;

    /// Whether two keys of the chord are down: then the user may say that the third one is held and dropped.
    bool CanBeDropped() const noexcept;
    void TellDropped();
    const std::vector<TDropped>& GetDropped() const noexcept { return dropped_; }

private:
    struct TMove {
        std::uint32_t key = 0;
        std::uint64_t timeMs = 0;
    };
    static bool IsOneReport(std::uint64_t earlierMs, std::uint64_t laterMs) noexcept;
    bool IsOfChord(std::uint32_t key) const noexcept;
    std::size_t CountChordDown() const noexcept;
    void Decide(std::uint32_t droppedKey);  ///< 0 for none

    std::vector<std::uint32_t> down_;
    std::size_t most_ = 0;
    std::size_t number_ = 0;
    bool decided_ = false;  ///< and some key is down yet
    TMove released_;        ///< the last key of the chord that was
    TMove pressed_;
    std::vector<TDropped> dropped_;
};

}  // namespace NK::Piano
