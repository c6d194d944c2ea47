#include "support/CimServer.h"

#include <openssl/evp.h>
#include <pugixml.hpp>

#include <algorithm>
#include <cctype>
#include <mutex>
#include <optional>
#include <sstream>
#include <utility>

namespace support {

namespace {

using Call = CimServer::Call;

struct TableEntry {
    std::string content; ///< what stands inside IMETHODRESPONSE
    std::string trailers;
};

std::string ToLower(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return text;
}

std::string EscapeXml(const std::string& text) {
    std::string escaped;
    for (const char c : text) {
        switch (c) {
        case '&':
            escaped += "&amp;";
            break;
        case '<':
            escaped += "&lt;";
            break;
        case '"':
            escaped += "&quot;";
            break;
        default:
            escaped += c;
        }
    }
    return escaped;
}

std::string EncodeUri(const std::string& text) {
    static constexpr char kHex[] = "0123456789ABCDEF";
    std::string encoded;
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (std::isalnum(byte) != 0 || c == '_' || c == '-' || c == '.') {
            encoded += c;
        } else {
            encoded += {'%', kHex[byte >> 4U], kHex[byte & 0xfU]};
        }
    }
    return encoded;
}

std::string Basic(const std::string& user, const std::string& password) {
    const std::string plain = user + ':' + password;
    std::string encoded((plain.size() + 2) / 3 * 4 + 1, '\0');
    const int size =
        EVP_EncodeBlock(reinterpret_cast<unsigned char*>(encoded.data()),
                        reinterpret_cast<const unsigned char*>(plain.data()), static_cast<int>(plain.size()));
    encoded.resize(static_cast<std::size_t>(size));
    return "Basic " + encoded;
}

template <typename Nodes, typename TextOf>
std::string Join(const Nodes& nodes, char separator, TextOf textOf) {
    std::string joined;
    bool first = true;
    for (const pugi::xml_node& node : nodes) {
        joined += (std::exchange(first, false) ? "" : std::string(1, separator)) + textOf(node);
    }
    return joined;
}

std::string ParameterText(const pugi::xml_node& parameter) {
    const pugi::xml_node content = parameter.first_child();
    if (const pugi::xml_attribute name = content.attribute("NAME")) {
        return name.value();
    }
    const auto text = [](const pugi::xml_node& value) { return std::string(value.text().get()); };
    return content.name() == std::string("VALUE.ARRAY") ? Join(content.children("VALUE"), ',', text) : text(content);
}

Call Understand(HttpRequest request) {
    pugi::xml_document document;
    document.load_buffer(request.body.data(), request.body.size());
    const pugi::xml_node message = document.child("CIM").child("MESSAGE");
    const pugi::xml_node method = message.child("SIMPLEREQ").child("IMETHODCALL");

    Call call;
    call.messageId = message.attribute("ID").value();
    call.method = method.attribute("NAME").value();
    call.nameSpace = Join(method.child("LOCALNAMESPACEPATH").children("NAMESPACE"), '/',
                          [](const pugi::xml_node& step) { return std::string(step.attribute("NAME").value()); });
    for (const pugi::xml_node& parameter : method.children("IPARAMVALUE")) {
        call.parameters[parameter.attribute("NAME").value()] = ParameterText(parameter);
    }
    call.http = std::move(request);
    return call;
}

std::string MainParameter(const Call& call) {
    for (const char* name : {"ClassName", "QualifierName", "EnumerationContext"}) {
        if (const auto found = call.parameters.find(name); found != call.parameters.end()) {
            return found->second;
        }
    }
    return {};
}

bool IsOfPulledEnumerations(const std::string& method) {
    return method.rfind("Open", 0) == 0 || method.rfind("Pull", 0) == 0 || method == "CloseEnumeration" ||
           method == "EnumerationCount";
}

std::string OutputParameter(const std::string& name, const std::string& type, const std::string& text) {
    return "<PARAMVALUE NAME=\"" + name + "\" PARAMTYPE=\"" + type + "\"><VALUE>" + EscapeXml(text) +
           "</VALUE></PARAMVALUE>\n";
}

std::string ErrorElement(unsigned code, const std::string& description) {
    return "<ERROR CODE=\"" + std::to_string(code) + "\" DESCRIPTION=\"" + EscapeXml(description) + "\"/>";
}

std::string Envelope(const std::string& messageId, const std::string& method, const std::string& content) {
    return "<?xml version=\"1.0\" encoding=\"utf-8\" ?>\n"
           "<CIM CIMVERSION=\"2.0\" DTDVERSION=\"2.0\">\n"
           "<MESSAGE ID=\"" +
           EscapeXml(messageId) +
           "\" PROTOCOLVERSION=\"1.0\">\n"
           "<SIMPLERSP>\n"
           "<IMETHODRESPONSE NAME=\"" +
           EscapeXml(method) + "\">\n" + content +
           "</IMETHODRESPONSE>\n"
           "</SIMPLERSP>\n"
           "</MESSAGE>\n"
           "</CIM>\n";
}

std::string Chunked(const std::string& body, const std::string& trailers) {
    static constexpr std::size_t kChunkSize = 32768;
    std::ostringstream chunks;
    for (std::size_t begin = 0; begin < body.size(); begin += kChunkSize) {
        const std::string chunk = body.substr(begin, kChunkSize);
        chunks << std::hex << chunk.size() << "\r\n" << chunk << "\r\n";
    }
    chunks << "0\r\n" << trailers << "\r\n";
    return chunks.str();
}

std::string Answered(const std::string& body, bool chunked, const std::string& trailers) {
    const std::string head = "HTTP/1.1 200 OK\r\n"
                             "Content-Type: application/xml; charset=utf-8\r\n"
                             "CIMOperation: MethodResponse\r\n";
    return chunked ? head + "Transfer-Encoding: chunked\r\n\r\n" + Chunked(body, trailers)
                   : head + "Content-Length: " + std::to_string(body.size()) + "\r\n\r\n" + body;
}

constexpr char kUnauthorized[] = "HTTP/1.1 401 Unauthorized\r\n"
                                 "WWW-Authenticate: Basic realm=\"test\"\r\n"
                                 "Content-Length: 0\r\n\r\n";

} // namespace

