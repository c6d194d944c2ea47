#include "SchemaServer.h"

#include "SecondSchema.h"
#include "providers/StaticProvider.h"
#include "schema/SchemaReader.h"
#include "server/Answer.h"
#include "wire/CimRequest.h"

#include <utility>

namespace {

constexpr std::uint16_t kHttpPort = 5988;

demo::CimService SecondService() {
    const demo::SchemaDocuments documents(demo::BuiltInSources({SecondSchema()}));
    demo::Schema schema = demo::ReadSchema(documents);
    demo::InstanceProviders instances = demo::DeclaredInstances(documents, schema, demo::CimService::kNamespace);
    demo::EnumerationLimits noPulledEnumerations;
    noPulledEnumerations.open = 0;
    return {std::move(schema), std::move(instances), "schema.example", noPulledEnumerations};
}

std::string Flag(const std::string& name, bool value) {
    return "<IPARAMVALUE NAME=\"" + name + "\"><VALUE>" + (value ? "TRUE" : "FALSE") + "</VALUE></IPARAMVALUE>";
}

std::string RequestBody(const std::string& method, const std::string& className, bool deep) {
    const std::string flags =
        method == "EnumerateInstances" ? Flag("LocalOnly", false) + Flag("DeepInheritance", deep) : "";
    return "<CIM CIMVERSION=\"2.0\" DTDVERSION=\"2.0\"><MESSAGE ID=\"1\" PROTOCOLVERSION=\"1.0\"><SIMPLEREQ>"
           "<IMETHODCALL NAME=\"" +
           method +
           "\"><LOCALNAMESPACEPATH><NAMESPACE NAME=\"root\"/><NAMESPACE NAME=\"cimv2\"/></LOCALNAMESPACEPATH>"
           "<IPARAMVALUE NAME=\"ClassName\"><CLASSNAME NAME=\"" +
           className + "\"/></IPARAMVALUE>" + flags + "</IMETHODCALL></SIMPLEREQ></MESSAGE></CIM>";
}

} // namespace

SchemaServer::SchemaServer() : service_(SecondService()), server_([this](support::Connection& peer) { Serve(peer); }) {
    server_.Listen(kHttpPort);
}

void SchemaServer::SetChange(Change change) {
    const std::lock_guard<std::mutex> lock(mutex_);
    change_ = std::move(change);
}

std::vector<std::string> SchemaServer::TakeChanged() {
    const std::lock_guard<std::mutex> lock(mutex_);
    return std::exchange(changed_, {});
}

std::string SchemaServer::Answer(const std::string& method, const std::string& className, bool deep) const {
    return demo::Answer(service_, demo::ReadRequest(RequestBody(method, className, deep)))->text;
}

void SchemaServer::Serve(support::Connection& peer) {
    while (const auto request = peer.ReadRequest()) {
        const demo::CimRequest call = demo::ReadRequest(request->body);
        const Sent sent = Changed(call.method, demo::Answer(service_, call)->text);
        const std::string head = "HTTP/1.1 200 OK\r\nContent-Type: application/xml; charset=utf-8\r\n"
                                 "CIMOperation: MethodResponse\r\nContent-Length: " +
                                 std::to_string(sent.toldLength) + "\r\n\r\n";
        if (!peer.Write(head + sent.body) || sent.body.size() != sent.toldLength) {
            return;
        }
    }
}

SchemaServer::Sent SchemaServer::Changed(const std::string& method, const std::string& body) {
    const std::lock_guard<std::mutex> lock(mutex_);
    if (!change_ || (method != "EnumerateInstances" && method != "EnumerateInstanceNames")) {
        return {body, body.size()};
    }
    Sent sent = change_(body);
    changed_.push_back(sent.body);
    return sent;
}
