#include "libmidi/alsa/AlsaSeqApi.h"

#include <memory>

namespace LibMidi {

namespace {

using PortInfo = std::unique_ptr<snd_seq_port_info_t, decltype(&snd_seq_port_info_free)>;
using Subscription = std::unique_ptr<snd_seq_port_subscribe_t, decltype(&snd_seq_port_subscribe_free)>;

PortInfo MakePortInfo() {
    snd_seq_port_info_t* info = nullptr;
    snd_seq_port_info_malloc(&info);
    return {info, &snd_seq_port_info_free};
}

Subscription MakeSubscription(snd_seq_addr_t sender, snd_seq_addr_t receiver) {
    snd_seq_port_subscribe_t* subscription = nullptr;
    snd_seq_port_subscribe_malloc(&subscription);
    snd_seq_port_subscribe_set_sender(subscription, &sender);
    snd_seq_port_subscribe_set_dest(subscription, &receiver);
    return {subscription, &snd_seq_port_subscribe_free};
}

void Read(const snd_seq_port_info_t* from, AlsaPortInfo& info) {
    info.address = *snd_seq_port_info_get_addr(from);
    info.name = snd_seq_port_info_get_name(from);
    info.capabilities = snd_seq_port_info_get_capability(from);
    info.type = snd_seq_port_info_get_type(from);
}

void SayNothing(const char*, int, const char*, int, const char*, ...) {
}

class AlsaLibrary : public AlsaSeqApi {
public:
    int Open(snd_seq_t** sequencer) override {
        snd_lib_error_set_handler(&SayNothing);  // that there is no sequencer is nothing to complain about
        const int result = snd_seq_open(sequencer, "default", SND_SEQ_OPEN_DUPLEX, SND_SEQ_NONBLOCK);
        snd_lib_error_set_handler(nullptr);
        return result;
    }
    int Close(snd_seq_t* sequencer) override { return snd_seq_close(sequencer); }
    int GetClientId(snd_seq_t* sequencer) override { return snd_seq_client_id(sequencer); }
    int SetClientName(snd_seq_t* sequencer, const char* name) override {
        return snd_seq_set_client_name(sequencer, name);
    }
    int SetClientPoolInput(snd_seq_t* sequencer, std::size_t size) override {
        return snd_seq_set_client_pool_input(sequencer, size);
    }
    int SetInputBufferSize(snd_seq_t* sequencer, std::size_t size) override {
        return snd_seq_set_input_buffer_size(sequencer, size);
    }
    std::vector<int> GetPollDescriptors(snd_seq_t* sequencer) override {
        const int count = snd_seq_poll_descriptors_count(sequencer, POLLIN);
        std::vector<pollfd> polled(static_cast<std::size_t>(count > 0 ? count : 0));
        snd_seq_poll_descriptors(sequencer, polled.data(), static_cast<unsigned int>(polled.size()), POLLIN);
        std::vector<int> descriptors;
        descriptors.reserve(polled.size());
        for (const pollfd& one : polled) {
            descriptors.push_back(one.fd);
        }
        return descriptors;
    }
    int CreateSimplePort(snd_seq_t* sequencer, const char* name, unsigned int capabilities,
                         unsigned int type) override {
        return snd_seq_create_simple_port(sequencer, name, capabilities, type);
    }
    int DeleteSimplePort(snd_seq_t* sequencer, int port) override {
        return snd_seq_delete_simple_port(sequencer, port);
    }
    int QueryNextClient(snd_seq_t* sequencer, AlsaClientInfo& info) override {
        snd_seq_client_info_t* found = nullptr;
        snd_seq_client_info_malloc(&found);
        snd_seq_client_info_set_client(found, info.client);
        const int result = snd_seq_query_next_client(sequencer, found);
        if (result >= 0) {
            info = {snd_seq_client_info_get_client(found), snd_seq_client_info_get_name(found)};
        }
        snd_seq_client_info_free(found);
        return result;
    }
    int QueryNextPort(snd_seq_t* sequencer, int client, int port, AlsaPortInfo& info) override {
        const PortInfo found = MakePortInfo();
        snd_seq_port_info_set_client(found.get(), client);
        snd_seq_port_info_set_port(found.get(), port);
        const int result = snd_seq_query_next_port(sequencer, found.get());
        if (result >= 0) {
            Read(found.get(), info);
        }
        return result;
    }
    int GetAnyPortInfo(snd_seq_t* sequencer, snd_seq_addr_t address, AlsaPortInfo& info) override {
        const PortInfo found = MakePortInfo();
        const int result = snd_seq_get_any_port_info(sequencer, address.client, address.port, found.get());
        if (result >= 0) {
            Read(found.get(), info);
        }
        return result;
    }
    int SubscribePort(snd_seq_t* sequencer, snd_seq_addr_t sender, snd_seq_addr_t receiver) override {
        return snd_seq_subscribe_port(sequencer, MakeSubscription(sender, receiver).get());
    }
    int GetPortSubscription(snd_seq_t* sequencer, snd_seq_addr_t sender, snd_seq_addr_t receiver) override {
        return snd_seq_get_port_subscription(sequencer, MakeSubscription(sender, receiver).get());
    }
    int EventInput(snd_seq_t* sequencer, snd_seq_event_t** event) override {
        return snd_seq_event_input(sequencer, event);
    }
    int EventOutputDirect(snd_seq_t* sequencer, snd_seq_event_t* event) override {
        return snd_seq_event_output_direct(sequencer, event);
    }
};

}  // namespace

AlsaSeqApi& RealAlsaSeqApi() {
    static AlsaLibrary api;
    return api;
}

}  // namespace LibMidi
