#include "connection/Session.h"

#include "Failure.h"
#include "connection/FailedConnect.h"
#include "connection/RemoteReason.h"
#include "host/ICIMClass.h"
#include "host/ICIMInstance.h"
#include "host/ICIMNamespace.h"
#include "host/TVYXException.h"
#include "text/NearestNames.h"
#include "text/PathFault.h"

namespace cimhttp {

namespace {

using NQORVYX20::ICIMClass;
using NQORVYX20::ICIMInstance;
using NQORVYX20::TCIMContext;
using NQORVYX20::TCIMValue;
using NQORVYX20::TVYXException;

constexpr const char* kNotValid = "its definition is not valid";
constexpr const char* kInvalidClass = "CIM_ERR_INVALID_CLASS"; // the server has no such class (DSP0200)

Failure NotAName(const std::string& name) { return {Failure::kUsage, "'" + name + "' is not a class name"}; }

std::string NoConnection(const Connection& connection, const std::string& reason) {
    return "no connection to " + connection.Url() + ": " + ExplainFailedConnect(connection, reason);
}

/// The plug-in has no time-out for connecting; the user has one.
Attendant::Limit LimitOf(const Connection& connection) {
    return {connection.ConnectTimeout(), [&connection] {
                const auto seconds = connection.ConnectTimeout().count();
                return Failure(Failure::kConnection,
                               NoConnection(connection, "it took longer than " + std::to_string(seconds) +
                                                            (seconds == 1 ? " second" : " seconds")));
            }};
}

/// What a reading of instances is asked with.
TCIMContext ReadingContext(const std::vector<std::string>& properties) {
    TCIMContext context;
    if (!properties.empty()) {
        const std::vector<TCIMValue> names(properties.begin(), properties.end());
        context.emplace("cimhttp.properties", TCIMValue(TCIMValue::TCIMType::eCIMString, 0, names));
    }
    return context;
}

/// The name of the class in an object path.
std::string ClassIn(const std::string& path) {
    const std::string head = path.substr(0, path.find('=')); // `//host/namespace:class.key`, or a part of it
    const std::string name = head.substr(head.rfind(':') + 1);
    return name.substr(0, name.find('.'));
}

} // namespace

Failure NoSuchClass(const std::string& name, const std::string& server, const std::vector<std::string>& classes) {
    const std::string suggestion = DidYouMean(NearestNames(name, classes));
    return {Failure::kNotFound, "there is no class " + name + " on " + server +
                                    (suggestion.empty() ? "; 'cimhttp classes' lists all" : suggestion)};
}

Session::Session(const Plugin& plugin, const Connection& connection, FailureLog& log, const Attendant& attendant)
    : log_(log),
      plugin_(plugin),
      connection_(connection),
      attendant_(attendant),
      namespace_(plugin_.AllocateNamespace()) {
    const auto connect = [this] {
        plugin_.Access().Connect(*namespace_, connection_.host, connection_.user, connection_.password,
                                 connection_.Port());
    };
    try {
        attendant.Attend("connecting to " + Server(), connect, LimitOf(connection_));
    } catch (const TVYXException& exception) {
        const std::string reason = log_.TakeReason();
        throw Failure(Failure::kConnection, NoConnection(connection_, reason.empty() ? exception.what() : reason));
    }
    plugin_.Access().SetTimeout(*namespace_, connection_.timeout);
}

Session Session::Unattended() const {
    Session session = *this;
    session.attendant_.reset();
    return session;
}

template <typename Operation>
auto Session::Attended(const std::string& thing, const Operation& operation) const {
    return attendant_ ? attendant_->Read("reading " + thing, operation) : operation();
}

void Session::Fail(const std::string& what, const std::string& reason) const {
    const RemoteReason remote(reason, connection_);
    const std::string text = what + ": " + remote.Text();
    if (remote.IsLoginRefused()) {
        throw LoginFailure(text);
    }
    throw Failure(remote.Status(), text);
}

std::vector<std::string> Session::ClassNames() {
    try {
        return Attended("the names of the classes", [&] { return plugin_.Access().ClassNames(*namespace_); });
    } catch (const RemoteError& failure) {
        Fail("the classes of " + Server() + " cannot be listed", failure.what());
    }
}

template <typename Operation>
auto Session::Remotely(const std::string& thing, const Operation& operation) const {
    try {
        return Attended(thing, operation);
    } catch (const RemoteError& failure) {
        Fail(thing + " cannot be read from " + Server(), failure.what());
    }
}

std::vector<RemoteClassName> Session::Hierarchy() {
    return Remotely("the hierarchy of classes", [&] { return plugin_.Access().ReadHierarchy(*namespace_); });
}

RemoteClass Session::Definition(const std::string& name) {
    try {
        return Attended("the class " + name, [&] { return plugin_.Access().ReadClass(*namespace_, name); });
    } catch (const RemoteError& failure) {
        FailAboutClass(name, failure.what());
    } catch (const std::invalid_argument&) {
        throw NotAName(name);
    }
}

std::vector<RemoteQualifierDeclaration> Session::QualifierDeclarations() {
    return Remotely("the qualifiers", [&] { return plugin_.Access().ReadQualifierDeclarations(*namespace_); });
}

std::vector<RemoteQualifierDeclaration> Session::KnownQualifiers() {
    try {
        return Attended("the qualifiers", [&] { return plugin_.Access().ReadQualifierDeclarations(*namespace_); });
    } catch (const RemoteError&) {
        return {};
    }
}

boost::shared_ptr<ICIMInstance> Session::Instance(const std::string& path) {
    log_.TakeReason();
    try {
        auto instance =
            Attended("the instance " + path, [&] { return plugin_.Access().ReadInstance(*namespace_, path); });
        if (!instance) {
            const std::string reason = log_.TakeReason();
            Fail("the class of " + path + " cannot be read from " + Server(), reason.empty() ? kNotValid : reason);
        }
        return instance;
    } catch (const RemoteError& failure) {
        const std::string reason = failure.what();
        if (reason.find(kInvalidClass) != std::string::npos) {
            FailAboutUnknownClass(ClassIn(path));
        }
        Fail("the instance " + path + " cannot be read from " + Server(), reason);
    } catch (const std::invalid_argument& error) {
        const std::string fault = PathFault(path);
        throw Failure(Failure::kUsage, "'" + path + "' " +
                                           (fault.empty() ? std::string("cannot be read: ") + error.what()
                                                          : "is not an object path: " + fault));
    }
}

boost::shared_ptr<ICIMClass> Session::FindClass(const std::string& name) {
    try {
        if (!name.empty()) { // which would be the root of all classes
            return Attended("the class " + name, [&] { return namespace_->GetClass(name, TCIMContext()); });
        }
    } catch (const TVYXException&) {
        // not the form of a name
    }
    throw NotAName(name);
}

boost::shared_ptr<ICIMClass> Session::Class(const std::string& name) {
    log_.TakeReason();
    auto cls = FindClass(name);
    if (!cls) {
        FailAboutClass(name, log_.TakeReason());
    }
    return cls;
}

void Session::FailAboutClass(const std::string& name, const std::string& reason) {
    if (!reason.empty() && RemoteReason(reason, connection_).Status() == Failure::kNotFound) {
        FailAboutUnknownClass(name);
    }
    Fail("the class " + name + " cannot be read from " + Server(), reason.empty() ? kNotValid : reason);
}

void Session::FailAboutUnknownClass(const std::string& name) {
    std::vector<std::string> classes;
    try {
        classes = ClassNames();
    } catch (const Failure&) {
        // a server that does not list its classes
    }
    throw NoSuchClass(name, Server(), classes);
}

std::vector<boost::shared_ptr<ICIMInstance>> Session::Instances(ICIMClass& cls, bool deep,
                                                                const std::vector<std::string>& properties) {
    const std::string name = cls.GetName(TCIMContext());
    const auto read = [&] {
        std::vector<boost::shared_ptr<ICIMInstance>> instances;
        cls.EnumerateInstances(
            [&](const boost::shared_ptr<ICIMInstance>& instance) {
                instances.push_back(instance);
                return true;
            },
            deep, ReadingContext(properties));
        return instances;
    };
    log_.TakeReason();
    auto instances = Attended("the instances of " + name, read);
    const std::string reason = log_.TakeReason();
    if (!reason.empty()) {
        Fail("the instances of " + name + " cannot be read from " + Server(), reason);
    }
    return instances;
}

} // namespace cimhttp
