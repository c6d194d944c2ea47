#include "LinkServer.h"

#include "CimXml.h"

#include <algorithm>
#include <sstream>

namespace {

constexpr std::uint16_t kHttpPort = 5988;
constexpr unsigned kNotFound = 6; // of CIM
constexpr unsigned kNotSupported = 7;

/// What is asked about: the value of the first key, or a class.
std::string ObjectIn(const std::string& body) {
    const auto mark = body.find("<KEYVALUE");
    if (mark == std::string::npos) {
        return body.find("<CLASSNAME NAME=") == std::string::npos ? std::string() : ClassIn(body);
    }
    const auto begin = body.find('>', mark) + 1;
    return body.substr(begin, body.find('<', begin) - begin);
}

/// The namespace that a request goes to.
std::string NamespaceIn(const std::string& body) {
    const std::string mark = "<NAMESPACE NAME=\"";
    const auto end = body.find("</LOCALNAMESPACEPATH>");
    std::string name;
    for (auto begin = body.find(mark); begin < end; begin = body.find(mark, begin)) {
        begin += mark.size();
        name += (name.empty() ? "" : "/") + body.substr(begin, body.find('"', begin) - begin);
    }
    return name;
}

std::string ReferenceXml(const std::string& role, const std::string& path) {
    return "<KEYBINDING NAME=\"" + role + "\"><VALUE.REFERENCE>" + path + "</VALUE.REFERENCE></KEYBINDING>";
}

} // namespace

std::string WholePathXml(const std::string& path, const std::string& host, const std::string& nameSpace) {
    std::string steps;
    std::istringstream names(nameSpace);
    for (std::string name; std::getline(names, name, '/');) {
        steps += "<NAMESPACE NAME=\"" + name + "\"/>";
    }
    return "<INSTANCEPATH><NAMESPACEPATH><HOST>" + host + "</HOST><LOCALNAMESPACEPATH>" + steps +
           "</LOCALNAMESPACEPATH></NAMESPACEPATH>" + path + "</INSTANCEPATH>";
}

std::string LinkXml(const std::string& cls, const std::string& from, const std::string& to) {
    return "<INSTANCENAME CLASSNAME=\"" + cls + "\">" + ReferenceXml("From", from) + ReferenceXml("To", to) +
           "</INSTANCENAME>";
}

LinkServer::LinkServer()
    : server_([this](support::Connection& connection) {
          while (const auto request = connection.ReadRequest()) {
              connection.Write(AnswerTo(request->body));
          }
      }) {
    server_.Listen(kHttpPort);
}

std::string LinkServer::AnswerTo(const std::string& body) {
    const std::lock_guard<std::mutex> lock(mutex_);
    calls_.push_back({MethodIn(body), NamespaceIn(body), ObjectIn(body), body});
    const Call& call = calls_.back();
    for (const std::string& object : {call.nameSpace + ':' + call.object, call.object}) {
        const auto error = errors_.find({call.method, object});
        if (error != errors_.end()) {
            return HttpFailure(body, error->second);
        }
        const auto answer = answers_.find({call.method, object});
        if (answer != answers_.end()) {
            return HttpAnswer(body, answer->second);
        }
    }
    return HttpFailure(body, MethodIn(body) == "OpenEnumerateInstances" ? kNotSupported : kNotFound);
}

void LinkServer::Answer(const std::string& method, const std::string& object, const std::string& returnValue) {
    const std::lock_guard<std::mutex> lock(mutex_);
    answers_[{method, object}] = returnValue;
}

void LinkServer::Fail(const std::string& method, const std::string& object, unsigned code) {
    const std::lock_guard<std::mutex> lock(mutex_);
    errors_[{method, object}] = code;
}

void LinkServer::Link(const std::string& cls, const std::string& from, const std::string& to) {
    const std::string link = "<OBJECTPATH>" +
                             WholePathXml(LinkXml(cls, PathXml("TEST_Node", from), PathXml("TEST_Node", to))) +
                             "</OBJECTPATH>";
    const std::lock_guard<std::mutex> lock(mutex_);
    answers_[{"ReferenceNames", from}] += link;
    if (from != to) {
        answers_[{"ReferenceNames", to}] += link;
    }
}

std::vector<LinkServer::Call> LinkServer::Calls() const {
    const std::lock_guard<std::mutex> lock(mutex_);
    return calls_;
}

std::size_t LinkServer::CountOf(const std::string& method) const {
    const auto calls = Calls();
    return static_cast<std::size_t>(
        std::count_if(calls.begin(), calls.end(), [&](const Call& call) { return call.method == method; }));
}
