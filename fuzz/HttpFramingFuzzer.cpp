// A server's answer, as bytes from the connection: whatever they are, and however they arrive, reading them ends in the
// same head, body and trailers or in the same documented exception.

#include "Cost.h"
#include "CutInput.h"
#include "Require.h"
#include "client/CimHeaders.h"
#include "http/BasicAuthentication.h"
#include "http/PercentEncoding.h"
#include "http/ResponseReader.h"

#include <Pegasus/Client/CIMClientException.h>

#include <algorithm>
#include <chrono>
#include <string>

using namespace Pegasus;
using namespace Pegasus::client;
using namespace Pegasus::http;

namespace {

/// A connection to a server that has already sent its answer and then closed its side.
class ReceivedBytes final : public Channel {
  public:
    explicit ReceivedBytes(Pieces pieces) : pieces_(pieces) {}

    void write(std::string_view, const Deadline&) override { Require(false, "reading an answer sends nothing"); }
    std::size_t readSome(char* buffer, std::size_t size, const Deadline&) override {
        Require(size != 0, "there is room to read into");
        const std::string_view piece = pieces_.Next(size);
        std::copy(piece.begin(), piece.end(), buffer);
        return piece.size();
    }
    bool isClosedByPeer() override { return true; }
    bool hasInput() override { return true; }

  private:
    Pieces pieces_;
};

const char* const kFieldNames[] = {
    "CIMOperation",     "Content-Type",      "CIMError",      "PGErrorDetail",
    "WWW-Authenticate", "Transfer-Encoding", "CIMStatusCode", "CIMStatusCodeDescription"};

void CheckPercentEncoding(std::string_view text) {
    const std::string decoded = percentDecoded(text);
    Require(decoded.size() <= text.size(), "decoding makes no text longer");
    const std::string encoded = percentEncoded(decoded);
    Require(percentDecoded(encoded) == decoded, "what is encoded is read back");
    Require(encoded.find_first_of(" \r\n") == std::string::npos, "encoded text stays in its line");
}

std::string Describe(const HttpFields& fields) {
    std::string text = takesBasicAuthentication(fields) ? "Basic\n" : "";
    for (const char* name : kFieldNames) {
        for (const std::string_view value : fields.findAll(name)) {
            CheckPercentEncoding(value);
            text.append(name).append(": ").append(value).append("\n");
        }
    }
    return text;
}

/// The kind of exception that a step ends in, with what it says of the server's error.
template <class Step>
std::string Outcome(Step step) {
    try {
        step();
        return "";
    } catch (const CIMClientMalformedHTTPException& exception) {
        Require(!exception.getMessage().empty(), "an error says what is wrong");
        return "CIMClientMalformedHTTPException";
    } catch (const CIMClientHTTPErrorException& exception) {
        Require(exception.getCode() != 200, "an answer with the status 200 is no HTTP error");
        return std::to_string(exception.getCode()) + std::string(exception.getCIMError().view()) +
               std::string(exception.getCIMErrorDetail().view());
    } catch (const CIMException& exception) {
        Require(exception.getCode() != CIM_ERR_SUCCESS, "success is no error");
        return std::string(exception.getMessage().view());
    } catch (const ConnectionLost&) {
        return "ConnectionLost";
    }
}

std::string ReadAnswer(Pieces pieces) {
    const Endpoint endpoint("server", 5988);
    const Deadline deadline(std::chrono::minutes(1));
    ReceivedBytes channel(pieces);
    ResponseReader reader(channel, endpoint);
    std::string answer;
    std::string body;
    const std::string failure = Outcome([&] {
        const HttpHead& head = reader.readHead(deadline);
        Require(head.status / 100 != 1, "interim answers are skipped");
        answer = std::to_string(head.status) + " " + head.reason + "\n" + Describe(head.fields);
        answer += Outcome([&] { checkCimAnswer(head, endpoint); });
        answer += reader.keepsConnection() ? "\nkeeps\n" : "\ncloses\n";
        reader.readBody([&](std::string_view part) { body += part; }, deadline);
        answer += body + "\n" + Describe(reader.trailers());
        answer += Outcome([&] { checkCimTrailers(reader.trailers(), endpoint); });
    });
    return failure.empty() ? answer : failure;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const CostGuard guard(kReaderBounds, size);
    const CutInput input(data, size);
    Require(ReadAnswer(input.Whole()) == ReadAnswer(input.Cut()), "how an answer is cut does not matter");
    return 0;
}
