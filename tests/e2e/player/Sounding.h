// What sounds at the other end of the outputs, by what was written to them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <set>
#include <string>
#include <tuple>
#include <vector>

namespace Player {

/// Follows note-ons and note-offs, the pedals 64, 66 and 69, the controllers that end notes or lift pedals, and the
/// system reset. A pedal is down from 64 up, as receivers take it.
class Sounding {
public:
    void Take(int output, std::uint8_t status, std::uint8_t data1, std::uint8_t data2);
    /// The device is gone, and its sound with it.
    void Forget(int output);
    bool IsQuiet() const { return held_.empty(); }
    /// How many notes were begun so far.
    std::size_t GetStrikeCount() const { return strikeCount_; }
    /// "output 0, channel 1: note 60" or "...: pedal 64", in order.
    std::vector<std::string> GetNames() const;

private:
    enum class EThing { kNote, kPedal };
    using TKey = std::tuple<int, int, EThing, int>;  ///< output, channel from 1, what, its number

    void TakeController(int output, int channel, int controller, int value);
    void EndAll(int output, int channel, EThing thing);

    std::set<TKey> held_;
    std::size_t strikeCount_ = 0;
};

}  // namespace Player
