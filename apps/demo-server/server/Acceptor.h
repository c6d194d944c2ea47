#pragma once

#include "server/StopSignal.h"

#include <functional>
#include <stdexcept>
#include <string>
#include <thread>

namespace demo {

/// A port that cannot be listened on. The text names it and says why.
class ListenError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/// Takes the connections that clients make to an address and port, on a thread of its own.
class Acceptor {
  public:
    /// Takes over the socket of a connection, unless it throws. While it does not return, no more connections are
    /// accepted.
    using Take = std::function<void(int socket)>;

    /// Listens from now on. The signal must outlive the acceptor. Throws ListenError.
    Acceptor(const std::string& address, int port, const StopSignal& stop, Take take);
    /// Waits until the signal has ended the thread.
    ~Acceptor();
    Acceptor(const Acceptor&) = delete;
    Acceptor& operator=(const Acceptor&) = delete;

  private:
    void Run();
    void AcceptNext();
    void HandOver(int connection);

    const int socket_;
    const StopSignal& stop_;
    const Take take_;
    std::thread thread_;
};

} // namespace demo
