#pragma once

#include <Pegasus/Common/Config.h>

namespace Pegasus {

/// What a server may ask of a client. An answer that passes one of the limits ends in an exception that is an
/// ExceedsLimit, too (FailureMarks.h); what had been read of it is given back.
struct ClientLimits {
    static constexpr Uint32 kConnectMilliseconds = 10000;
    static constexpr Uint64 kAnswerBytes = Uint64{1} << 30U;
    static constexpr Uint64 kAnswerObjects = 10000000;
    static constexpr Uint32 kInterimAnswers = 100;
    static constexpr Uint64 kFrameBytes = Uint64{1} << 20U;

    /// For each step towards a connection, in milliseconds: resolving the name, one address's acceptance, the TLS
    /// handshake. The time-out of the operation counts, too.
    Uint32 connectMilliseconds = kConnectMilliseconds;
    /// The body of one answer.
    Uint64 answerBytes = kAnswerBytes;
    /// Classes, instances, names or declarations in one answer.
    Uint64 answerObjects = kAnswerObjects;
    /// Answers of the kind "100 Continue" before the one that counts.
    Uint32 interimAnswers = kInterimAnswers;
    /// What stands outside the objects in one answer: the elements around them, comments, blanks.
    Uint64 frameBytes = kFrameBytes;
};

} // namespace Pegasus
