#include "HttpExchange.h"

#include "support/LoopbackAddress.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <cstdint>
#include <sstream>
#include <stdexcept>
#include <string_view>

namespace exchange {

namespace {

constexpr int kPort = 5988;

/// What has arrived is not the whole response.
class Incomplete : public std::runtime_error {
  public:
    Incomplete() : std::runtime_error("the server closed in the middle of an answer") {}
};

std::string TakeLine(std::string_view& text) {
    const auto end = text.find("\r\n");
    if (end == std::string_view::npos) {
        throw Incomplete();
    }
    std::string line(text.substr(0, end));
    text.remove_prefix(end + 2);
    return line;
}

std::string_view TakeBytes(std::string_view& text, std::size_t count) {
    if (text.size() < count) {
        throw Incomplete();
    }
    const auto bytes = text.substr(0, count);
    text.remove_prefix(count);
    return bytes;
}

Headers TakeHeaders(std::string_view& text) {
    Headers headers;
    for (std::string line = TakeLine(text); !line.empty(); line = TakeLine(text)) {
        const auto colon = line.find(": ");
        std::string name = line.substr(0, colon);
        std::transform(name.begin(), name.end(), name.begin(),
                       [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
        headers[name] = line.substr(colon + 2);
    }
    return headers;
}

void TakeChunks(std::string_view& text, Response& response) {
    for (;;) {
        const auto size = std::stoul(TakeLine(text), nullptr, 16);
        if (size == 0) {
            break;
        }
        ++response.chunks;
        response.body += TakeBytes(text, size);
        if (!TakeLine(text).empty()) {
            throw std::runtime_error("a chunk of another length than it says");
        }
    }
    response.trailers = TakeHeaders(text);
}

Response TakeResponse(std::string_view& text) {
    Response response;
    response.status = std::stoi(TakeLine(text).substr(std::string_view("HTTP/1.1 ").size()));
    response.headers = TakeHeaders(text);
    const auto header = [&](const char* name) {
        const auto found = response.headers.find(name);
        return found == response.headers.end() ? std::string() : found->second;
    };
    response.isChunked = header("transfer-encoding") == "chunked";
    if (response.isChunked) {
        TakeChunks(text, response);
    } else if (!header("content-length").empty()) {
        response.body = TakeBytes(text, std::stoul(header("content-length")));
    }
    return response;
}

} // namespace

std::string OperationBody(const std::string& method, const std::string& parameters, const std::string& nameSpace) {
    std::string path;
    std::istringstream components(nameSpace);
    for (std::string component; std::getline(components, component, '/');) {
        path += "<NAMESPACE NAME=\"" + component + "\"/>";
    }
    return "<?xml version=\"1.0\" encoding=\"utf-8\" ?>\n<CIM CIMVERSION=\"2.0\" DTDVERSION=\"2.0\">"
           "<MESSAGE ID=\"7\" PROTOCOLVERSION=\"1.0\"><SIMPLEREQ><IMETHODCALL NAME=\"" +
           method + "\"><LOCALNAMESPACEPATH>" + path + "</LOCALNAMESPACEPATH>" + parameters +
           "</IMETHODCALL></SIMPLEREQ></MESSAGE></CIM>";
}

std::string ClassName(const std::string& name) {
    return "<IPARAMVALUE NAME=\"ClassName\"><CLASSNAME NAME=\"" + name + "\"/></IPARAMVALUE>";
}

Headers OperationHeaders(const std::string& method) {
    return {{"Content-Type", "application/xml; charset=utf-8"},
            {"CIMOperation", "MethodCall"},
            {"CIMMethod", method},
            {"CIMObject", "root%2Fcimv2"}};
}

std::string Post(const Headers& headers, const std::string& body) {
    std::string text = "POST /cimom HTTP/1.1\r\nHost: demo\r\n";
    for (const auto& [name, value] : headers) {
        text.append(name).append(": ").append(value).append("\r\n");
    }
    if (headers.count("Connection") == 0) {
        text += "Connection: close\r\n";
    }
    if (headers.count("Transfer-Encoding") == 0) {
        text += "Content-Length: " + std::to_string(body.size()) + "\r\n";
    }
    return text + "\r\n" + body;
}

namespace {

sockaddr_in AddressOf(const std::string& text, int port) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(static_cast<std::uint16_t>(port));
    ::inet_pton(AF_INET, text.c_str(), &address.sin_addr);
    return address;
}

} // namespace

Session::Session(int receiveBuffer, const std::string& clientAddress)
    : handle_(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    if (receiveBuffer != 0) {
        ::setsockopt(handle_, SOL_SOCKET, SO_RCVBUF, &receiveBuffer, sizeof(receiveBuffer));
    }
    if (!clientAddress.empty()) {
        const auto client = AddressOf(clientAddress, 0);
        ::bind(handle_, reinterpret_cast<const sockaddr*>(&client), sizeof(client));
    }
    const auto server = AddressOf(support::LoopbackAddress(), kPort);
    if (::connect(handle_, reinterpret_cast<const sockaddr*>(&server), sizeof(server)) != 0) {
        throw std::runtime_error("cannot connect");
    }
    // A server that hangs fails the test instead of hanging it.
    const timeval limit{30, 0};
    ::setsockopt(handle_, SOL_SOCKET, SO_RCVTIMEO, &limit, sizeof(limit));
}

Session::~Session() { ::close(handle_); }

void Session::Write(const std::string& bytes) const {
    for (std::string_view rest = bytes; !rest.empty();) {
        const auto sent = ::send(handle_, rest.data(), rest.size(), MSG_NOSIGNAL);
        if (sent <= 0) {
            return;
        }
        rest.remove_prefix(static_cast<std::size_t>(sent));
    }
}

Response Session::Send(const std::string& request) {
    Write(request);
    for (;;) {
        try {
            std::string_view rest = pending_;
            Response response = TakeResponse(rest);
            pending_.erase(0, pending_.size() - rest.size());
            return response;
        } catch (const Incomplete&) {
            if (!ReadSome()) {
                throw;
            }
            while (WaitForAnswer(std::chrono::milliseconds(0)) && ReadSome()) { // before it looks at all of it again
            }
        }
    }
}

bool Session::WaitForAnswer() { return ReadSome(); }

bool Session::WaitForAnswer(std::chrono::milliseconds time) const {
    pollfd handle{handle_, POLLIN, 0};
    return ::poll(&handle, 1, static_cast<int>(time.count())) > 0;
}

bool Session::IsClosed() {
    char byte = 0;
    return pending_.empty() && ::recv(handle_, &byte, 1, 0) == 0;
}

bool Session::ReadSome() {
    std::array<char, 65536> buffer{};
    const auto count = ::recv(handle_, buffer.data(), buffer.size(), 0);
    if (count > 0) {
        pending_.append(buffer.data(), static_cast<std::size_t>(count));
    }
    return count > 0;
}

Response Send(const std::string& bytes) { return Session().Send(bytes); }

std::vector<Response> SendAll(const std::vector<std::string>& requests) {
    Session session;
    std::vector<Response> responses;
    responses.reserve(requests.size());
    for (const auto& request : requests) {
        responses.push_back(session.Send(request));
    }
    return responses;
}

void Abandon(const std::string& bytes) { Session().Write(bytes); }

} // namespace exchange
