#include "browse/BrowserApi.h"

#include "browse/ServerAnswers.h"
#include "output/Json.h"
#include "text/Names.h"
#include "text/ParsedText.h"

#include <nlohmann/json.hpp>

#include <new>

namespace cimhttp {

namespace {

constexpr const char* kJsonType = "application/json";

/// Which status of HTTP, and which word, tells of a failure.
struct Telling {
    unsigned status;
    const char* kind;
};

Telling TellingOf(const Failure& failure) {
    if (dynamic_cast<const TrustNeeded*>(&failure) != nullptr) {
        return {409, "trust"};
    }
    switch (failure.Status()) {
    case Failure::kUsage:
        return {400, "usage"};
    case Failure::kConnection:
        return {502, "connection"};
    case Failure::kAuthentication:
        return {502, "login"};
    case Failure::kNotFound:
        return {404, "notfound"};
    case Failure::kServer:
        return {502, "server"};
    case Failure::kIncomplete:
        return {502, "incomplete"};
    default:
        return {500, "other"};
    }
}

WebAnswer Failed(unsigned status, const char* kind, const std::string& text) {
    return {status, kJsonType, JsonObject().Add("error", JsonText(text)).Add("kind", JsonText(kind)).Text()};
}

std::string Parameter(const WebRequest& request, const char* name) {
    const auto found = request.parameters.find(name);
    return found == request.parameters.end() ? std::string() : found->second;
}

std::string Needed(const WebRequest& request, const char* name) {
    std::string text = Parameter(request, name);
    if (text.empty()) {
        throw Failure(Failure::kUsage, std::string("which ") + name + "?");
    }
    return text;
}

/// What a page sends, an object.
class Sent {
  public:
    explicit Sent(const WebRequest& request) : object_(nlohmann::json::parse(request.body, nullptr, false)) {
        if (!object_.is_object()) {
            throw Failure(Failure::kUsage, "what was sent is no JSON object");
        }
    }

    /// Empty where there is none.
    std::string Text(const char* name) const {
        const auto found = object_.find(name);
        return found != object_.end() && found->is_string() ? found->get<std::string>() : std::string();
    }

    bool Flag(const char* name) const {
        const auto found = object_.find(name);
        return found != object_.end() && found->is_boolean() && found->get<bool>();
    }

  private:
    const nlohmann::json object_;
};

std::string WithLosses(JsonObject answer, const std::vector<std::string>& losses) {
    if (!losses.empty()) {
        answer.Add("losses", JsonTexts(losses));
    }
    return answer.Text();
}

std::string PartJson(const OpenReading::Part& part, const std::string& reading) {
    JsonObject json;
    json.Add("reading", part.isLast ? "null" : JsonText(reading));
    if (!part.columns.empty()) {
        json.Add("columns", part.columns);
    }
    json.Add("rows", part.rows).Add("time", JsonValue(NQORVYX20::TCIMValue(part.time)));
    return WithLosses(json, part.losses);
}

[[noreturn]] void FailAboutQuestion() { throw Failure(Failure::kNotFound, "there is no such question"); }

} // namespace

BrowserApi::BrowserApi(const Plugin& plugin, const Options& options) : options_(options), servers_(plugin, options) {}

WebAnswer BrowserApi::Answer(const std::vector<std::string>& parts, const WebRequest& request) {
    try {
        return {200, kJsonType, Found(parts, request)};
    } catch (const Failure& failure) {
        const auto [status, kind] = TellingOf(failure);
        return Failed(status, kind, failure.what());
    } catch (const std::bad_alloc&) {
        return Failed(500, "incomplete", kTooLittleMemory);
    } catch (const std::exception& exception) {
        return Failed(500, "other", exception.what());
    }
}

std::string BrowserApi::Found(const std::vector<std::string>& parts, const WebRequest& request) {
    if (parts.size() == 1 && parts[0] == "servers") {
        return request.isPost ? Add(request) : List();
    }
    if (parts.size() != 3 || parts[0] != "servers") {
        FailAboutQuestion();
    }
    return request.isPost ? Told(parts[1], parts[2], request) : AnswerAbout(parts[1], parts[2], request);
}

std::string BrowserApi::AnswerAbout(const std::string& server, const std::string& question, const WebRequest& request) {
    if (question == "instances") {
        return InstancesOf(server, request);
    }
    const auto asked = servers_.Find(server);
    ServerAnswers answers(*asked, options_.textForm);
    JsonObject answer;
    if (question == "state") {
        answer = answers.State();
    } else if (question == "classes") {
        answer = answers.Classes(!Parameter(request, "fresh").empty());
    } else if (question == "counts") {
        answer = answers.Counts(Parameter(request, "class"));
    } else if (question == "class") {
        answer = answers.Class(Needed(request, "name"));
    } else if (question == "instance") {
        answer = answers.Instance(Needed(request, "path"));
    } else if (question == "related") {
        const auto depth = NumberIn<std::size_t>(Parameter(request, "depth"));
        answer = answers.Related(Needed(request, "path"), depth.value_or(1));
    } else if (question == "health") {
        answer = answers.Health();
    } else {
        FailAboutQuestion();
    }
    return WithLosses(answer, answers.Losses());
}

std::string BrowserApi::Told(const std::string& server, const std::string& order, const WebRequest& request) {
    const Sent sent(request);
    if (order == "trust") {
        servers_.Find(server)->Trust(sent.Text("fingerprint"));
    } else if (order == "password") {
        servers_.Find(server);
        servers_.SetPassword(server, sent.Text("password"));
    } else if (order == "readings") {
        readings_.End(sent.Text("end"));
    } else {
        FailAboutQuestion();
    }
    return "{}";
}

std::string BrowserApi::List() const {
    return JsonObject()
        .Add("servers", JsonArray(servers_.List(),
                                  [](const BrowsedServers::Listed& server) {
                                      return JsonObject()
                                          .Add("name", JsonText(server.name))
                                          .Add("url", JsonText(server.url))
                                          .Add("namespace", JsonText(server.nameSpace))
                                          .Add("user", server.user.empty() ? "null" : JsonText(server.user))
                                          .Add("hasPassword", server.hasPassword ? "true" : "false")
                                          .Text();
                                  }))
        .Text();
}

std::string BrowserApi::Add(const WebRequest& request) {
    const Sent sent(request);
    const BrowsedServers::NewServer server{sent.Text("name"), sent.Text("host"),     sent.Flag("tls"),
                                           sent.Text("user"), sent.Text("password"), sent.Text("namespace")};
    if (server.host.empty()) {
        throw Failure(Failure::kUsage, "which host?");
    }
    servers_.Add(server);
    return JsonObject().Add("name", JsonText(server.name)).Text();
}

std::string BrowserApi::InstancesOf(const std::string& server, const WebRequest& request) {
    const std::string known = Parameter(request, "reading");
    if (!known.empty()) {
        return PartJson(readings_.Next(known), known);
    }
    const std::string names = Parameter(request, "properties");
    const auto reading =
        std::make_shared<OpenReading>(servers_.Find(server)->Connected(), Needed(request, "class"),
                                      names.empty() ? std::vector<std::string>() : NamesIn({names}), options_.textForm);
    const OpenReading::Part part = reading->Next();
    return PartJson(part, part.isLast ? "" : readings_.Keep(reading));
}

} // namespace cimhttp
