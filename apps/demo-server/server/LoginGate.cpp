#include "server/LoginGate.h"

#include "server/Refusal.h"

namespace demo {

LoginGate::LoginGate(const Users& users, const StopSignal& stop, std::size_t maxDelayed)
    : users_(users), stop_(stop), delayed_(maxDelayed, 0) {}

std::string LoginGate::Admit(const std::string& client, const std::string& authorization) {
    if (users_.IsEmpty()) {
        return "";
    }
    // A request without a name and password, as clients send it to be asked for them, is no guess.
    if (!authorization.empty() && !AwaitTurn(client)) {
        throw Refusal::PutOff(Refusal::Status::too_many_requests, LoginDelays::kLongestDelay);
    }
    const auto user = Authenticate(client, authorization);
    if (!user) {
        throw Refusal(Refusal::Status::unauthorized, Refusal::Field::www_authenticate, "Basic realm=\"demo-server\"");
    }
    return *user;
}

/// False when that would take too long, or too many wait already.
bool LoginGate::AwaitTurn(const std::string& client) {
    const auto now = LoginDelays::Clock::now();
    const auto turn = delays_.TakeTurn(client, now);
    if (!turn || *turn == now) {
        return turn.has_value();
    }
    const auto place = delayed_.TryTake();
    return place && !stop_.WaitUntil(*turn);
}

std::optional<std::string> LoginGate::Authenticate(const std::string& client, const std::string& authorization) {
    auto user = users_.Authenticate(authorization);
    if (user) {
        delays_.Succeeded(client);
    } else if (!authorization.empty()) {
        delays_.Failed(client, LoginDelays::Clock::now());
    }
    return user;
}

} // namespace demo
