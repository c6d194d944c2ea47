#pragma once

#include "http/Deadline.h"

#include <Pegasus/Client/ClientLimits.h>

#include <chrono>

namespace Pegasus::http {

/// How long it may take to connect: each step has a limit of its own, and all of them end with the operation.
struct ConnectTime {
    // With a deadline alone, the steps have their default limit.
    ConnectTime(const Deadline& wholeOperation,
                std::chrono::milliseconds eachStep = std::chrono::milliseconds(ClientLimits::kConnectMilliseconds))
        : operation(wholeOperation), step(eachStep) {}

    /// For a step that begins now.
    Deadline ofStep() const { return operation.ofStep(step); }

    Deadline operation;
    std::chrono::milliseconds step;
};

} // namespace Pegasus::http
