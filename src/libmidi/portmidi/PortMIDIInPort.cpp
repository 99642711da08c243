#include "libmidi/portmidi/PortMIDIInPort.h"

#include "libmidi/portmidi/PortMIDIEvents.h"
#include "libmidi/portmidi/PortMIDIImpl.h"
#include "libmidi/portmidi/TickCounter.h"
#include "nk/nk_logger.h"
#include "nk/nk_thread_role.h"

namespace LibMidi {

PortMIDIInPort::PortMIDIInPort(PortMIDIImpl& implementation, PmDeviceID device, const NK::CString& name)
    : MIDIPortImpl(device, name, kInput),
      QueuedInPort(implementation.GetSleeper()),
      PortMIDIPort(implementation, device) {
}

PortMIDIInPort::~PortMIDIInPort() {
    Close();
}

bool PortMIDIInPort::OpenDevice() {
    constexpr std::int32_t kDefaultBufferSize = 0;
    watch_.BeforeOpening();
    if (GetApi().OpenInput(&stream_, GetDevice(), nullptr, kDefaultBufferSize, &TickCounter::TimeProcedure, nullptr) !=
        pmNoError) {
        stream_ = nullptr;
        return false;
    }
    watch_.AfterOpening();
    isBroken_ = false;
    quietRounds_ = 0;
    BeginReceiving();
    return true;
}

bool PortMIDIInPort::OnOpened() {
    if (!GetImplementation().RunsThreads()) {
        return true;
    }
    thread_ = std::make_unique<InPortThread>(this, &GetImplementation());
    if (!thread_->Begin()) {
        thread_.reset();
        return false;
    }
    GetImplementation().CountOpenInput(true);
    return true;
}

void PortMIDIInPort::OnClosing() {
    SetClosing(true);
    if (thread_ != nullptr) {
        GetImplementation().CountOpenInput(false);
        thread_->End();
        thread_.reset();
    }
}

void PortMIDIInPort::CloseDevice() {
    ClearQueue();
    PortMIDIPort::CloseDevice();
}

bool PortMIDIInPort::IsReadDue() {
    const PmError polled = GetApi().Poll(stream_);
    if (polled > 0) {
        quietRounds_ = 0;
        return true;
    }
    if (polled < 0) {
        isBroken_ = true;
    }
    ++quietRounds_;
    return quietRounds_ % kProbeRounds == 1;
}

void PortMIDIInPort::ReceiveRound() {
    NK_ASSERT_THREAD_ROLE(inputTimer);
    if (!IsOpen()) {
        return;
    }
    const CLockGuard guard(deviceLock_);
    if (!IsOpen() || !IsReadDue()) {
        return;
    }
    PmEvent event{};
    const int result = GetApi().Read(stream_, &event, 1);
    if (result > 0) {
        if (const std::optional<MIDIEvent> received = ToInputEvent(event.message)) {
            QueueEvent(*received);
        }
    } else if (result == pmBufferOverflow) {
        QueueLoss();
    } else if (result < 0) {
        isBroken_ = true;
    }
}

DeviceState PortMIDIInPort::LookAtDevice() {
    switch (watch_.Look()) {
        case DeviceWatch::Presence::kAway:
            return DeviceState::kLost;
        case DeviceWatch::Presence::kReturned:
            return DeviceState::kBack;
        case DeviceWatch::Presence::kElsewhere:
            return DeviceState::kElsewhere;
        default:
            return isBroken_ ? DeviceState::kBack : DeviceState::kWorks;
    }
}

void PortMIDIInPort::DeliverRound() {
    DeliverQueued();
}

PortMIDIInPort::InPortThread::InPortThread(PortMIDIInPort* port, PortMIDIImpl* implementation)
    : RoundThread(kLevelHighest, L"MIDI input port"), port_(port), implementation_(implementation) {
}

void PortMIDIInPort::InPortThread::RunRounds() {
    NK_REGISTER_THREAD_ROLE(input);
    if (port_ == nullptr) {
        NK::Log(L"WARNING: MIDI input port thread: NULL port address.");
        return;
    }
    if (implementation_ == nullptr) {
        NK::Log(L"WARNING: MIDI input port thread: NULL port implementation address.");
        return;
    }
    for (;;) {
        implementation_->GetSleeper().Sleep(1);
        if (IsStopRequested()) {
            return;
        }
        port_->DeliverRound();
    }
}

}  // namespace LibMidi
