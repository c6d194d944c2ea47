#pragma once

#include <chrono>
#include <map>
#include <string>
#include <vector>

namespace exchange {

using Headers = std::map<std::string, std::string>;

/// An HTTP response in parts, its chunks put together. Names of headers are in lower case.
struct Response {
    int status = 0;
    Headers headers;
    std::string body;
    bool isChunked = false;
    /// The number of chunks that were not empty.
    std::size_t chunks = 0;
    Headers trailers;
};

/// The body of a request for an intrinsic method; parameters are IPARAMVALUE elements.
std::string OperationBody(const std::string& method, const std::string& parameters = "",
                          const std::string& nameSpace = "root/cimv2");

/// IPARAMVALUE ClassName.
std::string ClassName(const std::string& name);

/// The headers of a request for a method in root/cimv2.
Headers OperationHeaders(const std::string& method);

/// A whole POST request to /cimom. It asks the server to close the connection.
std::string Post(const Headers& headers, const std::string& body);

/// A connection to the HTTP port of this process's address.
class Session {
  public:
    /// The client's system takes about so many bytes before they are read, as many as it likes for 0. The client has an
    /// address that is named, or the server's.
    explicit Session(int receiveBuffer = 0, const std::string& clientAddress = "");
    ~Session();
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    void Write(const std::string& bytes) const;

    /// Sends a request and reads one answer. Throws std::runtime_error when there is no whole answer.
    Response Send(const std::string& request);

    /// Waits for some bytes of an answer, and leaves the others where they are. False when the server has closed.
    bool WaitForAnswer();

    /// Whether there is something to read, the end of the connection included, or comes to be in that time.
    bool WaitForAnswer(std::chrono::milliseconds time) const;

    /// Whether the server has closed the connection, or does so before it sends anything.
    bool IsClosed();

  private:
    bool ReadSome();

    int handle_;
    std::string pending_;
};

/// Sends bytes to the HTTP port of this process's address and reads the answer. Throws std::runtime_error when there is
/// no whole answer.
Response Send(const std::string& bytes);

/// Sends several requests on one connection, each when the answer before is there.
std::vector<Response> SendAll(const std::vector<std::string>& requests);

/// Sends bytes and closes the connection without reading.
void Abandon(const std::string& bytes);

} // namespace exchange
