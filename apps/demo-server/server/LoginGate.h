#pragma once

#include "server/LoginDelays.h"
#include "server/Places.h"
#include "server/StopSignal.h"
#include "server/Users.h"

#include <cstddef>
#include <optional>
#include <string>

namespace demo {

/// Checks the logins at a listener, and slows down the guessing of passwords. Safe to use from several threads.
class LoginGate {
  public:
    /// Users and signal must outlive the gate. Without users everybody is let in. At most `maxDelayed` logins wait.
    LoginGate(const Users& users, const StopSignal& stop, std::size_t maxDelayed);

    /// The name of the user that the value of a header Authorization lets in, empty for everybody. Throws Refusal when
    /// it lets nobody in, or it is not the turn of the client's address.
    std::string Admit(const std::string& client, const std::string& authorization);

  private:
    bool AwaitTurn(const std::string& client);
    std::optional<std::string> Authenticate(const std::string& client, const std::string& authorization);

    const Users& users_;
    const StopSignal& stop_;
    LoginDelays delays_;
    Places delayed_;
};

} // namespace demo
