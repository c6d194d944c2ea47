#include "browse/ServerAnswers.h"

#include "browse/BrowsedServer.h"
#include "connection/CertificateText.h"
#include "connection/PathReader.h"
#include "connection/ServerAssociations.h"
#include "connection/ServerInstances.h"
#include "connection/ServerSchema.h"
#include "connection/ServerTrust.h"
#include "host/ICIMClass.h"
#include "host/ICIMInstance.h"
#include "monitoring/Health.h"
#include "monitoring/InstanceName.h"
#include "output/ClassJson.h"
#include "output/ClassTree.h"
#include "output/GraphWriter.h"
#include "output/InstanceJson.h"
#include "output/Json.h"
#include "output/MofWriter.h"
#include "report/EmbeddedJson.h"
#include "survey/GraphWalk.h"
#include "survey/InstanceCensus.h"
#include "text/Names.h"
#include "text/TextBuffer.h"

#include <algorithm>
#include <sstream>

namespace cimhttp {

using namespace NQORVYX20;

namespace {

constexpr std::size_t kGreatestDepth = 10;
constexpr std::size_t kHeld = 250; // instances of which the health is looked at, at once

/// Integers of more digits than a script's numbers have become texts.
std::string ForScripts(const std::string& json) {
    EmbeddedJson embedded;
    return embedded.Take(json) + embedded.End();
}

/// Without the braces around it.
std::string MembersOf(const std::string& object) {
    const std::size_t begin = object.find('{');
    return object.substr(begin + 1, object.rfind('}') - begin - 1);
}

std::string CertificateJson(const TlsDetails& tls) {
    if (!tls.showsCertificate) {
        return "null";
    }
    return JsonObject()
        .Add("text", JsonText(CertificateText(tls)))
        .Add("fingerprint", JsonText(tls.fingerprint))
        .Add("subject", JsonText(tls.subject))
        .Add("validUntil", JsonText(tls.validUntil))
        .Text();
}

std::string VerifierOf(const Connection& connection) {
    if (connection.isVerifiedByPolicy) {
        return "this machine's policy";
    }
    if (!connection.knownSince.empty()) {
        return "its certificate, known since " + connection.knownSince;
    }
    return connection.tlsSettings.fingerprint ? "its fingerprint" : connection.tlsSettings.ca ? "authorities" : "";
}

/// What is known of the way to a server.
struct Reach {
    std::string state; ///< reached, failed, login or trust
    std::string reason = {};
    std::optional<Connection> connection = {}; ///< that was made
    std::optional<ServerProbe> probe = {};
    TlsDetails shown = {};
    std::optional<std::size_t> classCount = {};
};

JsonObject JsonOf(const Reach& reach, bool isTls) {
    JsonObject json;
    json.Add("state", JsonText(reach.state)).Add("reason", JsonText(reach.reason));
    const bool isTimed = reach.probe && reach.probe->result == ServerProbe::Result::kReached;
    const double milliseconds =
        isTimed ? std::chrono::duration<double, std::milli>(reach.probe->connectTime).count() : 0;
    json.Add("roundTripMs", isTimed ? JsonValue(TCIMValue(milliseconds)) : "null");
    json.Add("classes", reach.classCount ? std::to_string(*reach.classCount) : "null");
    json.Add("tls", JsonValue(isTls));
    const bool isVerified = reach.connection && IsVerified(*reach.connection);
    json.Add("verified", isTls ? JsonValue(isVerified) : "null");
    json.Add("verifiedBy", JsonText(isTls && reach.connection ? VerifierOf(*reach.connection) : ""));
    return json.Add("certificate", CertificateJson(reach.shown));
}

/// Asks for the names of all classes, which nearly all servers have.
Reach Reached(Session& session) {
    Reach reach{"reached"};
    const auto trial = session.Try("the names of the classes", [&](const PluginAccess& access, auto& nameSpace) {
        reach.classCount = access.ClassNames(nameSpace).size();
    });
    const Connection& connection = session.Target();
    if (trial.failure) {
        session.Failures().FailUnlessAnswered("the classes of " + session.Server() + " cannot be listed",
                                              *trial.failure);
        reach.reason = trial.failure->text; // it answers nevertheless
    }
    reach.connection = connection;
    reach.probe = session.Access().Probe(connection.Target(),
                                         connection.tls ? ServerProbe::Depth::kTls : ServerProbe::Depth::kPort);
    reach.shown = reach.probe->tls;
    return reach;
}

std::string ReferenceJson(const RemoteClassName::Reference& reference) {
    return JsonObject().Add("role", JsonText(reference.role)).Add("class", JsonText(reference.className)).Text();
}

std::string ClassNameJson(const RemoteClassName& cls) {
    JsonObject json;
    json.Add("name", JsonText(cls.name)).Add("superclass", JsonText(cls.superclass));
    if (!cls.references.empty()) {
        json.Add("references", JsonArray(cls.references, ReferenceJson));
    }
    return json.Text();
}

/// A class and all below it, without regard to case; all classes for an empty name.
ByName<bool> Subtree(const ClassTree& tree, const std::string& name) {
    std::vector<std::string> toVisit = name.empty() ? tree.TopClasses() : std::vector<std::string>{tree.Find(name)};
    ByName<bool> subtree;
    while (!toVisit.empty()) {
        const std::string visited = toVisit.back();
        toVisit.pop_back();
        if (!visited.empty() && subtree.emplace(visited, true).second) {
            const auto below = tree.SubclassesOf(visited);
            toVisit.insert(toVisit.end(), below.begin(), below.end());
        }
    }
    return subtree;
}

std::string FaultJson(const ICIMInstance& instance, const Health& health) {
    const bool isCritical = health.state == ServiceState::kCritical;
    return JsonObject()
        .Add("state", JsonText(isCritical ? "critical" : "warning"))
        .Add("class", JsonText(ClassNameOf(instance)))
        .Add("path", JsonText(PathOf(instance)))
        .Add("name", JsonText(InstanceName(instance).Label()))
        .Add("text", JsonText(health.faults))
        .Text();
}

/// Looks at elements one after the other.
class HealthSurvey {
  public:
    explicit HealthSurvey(const ValueTexts& texts) : texts_(texts) {}