class CimServer::Impl {
  public:
    explicit Impl(std::string address)
        : server_([this](Connection& connection) { Serve(connection); }, std::move(address)) {}

    ScriptedServer& Server() { return server_; }

    void Put(const std::string& method, const std::string& object, TableEntry entry) {
        const std::lock_guard<std::mutex> lock(mutex_);
        table_[{method, ToLower(object)}] = std::move(entry);
    }

    void SetFraming(Framing framing) {
        const std::lock_guard<std::mutex> lock(mutex_);
        framing_ = framing;
    }

    void RequireUser(const std::string& user, const std::string& password) {
        const std::lock_guard<std::mutex> lock(mutex_);
        credentials_ = Basic(user, password);
    }

    void AnswerNextWith(const std::string& bytes) {
        const std::lock_guard<std::mutex> lock(mutex_);
        nextAnswer_ = bytes;
    }

    std::vector<Call> Calls() const {
        const std::lock_guard<std::mutex> lock(mutex_);
        return calls_;
    }

    void ForgetCalls() {
        const std::lock_guard<std::mutex> lock(mutex_);
        calls_.clear();
    }

  private:
    void Serve(Connection& connection) {
        while (std::optional<HttpRequest> request = connection.ReadRequest()) {
            bool last = false;
            if (!connection.Write(Reply(std::move(*request), last)) || last) {
                return;
            }
        }
    }

    std::string Reply(HttpRequest request, bool& last) {
        const std::string authorization = request.Header("Authorization");
        const Call call = Understand(std::move(request));

        const std::lock_guard<std::mutex> lock(mutex_);
        calls_.push_back(call);
        if (nextAnswer_) {
            last = true;
            return *std::exchange(nextAnswer_, std::nullopt);
        }
        if (!credentials_.empty() && authorization != credentials_) {
            return kUnauthorized;
        }
        const auto found = table_.find({call.method, ToLower(MainParameter(call))});
        const TableEntry& unknown = IsOfPulledEnumerations(call.method) ? unsupported_ : unknown_;
        const TableEntry& entry = found != table_.end() ? found->second : unknown;
        return Answered(Envelope(call.messageId, call.method, entry.content),
                        framing_ == Framing::kChunked || !entry.trailers.empty(), entry.trailers);
    }

    mutable std::mutex mutex_;
    std::map<std::pair<std::string, std::string>, TableEntry> table_;
    const TableEntry unknown_{ErrorElement(6, "CIM_ERR_NOT_FOUND: the test's table has no answer"), ""};
    const TableEntry unsupported_{ErrorElement(7, "CIM_ERR_NOT_SUPPORTED: there are no pulled enumerations"), ""};
    Framing framing_ = Framing::kContentLength;
    std::string credentials_;
    std::optional<std::string> nextAnswer_;
    std::vector<Call> calls_;
    ScriptedServer server_; // last: its scripts use all the others
};

CimServer::CimServer(std::string address) : impl_(std::make_unique<Impl>(std::move(address))) {}

CimServer::~CimServer() = default;

std::uint16_t CimServer::Listen(std::uint16_t port) { return impl_->Server().Listen(port); }

std::uint16_t CimServer::ListenTls(std::uint16_t port, const TestCertificate& certificate) {
    return impl_->Server().ListenTls(port, certificate);
}

void CimServer::Stop() { impl_->Server().Stop(); }

const std::string& CimServer::Address() const { return impl_->Server().Address(); }

std::size_t CimServer::ConnectionCount() const { return impl_->Server().ConnectionCount(); }

void CimServer::Answer(const std::string& method, const std::string& object, const std::string& returnValue,
                       const std::string& outputParameters) {
    impl_->Put(method, object, {"<IRETURNVALUE>\n" + returnValue + "</IRETURNVALUE>\n" + outputParameters, ""});
}

void CimServer::AnswerPortion(const std::string& method, const std::string& object, const std::string& objects,
                              const std::string& next) {
    Answer(method, object, objects,
           (next.empty() ? "" : OutputParameter("EnumerationContext", "string", next)) +
               OutputParameter("EndOfSequence", "boolean", next.empty() ? "TRUE" : "FALSE"));
}

void CimServer::Fail(const std::string& method, const std::string& object, unsigned code,
                     const std::string& description, ErrorPlace place) {
    if (place == ErrorPlace::kBody) {
        impl_->Put(method, object, {ErrorElement(code, description), ""});
    } else {
        impl_->Put(method, object,
                   {"", "CIMStatusCode: " + std::to_string(code) +
                            "\r\nCIMStatusCodeDescription: " + EncodeUri(description) + "\r\n"});
    }
}

void CimServer::SetFraming(Framing framing) { impl_->SetFraming(framing); }

void CimServer::RequireUser(const std::string& user, const std::string& password) {
    impl_->RequireUser(user, password);
}

void CimServer::AnswerNextWith(const std::string& bytes) { impl_->AnswerNextWith(bytes); }

std::vector<Call> CimServer::Calls() const { return impl_->Calls(); }

void CimServer::ForgetCalls() { impl_->ForgetCalls(); }

} // namespace support
