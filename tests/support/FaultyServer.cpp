#include "support/FaultyServer.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <stdexcept>
#include <string_view>
#include <thread>
#include <utility>

namespace support {

namespace {

/// A connection to the server that is asked.
class Upstream {
  public:
    Upstream(const std::string& address, std::uint16_t port)
        : descriptor_(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
        sockaddr_in peer{};
        peer.sin_family = AF_INET;
        peer.sin_port = htons(port);
        ::inet_pton(AF_INET, address.c_str(), &peer.sin_addr);
        if (::connect(descriptor_, reinterpret_cast<const sockaddr*>(&peer), sizeof peer) != 0) {
            ::close(descriptor_);
            throw std::runtime_error("no server at " + address);
        }
    }
    ~Upstream() { ::close(descriptor_); }
    Upstream(const Upstream&) = delete;
    Upstream& operator=(const Upstream&) = delete;

    void Write(std::string_view bytes) const {
        while (!bytes.empty()) {
            const auto sent = ::send(descriptor_, bytes.data(), bytes.size(), MSG_NOSIGNAL);
            if (sent <= 0) {
                throw std::runtime_error("the server has closed the connection");
            }
            bytes.remove_prefix(static_cast<std::size_t>(sent));
        }
    }

    std::string ReadToEnd() const {
        std::string all;
        std::array<char, 65536> buffer{};
        ssize_t received = 0;
        while ((received = ::recv(descriptor_, buffer.data(), buffer.size(), 0)) > 0) {
            all.append(buffer.data(), static_cast<std::size_t>(received));
        }
        return all;
    }

  private:
    int descriptor_;
};

/// The text with what stands between two texts, the first one included, replaced; the answer must have both.
std::string Replaced(const std::string& answer, const std::string& begin, const std::string& end,
                     const std::string& replacement) {
    const auto from = answer.find(begin);
    const auto to = from == std::string::npos ? from : answer.find(end, from + begin.size());
    if (to == std::string::npos) {
        throw std::runtime_error("the answer has no " + begin);
    }
    return answer.substr(0, from) + replacement + answer.substr(to);
}

/// As if the server kept the connection.
std::string KeptOpen(const std::string& answer) { return Replaced(answer, "Connection: close\r\n", "", ""); }

/// As if the end of the connection was that of the answer.
std::string WithoutLength(const std::string& answer) { return Replaced(answer, "Content-Length: ", "\r\n", "X: x"); }

} // namespace

namespace faults {

Fault TruncatedAt(std::size_t bytes) {
    return [bytes](Connection& client, const std::string& answer) { client.Write(answer.substr(0, bytes)); };
}

Fault ResetAt(std::size_t bytes) {
    return [bytes](Connection& client, const std::string& answer) {
        client.Write(answer.substr(0, bytes));
        client.Reset();
    };
}

Fault StalledAt(std::size_t bytes) {
    return [bytes](Connection& client, const std::string& answer) {
        client.Write(answer.substr(0, bytes));
        client.WaitForPeerClose();
    };
}

Fault Delayed(std::chrono::milliseconds time) {
    return [time](Connection& client, const std::string& answer) {
        std::this_thread::sleep_for(time);
        client.Write(answer);
    };
}

Fault Dripped(std::chrono::milliseconds pause) {
    return [pause](Connection& client, const std::string& answer) {
        for (const char& byte : answer) {
            if (!client.Write({&byte, 1})) {
                return;
            }
            std::this_thread::sleep_for(pause);
        }
    };
}

Fault Doubled() {
    return [](Connection& client, const std::string& answer) {
        client.Write(KeptOpen(answer) + KeptOpen(answer));
        client.WaitForPeerClose();
    };
}

Fault GarbledAt(std::size_t byte) {
    return [byte](Connection& client, const std::string& answer) {
        std::string garbled = answer;
        if (byte < garbled.size()) {
            garbled[byte] = static_cast<char>(static_cast<unsigned char>(garbled[byte]) ^ 0x85U);
        }
        client.Write(garbled);
    };
}

Fault WithLengthOffBy(int bytes) {
    return [bytes](Connection& client, const std::string& answer) {
        constexpr std::string_view kName = "Content-Length: ";
        const auto begin = answer.find(kName);
        if (begin == std::string::npos) {
            throw std::runtime_error("the answer has no length");
        }
        const int length = std::stoi(answer.substr(begin + kName.size()));
        client.Write(Replaced(KeptOpen(answer), std::string(kName), "\r\n",
                              std::string(kName) + std::to_string(length + bytes)));
        client.WaitForPeerClose();
    };
}

Fault WithMessageId(const std::string& id) {
    return [id](Connection& client, const std::string& answer) {
        client.Write(Replaced(WithoutLength(answer), "MESSAGE ID=\"", "\" ", "MESSAGE ID=\"" + id));
    };
}

Fault Endless(const std::string& text) {
    return [text](Connection& client, const std::string& answer) {
        const std::string unframed = WithoutLength(answer);
        const auto end = unframed.find(text);
        if (end == std::string::npos) {
            throw std::runtime_error("the answer has no " + text);
        }
        client.Write(unframed.substr(0, end));
        while (client.Write(text)) {
        }
    };
}

} // namespace faults

FaultyServer::FaultyServer(std::string serverAddress, std::uint16_t serverPort, Fault fault)
    : server_([serverAddress = std::move(serverAddress), serverPort, fault = std::move(fault)](Connection& client) {
          if (const auto request = client.ReadRequest()) {
              fault(client, Ask(serverAddress, serverPort, *request));
          }
      }) {}

std::string FaultyServer::Ask(const std::string& serverAddress, std::uint16_t serverPort, const HttpRequest& request) {
    // Without trailers the answer is in one piece, whose length the faults can change.
    std::string text = request.method + ' ' + request.target + " HTTP/1.1\r\n";
    for (const auto& [name, value] : request.headers) {
        if (name != "TE" && name != "Connection") {
            text.append(name).append(": ").append(value).append("\r\n");
        }
    }
    const Upstream upstream(serverAddress, serverPort);
    upstream.Write(text + "Connection: close\r\n\r\n" + request.body);
    return upstream.ReadToEnd();
}

} // namespace support