    void Take(const Instances& instances) {
        for (const auto& instance : instances) {
            const Health health = HealthOf(*instance, texts_);
            telling_ += health.state ? 1 : 0;
            if (health.state.value_or(ServiceState::kOk) != ServiceState::kOk) {
                faults_.push_back(FaultJson(*instance, health));
            }
        }
        elements_ += instances.size();
    }

    JsonObject Json() const {
        JsonObject json;
        json.Add("elements", std::to_string(elements_)).Add("telling", std::to_string(telling_));
        return json.Add("faults", JsonArray(faults_, [](const std::string& fault) { return fault; }));
    }

  private:
    const ValueTexts texts_;
    std::size_t elements_ = 0;
    std::size_t telling_ = 0;
    std::vector<std::string> faults_;
};

} // namespace

JsonObject ServerAnswers::State() {
    bool isTls = false;
    try {
        isTls = server_.Way().tls;
        Reach reach;
        server_.Ask([&](Session& session) { reach = Reached(session); });
        return JsonOf(reach, isTls);
    } catch (const TrustNeeded& needed) {
        Reach reach{"trust", needed.what()};
        reach.shown = needed.Shown();
        return JsonOf(reach, isTls);
    } catch (const Failure& failure) {
        const bool isLogin = failure.Status() == Failure::kAuthentication || failure.Status() == Failure::kUsage;
        return JsonOf({isLogin ? "login" : "failed", failure.what()}, isTls);
    }
}

JsonObject ServerAnswers::Classes(bool isFresh) {
    JsonObject json;
    server_.Ask([&](Session& session) {
        json.Add("classes", JsonArray(server_.Classes(session, isFresh), ClassNameJson));
        NoteIncidents(session);
    });
    return json;
}

JsonObject ServerAnswers::Counts(const std::string& className) {
    JsonObject counts;
    server_.Ask([&](Session& session) {
        const ClassTree tree(server_.Classes(session));
        if (!className.empty() && tree.Find(className).empty()) {
            throw Failure(Failure::kNotFound, "the server has no class " + className);
        }
        const auto subtree = Subtree(tree, className);
        InstanceCensus census(session, tree, [&](const std::string& name) { return subtree.count(name) > 0; });
        for (const auto& count : census.Take()) {
            counts.Add(count.name, count.instances ? std::to_string(*count.instances) : "null");
        }
        losses_.insert(losses_.end(), census.Failures().begin(), census.Failures().end());
        NoteIncidents(session);
    });
    return JsonObject().Add("counts", counts.Text());
}

JsonObject ServerAnswers::Class(const std::string& name) {
    JsonObject json;
    server_.Ask([&](Session& session) {
        const RemoteClass cls = ServerSchema(session).Definition(name);
        json.Add("class", ForScripts(ClassJson(cls)));
        json.Add("mof", JsonText(ClassMof(cls, server_.Qualifiers(session))));
        NoteIncidents(session);
    });
    return json;
}

JsonObject ServerAnswers::Instance(const std::string& path) {
    JsonObject json;
    server_.Ask([&](Session& session) {
        const FoundInstance found = ServerInstances(session).At(path);
        TextBuffer members;
        InstanceJson(PropertySelector(PropertySelector::Order::kGiven), ValueTexts(session.Access(), form_),
                     found.nameSpace)
            .AppendMembers(*found.instance, members);
        json.AddMembers(ForScripts(std::string(members.Text())));
        NoteIncidents(session);
    });
    return json;
}

JsonObject ServerAnswers::Related(const std::string& path, std::size_t depth) {
    JsonObject json;
    server_.Ask([&](Session& session) {
        GraphWalk walk([&](const std::string& object) { return ServerAssociations(session).Links(object); });
        walk.Run(PathReader(session).ReferenceTo(path), std::clamp<std::size_t>(depth, 1, kGreatestDepth));
        if (walk.Graph().edges.empty()) {
            ServerInstances(session).CheckExists(path);
        }
        std::ostringstream graph;
        WriteGraphJson(walk.Graph(), graph);
        json.AddMembers(MembersOf(graph.str()));
        if (const std::string remark = walk.Remark(); !remark.empty()) {
            losses_.push_back(remark);
        }
        NoteIncidents(session);
    });
    return json;
}

JsonObject ServerAnswers::Health() {
    JsonObject json;
    server_.Ask([&](Session& session) {
        const auto elements = ServerSchema(session).Class(kHealthElements);
        const ServerInstances instances(session);
        const auto sequence = instances.Open(*elements, true, HealthPropertiesIn(PropertiesOf(*elements)), kHeld);
        HealthSurvey survey{ValueTexts(session.Access(), form_)};
        while (!sequence->IsAtEnd()) {
            survey.Take(instances.Next(*sequence, kHealthElements));
        }
        json = survey.Json();
        NoteIncidents(session);
    });
    return json;
}

void ServerAnswers::NoteIncidents(Session& session) {
    const IncidentTally incidents = session.TakeIncidents();
    if (!incidents.IsEmpty()) {
        losses_.push_back(incidents.Text());
    }
}

} // namespace cimhttp
