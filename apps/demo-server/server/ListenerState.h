#pragma once

#include "server/AccessLog.h"
#include "server/CimService.h"
#include "server/ListenerLimits.h"
#include "server/LoginGate.h"
#include "server/Places.h"
#include "server/StopSignal.h"

namespace demo {

/// What the exchanges of a listener have in common.
struct ListenerState {
    ListenerState(const CimService& itsService, const Users& users, AccessLog* itsLog, const ListenerLimits& itsLimits)
        : service(itsService),
          log(itsLog),
          limits(itsLimits),
          largeRequests(limits.largeRequests, limits.waitingRequests),
          longAnswers(limits.longAnswers, limits.waitingRequests),
          logins(users, stop, limits.delayedLogins) {}

    const CimService& service;
    /// May be null.
    AccessLog* log;
    const ListenerLimits limits;
    StopSignal stop;
    Places largeRequests;
    Places longAnswers;
    LoginGate logins;
};

} // namespace demo
