#include "server/HttpListener.h"

#include "server/Connection.h"
#include "server/Exchange.h"

#include <exception>

namespace demo {

HttpListener::HttpListener(const CimService& service, const Users& users, AccessLog* log, const std::string& address,
                           int port, const TlsContext* tls, const ListenerLimits& limits)
    : tls_(tls),
      url_((tls ? "https://" : "http://") + address + ':' + std::to_string(port)),
      state_(service, users, log, limits),
      threads_(limits.connections, limits.waitingConnections),
      acceptor_(address, port, state_.stop,
                [this](int socket) { threads_.Enqueue([this, socket](auto made) { Serve(socket, made); }); }) {}

HttpListener::~HttpListener() {
    state_.stop.Raise();
    state_.largeRequests.Close();
    state_.longAnswers.Close();
}

void HttpListener::Serve(int socket, ConnectionThreads::Clock::time_point made) {
    Connection connection(socket, made, tls_ ? tls_->Get() : nullptr, state_.limits, state_.stop, threads_.Crowd());
    try {
        const std::string client = connection.PeerAddress();
        while (connection.WaitForRequest() && Exchange(state_, connection, client).Run()) {
        }
    } catch (const std::exception&) {
        // There is no memory for an answer, not even for that one: the connection ends, and the others are served on.
    }
}

} // namespace demo
