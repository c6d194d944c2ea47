#pragma once

#include <Pegasus/Common/Config.h>

namespace Pegasus {
inline namespace bundled {

/// The limits of what a client accepts from a server. An answer that passes one of them ends in an exception that is an
/// ExceedsLimit, too (FailureMarks.h); what had been read of it is freed.
struct ClientLimits {
    static constexpr Uint32 kConnectMilliseconds = 10000;
    static constexpr Uint64 kAnswerBytes = Uint64{1} << 30U;
    static constexpr Uint64 kAnswerObjects = 10000000;
    static constexpr Uint32 kInterimAnswers = 100;
    static constexpr Uint64 kFrameBytes = Uint64{1} << 20U;

    /// The time for each step of connecting, in milliseconds: resolving the name, connecting to one address, the TLS
    /// handshake. The time-out of the operation applies, too.
    Uint32 connectMilliseconds = kConnectMilliseconds;
    /// Bytes in the body of one answer.
    Uint64 answerBytes = kAnswerBytes;
    /// Classes, instances, names or declarations in one answer.
    Uint64 answerObjects = kAnswerObjects;
    /// Answers of the kind "100 Continue" before the one that counts.
    Uint32 interimAnswers = kInterimAnswers;
    /// Bytes outside the objects of one answer: the elements around them, comments, blanks.
    Uint64 frameBytes = kFrameBytes;
};

} // namespace bundled
} // namespace Pegasus
