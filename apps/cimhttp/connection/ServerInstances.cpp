#include "connection/ServerInstances.h"

#include "cimhttp/ContextKeys.h"
#include "connection/PathReader.h"
#include "connection/RemoteReason.h"
#include "connection/ServerSchema.h"
#include "host/ICIMClass.h"
#include "host/ICIMInstance.h"
#include "host/ICIMNamespace.h"
#include "host/TVYXException.h"

#include <exception>
#include <functional>
#include <stdexcept>

namespace cimhttp {

namespace {

using namespace NQORVYX20;

using Instances = ServerInstances::Instances;

constexpr bool kWithSubclasses = true;

/// What a reading of instances is asked with.
TCIMContext ReadingContext(const std::vector<std::string>& properties) {
    TCIMContext context;
    if (!properties.empty()) {
        const std::vector<TCIMValue> names(properties.begin(), properties.end());
        context.emplace(kPropertiesKey, TCIMValue(TCIMValue::TCIMType::eCIMString, 0, names));
    }
    return context;
}

/// The instances of a class, with `deep` of its subclasses, too.
Instances InstancesOf(ICIMClass& cls, bool deep, const TCIMContext& context) {
    Instances instances;
    std::exception_ptr error; // which the plug-in might take for one of the server's
    cls.EnumerateInstances(
        [&](const boost::shared_ptr<ICIMInstance>& instance) {
            try {
                instances.push_back(instance);
            } catch (...) {
                error = std::current_exception();
            }
            return error == nullptr;
        },
        deep, context);
    if (error != nullptr) {
        std::rethrow_exception(error);
    }
    return instances;
}

/// Waits for a reading of the instances of a class of the usual namespace.
template <typename Await>
auto AwaitingInstances(const Session& session, const std::string& className, const Await& await) {
    const std::string thing = "the instances of " + className;
    try {
        return await(thing);
    } catch (const TVYXException& exception) {
        const FailureTeller failures = session.Failures();
        failures.Fail(thing + " cannot be read from " + session.Place(),
                      failures.ReasonOf(exception, session.Namespace()));
    }
}

std::string InstancesIn(const std::string& nameSpace, const std::string& className) {
    return "the instances of " + className + " in " + nameSpace;
}

} // namespace

FoundInstance ServerInstances::At(const std::string& path) const {
    const PathReader paths(session_);
    const std::string name = paths.NamespaceIn(path);
    ICIMNamespace& nameSpace = session_.NamespaceNamed(name);
    try {
        const auto read = [&] { return session_.Access().ReadInstance(nameSpace, path); };
        return {session_.Awaited("the instance " + path, read), name};
    } catch (const std::invalid_argument& error) {
        throw NotAPath(path, error.what());
    } catch (const RemoteError& error) {
        if (error.Failure().kind == RemoteFailure::Kind::kCimStatus && error.Failure().cimStatus == kCimInvalidClass) {
            ServerSchema(session_).FailAboutClass(paths.ClassIn(path), nameSpace, error.Failure());
        }
        session_.Failures().Fail("the instance " + path + " cannot be read from " + session_.Place(), error.Failure());
    }
}

void ServerInstances::CheckExists(const std::string& path) const {
    try {
        session_.Awaited("the instance " + path, [&] {
            session_.Access().CheckInstance(session_.Namespace(), path);
            return true;
        });
    } catch (const RemoteError& error) {
        const auto status = RemoteReason(error.Failure(), session_.Target()).Status();
        if (status == Failure::kNotFound || status == Failure::kConnection) {
            session_.Failures().Fail("the instance " + path + " cannot be read from " + session_.Server(),
                                     error.Failure());
        }
        // a server that does not tell
    }
}

Instances ServerInstances::Of(ICIMClass& cls, bool deep, const std::vector<std::string>& properties) const {
    return AwaitingInstances(session_, cls.GetName(TCIMContext()), [&](const std::string& thing) {
        return session_.Awaited(thing, [&] { return InstancesOf(cls, deep, ReadingContext(properties)); });
    });
}

std::unique_ptr<InstanceSequence>
ServerInstances::Open(ICIMClass& cls, bool deep, const std::vector<std::string>& properties, std::size_t held) const {
    TCIMContext context = ReadingContext(properties);
    context.emplace(kHeldKey, TCIMValue(static_cast<unsigned long long>(held)));
    return session_.Access().OpenInstances(session_.Namespace(), cls, deep, context);
}

Instances ServerInstances::Next(InstanceSequence& instances, const std::string& className) const {
    return AwaitingInstances(session_, className, [&](const std::string& thing) {
        return session_.Awaited(
            thing, [&] { return instances.Next(); }, [&] { instances.Stop(); });
    });
}

void ServerInstances::Await(BackgroundTask& task, const std::string& className, const std::function<void()>& stop,
                            const std::function<bool()>& isEnough) const {
    AwaitingInstances(session_, className,
                      [&](const std::string& thing) { session_.Await(thing, task, stop, isEnough); });
}

void ServerInstances::Settle(InstanceSequence& instances, const std::string& className) const {
    AwaitingInstances(session_, className, [&](const std::string& /*thing*/) { instances.Settle(); });
}

std::vector<TCIMReference> ServerInstances::PathsOf(const std::string& className) const {
    return ServerSchema(session_).ReadingClass("the paths of the instances of " + className, className, [&] {
        return session_.Access().InstancePaths(session_.Namespace(), className);
    });
}

Instances ServerInstances::In(const std::string& nameSpace, const std::string& className) const {
    const std::string thing = InstancesIn(nameSpace, className);
    ICIMNamespace& where = session_.NamespaceNamed(nameSpace);
    try {
        return session_.Awaited(thing, [&] {
            return InstancesOf(*where.GetClass(className, TCIMContext()), kWithSubclasses, TCIMContext());
        });
    } catch (const TVYXException& exception) {
        const FailureTeller failures = session_.Failures();
        const RemoteFailure failure = failures.ReasonOf(exception, where);
        failures.FailUnlessAnswered(thing + " cannot be read from " + session_.Server(), failure);
        throw RemoteError(failure);
    }
}

std::vector<TCIMReference> ServerInstances::PathsIn(const std::string& nameSpace, const std::string& className) const {
    const std::string thing = InstancesIn(nameSpace, className);
    try {
        return session_.Awaited(
            thing, [&] { return session_.Access().InstancePathsIn(session_.Namespace(), nameSpace, className); });
    } catch (const RemoteError& error) {
        session_.Failures().FailUnlessAnswered(thing + " cannot be read from " + session_.Server(), error.Failure());
        throw;
    }
}

} // namespace cimhttp
