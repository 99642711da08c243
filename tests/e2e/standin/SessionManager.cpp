// A session manager of X11 without a desktop: prints its address, as SESSION_MANAGER has it, and ends the session at a
// line "end": clients are told to save everything without asking anybody, and then to end; or at a line "die", with the
// latter only.
#include <poll.h>
#include <unistd.h>
#include <X11/ICE/ICElib.h>
#include <X11/ICE/ICEutil.h>
#include <X11/SM/SMlib.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <vector>

namespace {

std::vector<IceConn> connections;  // of all clients, those that are still being set up too
std::vector<SmsConn> clients;

Status Register(SmsConn client, SmPointer, char* previousId) {
    if (previousId != nullptr) {
        std::free(previousId);
        return 0;
    }
    char* const id = SmsGenerateClientID(client);
    SmsRegisterClientReply(client, id);
    std::free(id);
    return 1;
}

void AllowInteraction(SmsConn client, SmPointer, int) {
    SmsInteract(client);
}

void EndInteraction(SmsConn, SmPointer, Bool) {
}

void SaveMore(SmsConn client, SmPointer) {
    SmsSaveYourselfPhase2(client);
}

void SaveAtWish(SmsConn, SmPointer, int, Bool, int, Bool, Bool) {
}

void EndSaved(SmsConn client, SmPointer, Bool) {
    SmsDie(client);
}

void Forget(SmsConn client, SmPointer, int count, char** reasons) {
    SmFreeReasons(count, reasons);
    clients.erase(std::remove(clients.begin(), clients.end(), client), clients.end());
    IceConn const connection = SmsGetIceConnection(client);
    SmsCleanUp(client);
    IceSetShutdownNegotiation(connection, 0);
    IceCloseConnection(connection);
    connections.erase(std::remove(connections.begin(), connections.end(), connection), connections.end());
}

void SetProperties(SmsConn, SmPointer, int count, SmProp** properties) {
    for (int i = 0; i < count; ++i) {
        SmFreeProperty(properties[i]);
    }
    std::free(properties);
}

void DeleteProperties(SmsConn, SmPointer, int count, char** names) {
    for (int i = 0; i < count; ++i) {
        std::free(names[i]);
    }
    std::free(names);
}

void TellProperties(SmsConn client, SmPointer) {
    SmsReturnProperties(client, 0, nullptr);
}

Status Welcome(SmsConn client, SmPointer, unsigned long* mask, SmsCallbacks* callbacks, char**) {
    *mask = SmsRegisterClientProcMask | SmsInteractRequestProcMask | SmsInteractDoneProcMask |
            SmsSaveYourselfRequestProcMask | SmsSaveYourselfP2RequestProcMask | SmsSaveYourselfDoneProcMask |
            SmsCloseConnectionProcMask | SmsSetPropertiesProcMask | SmsDeletePropertiesProcMask |
            SmsGetPropertiesProcMask;
    callbacks->register_client.callback = &Register;
    callbacks->interact_request.callback = &AllowInteraction;
    callbacks->interact_done.callback = &EndInteraction;
    callbacks->save_yourself_request.callback = &SaveAtWish;
    callbacks->save_yourself_phase2_request.callback = &SaveMore;
    callbacks->save_yourself_done.callback = &EndSaved;
    callbacks->close_connection.callback = &Forget;
    callbacks->set_properties.callback = &SetProperties;
    callbacks->delete_properties.callback = &DeleteProperties;
    callbacks->get_properties.callback = &TellProperties;
    clients.push_back(client);
    return 1;
}

/// Whoever reaches the socket may come in: it is a test's own.
Bool LetIn(char*) {
    return 1;
}

void Accept(IceListenObj listener) {
    IceAcceptStatus status = IceAcceptFailure;
    if (IceConn const connection = IceAcceptConnection(listener, &status); connection != nullptr) {
        connections.push_back(connection);
    }
}

void Read(IceConn connection) {
    if (IceProcessMessages(connection, nullptr, nullptr) == IceProcessMessagesIOError) {
        connections.erase(std::remove(connections.begin(), connections.end(), connection), connections.end());
        IceSetShutdownNegotiation(connection, 0);
        IceCloseConnection(connection);
    }
}

/// False at the end of the input, which is the test's.
bool ObeyInput() {
    char word[16];
    if (::read(STDIN_FILENO, word, sizeof word) <= 0) {
        return false;
    }
    for (SmsConn const client : clients) {
        if (word[0] == 'e') {
            SmsSaveYourself(client, SmSaveBoth, 1, SmInteractStyleNone, 0);
        } else {
            SmsDie(client);
        }
    }
    return true;
}

}  // namespace

int main() {
    char error[256] = "";
    int count = 0;
    IceListenObj* listeners = nullptr;
    char vendor[] = "test";
    char release[] = "1";
    if (SmsInitialize(vendor, release, &Welcome, nullptr, &LetIn, sizeof error, error) == 0 ||
        IceListenForConnections(&count, &listeners, sizeof error, error) == 0) {
        std::fprintf(stderr, "no session: %s\n", error);
        return 1;
    }
    IceSetIOErrorHandler([](IceConn) {});
    for (int i = 0; i < count; ++i) {
        IceSetHostBasedAuthProc(listeners[i], &LetIn);
    }
    char* const address = IceComposeNetworkIdList(count, listeners);
    std::puts(address);
    std::fflush(stdout);
    std::free(address);
    for (bool goesOn = true; goesOn;) {
        std::vector<pollfd> descriptors{{STDIN_FILENO, POLLIN, 0}};
        for (int i = 0; i < count; ++i) {
            descriptors.push_back({IceGetListenConnectionNumber(listeners[i]), POLLIN, 0});
        }
        const std::vector<IceConn> asked = connections;
        for (IceConn const connection : asked) {
            descriptors.push_back({IceConnectionNumber(connection), POLLIN, 0});
        }
        if (::poll(descriptors.data(), descriptors.size(), -1) < 0) {
            continue;
        }
        std::size_t at = 1;
        for (int i = 0; i < count; ++i, ++at) {
            if (descriptors[at].revents != 0) {
                Accept(listeners[i]);
            }
        }
        for (IceConn const connection : asked) {
            if (descriptors[at++].revents != 0) {
                Read(connection);
            }
        }
        goesOn = descriptors[0].revents == 0 || ObeyInput();
    }
    IceFreeListenObjs(count, listeners);
    return 0;
}
