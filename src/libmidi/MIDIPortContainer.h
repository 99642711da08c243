// An ordered list of ports and its iterator. [gui]
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "libmidi/MIDIPort.h"
#include "nk/nk_exception.h"

namespace LibMidi {

/// Failures of the MIDI I/O layer.
class CMIDIException : public NK::CException {
public:
    using NK::CException::CException;
};

/// An ordered list of ports. The finders skip unavailable ports; the finders by name find open ports too, and where
/// none has the name, one that had it (MIDIPort::HadName).
class MIDIPortContainer {
public:
    virtual ~MIDIPortContainer() = default;
    virtual std::uint32_t GetCount() const = 0;
    /// The port at 0..count-1, or null.
    virtual MIDIPort* GetPort(std::uint32_t index) const = 0;
    /// The first input (output) port that is not open, or may be open when `allowOpen` is set; null if none.
    virtual MIDIInPort* FindFirstInput(bool allowOpen) const = 0;
    virtual MIDIOutPort* FindFirstOutput(bool allowOpen) const = 0;
    virtual MIDIInPort* FindInputByName(const NK::CString& name) const = 0;
    virtual MIDIOutPort* FindOutputByName(const NK::CString& name) const = 0;
    /// Calls Close() on every port, whatever its flags.
    virtual void CloseAll() = 0;
};

/// The finders over whatever list a subclass holds.
class MIDIPortWalker : public MIDIPortContainer {
public:
    MIDIInPort* FindFirstInput(bool allowOpen) const override;
    MIDIOutPort* FindFirstOutput(bool allowOpen) const override;
    MIDIInPort* FindInputByName(const NK::CString& name) const override;
    MIDIOutPort* FindOutputByName(const NK::CString& name) const override;
    void CloseAll() override;
};

/// Owns its ports.
class MIDIPortContainerImpl : public MIDIPortWalker {
public:
    std::uint32_t GetCount() const override;
    MIDIPort* GetPort(std::uint32_t index) const override;

    void Append(std::unique_ptr<MIDIPort> port);
    void Clear();

private:
    std::vector<std::unique_ptr<MIDIPort>> ports_;
};

/// Walks a container in order. The container outlives it and does not change meanwhile.
class MIDIPortIterator {
public:
    /// Throws CMIDIException "Null MIDI port list in port iterator" without a list.
    explicit MIDIPortIterator(const MIDIPortContainer* ports);
    bool HasNext() const;
    /// The next port (may be null where the list holds a null entry).
    MIDIPort* Next();

private:
    const MIDIPortContainer* ports_;
    std::uint32_t next_ = 0;
};

}  // namespace LibMidi
