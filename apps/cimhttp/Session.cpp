#include "Session.h"

#include "Failure.h"
#include "host/ICIMClass.h"
#include "host/ICIMInstance.h"
#include "host/ICIMNamespace.h"
#include "host/TVYXException.h"

namespace cimhttp {

namespace {

using NQORVYX20::ICIMClass;
using NQORVYX20::ICIMInstance;
using NQORVYX20::TCIMContext;
using NQORVYX20::TVYXException;

constexpr int kHttpPort = 5988;
constexpr int kHttpsPort = 5989;
constexpr const char* kNotValid = "its definition is not valid";

Failure NotAName(const std::string& name) { return {Failure::kUsage, "'" + name + "' is not a class name"}; }

std::string ReasonOr(const std::string& reason, const std::string& otherwise) {
    return reason.empty() ? otherwise : reason;
}

} // namespace

Session::Session(const Plugin& plugin, const Connection& connection, FailureLog& log)
    : log_(log),
      plugin_(plugin),
      server_((connection.tls ? "https://" : "http://") + connection.host),
      namespace_(plugin_.AllocateNamespace()) {
    try {
        plugin_.Access().Connect(*namespace_, connection.host, connection.user, connection.password,
                                 connection.tls ? kHttpsPort : kHttpPort);
    } catch (const TVYXException& exception) {
        const std::string reason = log_.TakeReason();
        throw Failure(Failure::kConnection, "no connection to " + server_ + ": " + ReasonOr(reason, exception.what()));
    }
}

std::vector<std::string> Session::ClassNames() {
    log_.TakeReason();
    auto names = plugin_.Access().ClassNames(*namespace_);
    const std::string reason = log_.TakeReason();
    if (!reason.empty()) {
        throw Failure(Failure::kOther, "the classes of " + server_ + " cannot be listed: " + reason);
    }
    return names;
}

template <typename Operation>
auto Session::Remotely(const std::string& thing, const Operation& operation) const {
    try {
        return operation();
    } catch (const RemoteFailure& failure) {
        throw Failure(Failure::kOther, thing + " cannot be read from " + server_ + ": " + failure.what());
    }
}

std::vector<RemoteClassName> Session::Hierarchy() {
    return Remotely("the hierarchy of classes", [&] { return plugin_.Access().ReadHierarchy(*namespace_); });
}

RemoteClass Session::Definition(const std::string& name) {
    try {
        return Remotely("the class " + name, [&] { return plugin_.Access().ReadClass(*namespace_, name); });
    } catch (const std::invalid_argument&) {
        throw NotAName(name);
    }
}

std::vector<RemoteQualifierDeclaration> Session::QualifierDeclarations() {
    return Remotely("the qualifiers", [&] { return plugin_.Access().ReadQualifierDeclarations(*namespace_); });
}

std::vector<RemoteQualifierDeclaration> Session::KnownQualifiers() {
    try {
        return plugin_.Access().ReadQualifierDeclarations(*namespace_);
    } catch (const RemoteFailure&) {
        return {};
    }
}

boost::shared_ptr<ICIMInstance> Session::Instance(const std::string& path) {
    log_.TakeReason();
    try {
        auto instance =
            Remotely("the instance " + path, [&] { return plugin_.Access().ReadInstance(*namespace_, path); });
        if (!instance) {
            throw Failure(Failure::kOther, "the class of " + path + " cannot be read from " + server_ + ": " +
                                               ReasonOr(log_.TakeReason(), kNotValid));
        }
        return instance;
    } catch (const std::invalid_argument&) {
        throw Failure(Failure::kUsage, "'" + path + R"(' is not an object path such as 'CIM_Disk.Name="a",Number=3')");
    }
}

boost::shared_ptr<ICIMClass> Session::FindClass(const std::string& name) {
    try {
        if (!name.empty()) { // which would be the root of all classes
            return namespace_->GetClass(name, TCIMContext());
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
        const std::string reason = log_.TakeReason();
        throw Failure(Failure::kOther,
                      "the class " + name + " cannot be read from " + server_ + ": " + ReasonOr(reason, kNotValid));
    }
    return cls;
}

std::vector<boost::shared_ptr<ICIMInstance>> Session::Instances(ICIMClass& cls, bool deep) {
    log_.TakeReason();
    std::vector<boost::shared_ptr<ICIMInstance>> instances;
    cls.EnumerateInstances(
        [&](const boost::shared_ptr<ICIMInstance>& instance) {
            instances.push_back(instance);
            return true;
        },
        deep, TCIMContext());
    const std::string reason = log_.TakeReason();
    if (!reason.empty()) {
        throw Failure(Failure::kOther, "the instances of " + cls.GetName(TCIMContext()) + " cannot be read from " +
                                           server_ + ": " + reason);
    }
    return instances;
}

} // namespace cimhttp
