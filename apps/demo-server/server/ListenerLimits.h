#pragma once

#include <chrono>
#include <cstddef>

namespace demo {

/// What the clients of a listener may take of it, all together and each of them. Sizes are in bytes.
struct ListenerLimits {
    // --- Connections ---

    /// Connections that are served at once, each on a thread of its own.
    std::size_t connections = 256;
    /// Connections that wait for a thread; more of them are not accepted until there is room.
    std::size_t waitingConnections = 512;
    /// How long a connection without a request is kept.
    std::chrono::milliseconds idle{30'000};
    /// While others wait, an idle connection is closed at once, and one whose first request does not have all its
    /// headers this long after the connection was made; each has been served for a moment by then.
    std::chrono::milliseconds crowdedHead{5'000};
    std::chrono::milliseconds crowdedMoment{500};

    // --- Requests ---

    /// How long a client may take for a whole request, or for the TLS handshake.
    std::chrono::milliseconds request{15'000};
    /// Requests longer than kSmallRequest that are under way at once, from their bodies to the ends of their answers.
    std::size_t largeRequests = 6;
    /// How long a request waits for others to end, and how many wait, before it is refused with 503.
    std::chrono::milliseconds placeTimeout{3'000};
    std::size_t waitingRequests = 32;
    static constexpr std::size_t kSmallRequest = std::size_t{16} * 1024;

    // --- Answers ---

    /// Answers longer than kShortAnswer that are kept in memory at once, to be sent with their length; others are sent
    /// while they come about.
    std::size_t longAnswers = 8;
    static constexpr std::size_t kShortAnswer = std::size_t{64} * 1024;
    static constexpr std::size_t kLongAnswer = std::size_t{4} * 1024 * 1024;
    /// How long a client may keep an answer waiting in all, and how much it must have taken for each second beyond.
    std::chrono::milliseconds answerWait{30'000};
    std::size_t slowestReader = std::size_t{16} * 1024;
    /// How long answers may still take when the server stops.
    std::chrono::milliseconds stop{3'000};

    // --- Logins ---

    /// Logins that wait at once because others from their addresses have failed.
    std::size_t delayedLogins = 32;
};

} // namespace demo
