#include "Fleet.h"

#include "CimXml.h"
#include "ProgramRun.h"

#include <filesystem>
#include <utility>

namespace {

std::string FansXml(const std::vector<std::string>& fans) {
    std::string instances;
    for (const std::string& fan : fans) {
        instances += InstanceXml("TEST_Fan", fan, PropertyXml("Speed", "uint32", "3"));
    }
    return instances;
}

std::string ClassOfFans() { return ClassXml("TEST_Fan", "", DeclarationXml("Speed", "uint32")); }

constexpr const char* kClassNames = "<CLASSNAME NAME=\"TEST_Fan\"/>";

} // namespace

std::string FanAnswer(const std::string& request) {
    const std::string method = MethodIn(request);
    if (method == "GetClass") {
        return HttpAnswer(request, ClassOfFans());
    }
    if (method == "EnumerateClassNames") {
        return HttpAnswer(request, kClassNames);
    }
    if (method == "EnumerateInstances") {
        return HttpAnswer(request, FansXml({"faulty"}));
    }
    constexpr unsigned kNotSupported = 7;
    return HttpFailure(request, kNotSupported);
}

void AnswerWithFans(support::CimServer& server, const std::vector<std::string>& fans) {
    server.Answer("GetQualifier", "Key", QualifierDeclarationXml("Key", "boolean"));
    server.Answer("EnumerateClassNames", "", kClassNames);
    server.Answer("GetClass", "TEST_Fan", ClassOfFans());
    server.Answer("EnumerateInstances", "TEST_Fan", FansXml(fans));
}

support::CimServer& Fleet::Add(const std::string& name, const std::vector<std::string>& fans) {
    auto& server = *servers_.emplace_back(std::make_unique<support::CimServer>());
    AnswerWithFans(server, fans);
    AddConnection(name, server.Listen(0));
    return server;
}

void Fleet::AddDead(const std::string& name) {
    support::ScriptedServer server([](support::Connection&) {});
    const std::uint16_t port = server.Listen(0);
    server.Stop();
    AddConnection(name, port);
}

void Fleet::AddFaulty(const std::string& name, support::Fault fault) {
    AddScripted(name, [fault = std::move(fault)](support::Connection& client) {
        if (const auto request = client.ReadRequest()) {
            fault(client, FanAnswer(request->body));
        }
    });
}

void Fleet::AddScripted(const std::string& name, support::ScriptedServer::Script script) {
    scripted_.push_back(std::make_unique<support::ScriptedServer>(std::move(script)));
    AddConnection(name, scripted_.back()->Listen(0));
}

void Fleet::AddConnection(const std::string& name, std::uint16_t port, const std::string& members) {
    connections_[name] =
        R"({"host":")" + support::LoopbackAddress() + R"(","tls":false,"port":)" + std::to_string(port) + members + '}';
    WriteConnections();
}

void Fleet::RemoveConnection(const std::string& name) {
    connections_.erase(name);
    WriteConnections();
}

support::ProgramRun Fleet::Run(const std::vector<std::string>& arguments) const {
    return RunCimhttp(arguments, {Environment()});
}

std::string Fleet::Environment() const { return "XDG_CONFIG_HOME=" + folder_.Path().string(); }

void Fleet::WriteConnections() const {
    std::string document;
    for (const auto& [name, connection] : connections_) {
        document.append(document.empty() ? "{\"" : ",\n\"").append(name).append("\":").append(connection);
    }
    std::filesystem::create_directory(folder_.Path() / "cimhttp");
    folder_.WriteFile("cimhttp/connections.json", (document.empty() ? "{" : document) + '}');
    std::filesystem::permissions(folder_.Path() / "cimhttp/connections.json",
                                 std::filesystem::perms::owner_read | std::filesystem::perms::owner_write);
}
