#include "engine/Arpeggiators.h"

#include <algorithm>

#include "nk/nk_exception.h"

namespace Kivora {

using NK::MIDI::CArpeggiator1;

std::size_t Arpeggiators::ToPlace(int index) {
    if (index < 0 || index >= kCount) {
        throw NK::CBadIndexException();
    }
    return static_cast<std::size_t>(index);
}

bool Arpeggiators::HasNotes() const {
    return std::any_of(all_.begin(), all_.end(), [](const CArpeggiator1& one) { return one.HasNotes(); });
}

bool Arpeggiators::IsPlaying() const {
    return std::any_of(all_.begin(), all_.end(), [](const CArpeggiator1& one) { return one.IsPlaying(); });
}

void Arpeggiators::Reset() {
    for (CArpeggiator1& arpeggiator : all_) {
        arpeggiator.Reset();
    }
}

void Arpeggiators::EndLatched() {
    for (CArpeggiator1& arpeggiator : all_) {
        arpeggiator.ReleaseLatched();
    }
}

void Arpeggiators::SyncTo(const NK::MIDI::MusicalClock& clock) {
    for (CArpeggiator1& arpeggiator : all_) {
        arpeggiator.SyncToTime(&clock);
    }
}

void Arpeggiators::Play(const NK::MIDI::MusicalClock& clock, NK::MIDI::CMIDIOutputBase& output) {
    for (CArpeggiator1& arpeggiator : all_) {
        arpeggiator.Process(nullptr, 0, clock, output);
    }
}

}  // namespace Kivora
