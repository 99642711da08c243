#include "midi/CMIDIOutputBase.h"

class CHalfAnOutput : public NK::MIDI::CMIDIOutputBase {
public:
    void SendMessage(NK::MIDI::TMIDIMessage, std::uint32_t) override {}
#ifndef KIVORA_MISTAKE
    void PlayNote(std::uint8_t, std::uint8_t, std::uint8_t, int, std::uint32_t) override {
    }
#endif
};

void Use() {
    CHalfAnOutput output;
}
