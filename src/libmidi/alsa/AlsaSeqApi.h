// The calls to the ALSA library's sequencer, as something that a test can replace.
#pragma once

#include <alsa/asoundlib.h>

#include <cstddef>
#include <string>
#include <vector>

namespace LibMidi {

/// What snd_seq_query_next_client() tells of a client.
struct AlsaClientInfo {
    int client = -1;
    std::string name;
};

/// What snd_seq_query_next_port() and snd_seq_get_any_port_info() tell of a port.
struct AlsaPortInfo {
    snd_seq_addr_t address{};
    std::string name;
    unsigned int capabilities = 0;
    unsigned int type = 0;
};

/// One operation for each function of the library's sequencer interface that is used, with its arguments and results
/// (seq.h); a negative result is an error number. What a caller would have to allocate is a plain value here. Events
/// may be sent by several threads and taken by another; the rest is for one thread at a time, but harms neither. [any]
class AlsaSeqApi {
public:
    virtual ~AlsaSeqApi() = default;
    /// "default", both directions, not blocking. What the library has to say about a failure is not printed.
    virtual int Open(snd_seq_t** sequencer) = 0;
    virtual int Close(snd_seq_t* sequencer) = 0;
    virtual int GetClientId(snd_seq_t* sequencer) = 0;
    virtual int SetClientName(snd_seq_t* sequencer, const char* name) = 0;
    virtual int SetClientPoolInput(snd_seq_t* sequencer, std::size_t size) = 0;
    /// In bytes.
    virtual int SetInputBufferSize(snd_seq_t* sequencer, std::size_t size) = 0;
    virtual std::vector<int> GetPollDescriptors(snd_seq_t* sequencer) = 0;
    virtual int CreateSimplePort(snd_seq_t* sequencer, const char* name, unsigned int capabilities,
                                 unsigned int type) = 0;
    virtual int DeleteSimplePort(snd_seq_t* sequencer, int port) = 0;
    /// The client after the one that `info` holds; the first one after -1.
    virtual int QueryNextClient(snd_seq_t* sequencer, AlsaClientInfo& info) = 0;
    /// The port of `client` after the one numbered `port`; the first one after -1.
    virtual int QueryNextPort(snd_seq_t* sequencer, int client, int port, AlsaPortInfo& info) = 0;
    virtual int GetAnyPortInfo(snd_seq_t* sequencer, snd_seq_addr_t address, AlsaPortInfo& info) = 0;
    virtual int SubscribePort(snd_seq_t* sequencer, snd_seq_addr_t sender, snd_seq_addr_t receiver) = 0;
    /// 0 where such a subscription is.
    virtual int GetPortSubscription(snd_seq_t* sequencer, snd_seq_addr_t sender, snd_seq_addr_t receiver) = 0;
    virtual int EventInput(snd_seq_t* sequencer, snd_seq_event_t** event) = 0;
    virtual int EventOutputDirect(snd_seq_t* sequencer, snd_seq_event_t* event) = 0;
};

/// The library itself.
AlsaSeqApi& RealAlsaSeqApi();

}  // namespace LibMidi
