#include "SoakFaults.h"

#include "support/FaultyServer.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstddef>
#include <thread>

namespace bench {

namespace {

using support::Connection;

constexpr std::uint16_t kPort = 5988;
constexpr std::size_t kEndlessBytes = std::size_t{4} << 20U;
constexpr std::size_t kMaxMutations = 8;
constexpr std::chrono::milliseconds kStall(300);

/// What becomes of a right answer on its way to the client.
using Fault = void (*)(Connection& client, const std::string& answer, Generator& generator);

std::size_t Place(const std::string& answer, Generator& generator) { return Pick(generator, answer.size() + 1); }

void SaySomethingElse(Connection& client, const std::string& /*answer*/, Generator& generator) {
    constexpr std::array kTexts{
        "HTTP/1.1 500 Internal Server Error\r\nContent-Length: 0\r\n\r\n",
        "HTTP/1.1 401 Unauthorized\r\nWWW-Authenticate: Basic realm=\"x\"\r\nContent-Length: 0\r\n\r\n",
        "HTTP/1.1 302 Found\r\nLocation: http://127.0.0.1/\r\nContent-Length: 0\r\n\r\n",
        "HTTP/1.1 204 No Content\r\n\r\n",
        "HTTP/9.9 200 OK\r\nContent-Length: 5\r\n\r\nhello",
        "HTTP/1.1 200 OK\r\nContent-Type: text/html\r\nContent-Length: 13\r\n\r\n<html></html>",
        "HTTP/1.1 200 OK\r\nContent-Type: application/xml\r\nTransfer-Encoding: chunked\r\n\r\nZZ\r\n",
        "HTTP/1.1 200 OK\r\nContent-Type: application/xml\r\nContent-Length: -1\r\n\r\n",
        "SSH-2.0-OpenSSH_9.2\r\n",
        "\r\n\r\n\r\n",
    };
    client.Write(kTexts[Pick(generator, kTexts.size())]);
}

void Mutate(Connection& client, const std::string& answer, Generator& generator) {
    std::string changed = answer;
    for (std::size_t i = 1 + Pick(generator, kMaxMutations); i > 0 && !changed.empty(); --i) {
        changed[Pick(generator, changed.size())] = static_cast<char>(Pick(generator, 256));
    }
    client.Write(changed);
}

void Trickle(Connection& client, const std::string& answer, Generator& generator) {
    const std::size_t portion = 1 + Pick(generator, 64);
    for (std::size_t at = 0; at < answer.size() && client.Write(answer.substr(at, portion)); at += portion) {
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
}

void GoOnForLong(Connection& client, const std::string& answer, Generator& generator) {
    const std::size_t end = Place(answer, generator);
    const std::string again = answer.substr(0, end).substr(end / 2) + ' ';
    client.Write("HTTP/1.1 200 OK\r\nContent-Type: application/xml\r\n\r\n" +
                 answer.substr(std::min(answer.size(), answer.find("\r\n\r\n"))));
    for (std::size_t sent = 0; sent < kEndlessBytes && client.Write(again); sent += again.size()) {
    }
}

const std::array kFaults{
    Fault([](Connection& client, const std::string&, Generator&) { client.WaitForPeerClose(); }),
    Fault([](Connection& client, const std::string&, Generator&) { client.Reset(); }),
    Fault([](Connection& client, const std::string& answer, Generator& generator) {
        support::faults::TruncatedAt(Place(answer, generator))(client, answer);
    }),
    Fault([](Connection& client, const std::string& answer, Generator& generator) {
        support::faults::ResetAt(Place(answer, generator))(client, answer);
    }),
    Fault([](Connection& client, const std::string& answer, Generator& generator) {
        support::faults::StalledAt(Place(answer, generator))(client, answer);
    }),
    Fault([](Connection& client, const std::string& answer, Generator& generator) {
        support::faults::WithLengthOffBy(static_cast<int>(Pick(generator, 100)) - 50)(client, answer);
    }),
    Fault([](Connection& client, const std::string& answer, Generator&) {
        support::faults::WithMessageId("another")(client, answer);
    }),
    Fault(
        [](Connection& client, const std::string& answer, Generator&) { support::faults::Doubled()(client, answer); }),
    Fault(SaySomethingElse),
    Fault(Mutate),
    Fault(Mutate),
    Fault(Mutate),
    Fault(Trickle),
    Fault(GoOnForLong),
};

/// As if the server kept the connection.
std::string KeptOpen(std::string answer) {
    constexpr std::string_view kClose = "Connection: close\r\n";
    const auto at = answer.find(kClose);
    return at == std::string::npos ? answer : answer.erase(at, kClose.size());
}

} // namespace

std::size_t Pick(Generator& generator, std::size_t count) {
    return std::uniform_int_distribution<std::size_t>(0, count - 1)(generator);
}

void ServeWithFaults(Connection& client, const std::string& address, Generator& generator) {
    constexpr std::size_t kMaxRightAnswers = 8;
    for (std::size_t right = Pick(generator, kMaxRightAnswers);; --right) {
        const auto request = client.ReadRequest();
        if (!request) {
            return;
        }
        const std::string answer = support::FaultyServer::Ask(address, kPort, *request);
        if (right == 0) {
            kFaults[Pick(generator, kFaults.size())](client, answer, generator);
            return;
        }
        client.Write(KeptOpen(answer));
    }
}

void SendInsteadOfTls(Connection& client, Generator& generator) {
    std::string garbage(Pick(generator, 200), ' ');
    for (char& byte : garbage) {
        byte = static_cast<char>(Pick(generator, 256));
    }
    if (Pick(generator, 2) == 0) {
        garbage.insert(0, "\x16\x03\x03"); // the begin of a record of the handshake
    }
    client.Write(garbage);
    std::this_thread::sleep_for(Pick(generator, 4) == 0 ? kStall : std::chrono::milliseconds(0));
}

} // namespace bench
