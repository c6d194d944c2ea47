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
        throw Failure(Failure::kConnection,
                      "no connection to " + server_ + ": " + (reason.empty() ? exception.what() : reason));
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

boost::shared_ptr<ICIMClass> Session::FindClass(const std::string& name) {
    try {
        if (!name.empty()) { // which would be the root of all classes
            return namespace_->GetClass(name, TCIMContext());
        }
    } catch (const TVYXException&) {
        // not the form of a name
    }
    throw Failure(Failure::kUsage, "'" + name + "' is not a class name");
}

boost::shared_ptr<ICIMClass> Session::Class(const std::string& name) {
    log_.TakeReason();
    auto cls = FindClass(name);
    if (!cls) {
        const std::string reason = log_.TakeReason();
        throw Failure(Failure::kOther, "the class " + name + " cannot be read from " + server_ + ": " +
                                           (reason.empty() ? "its definition is not valid" : reason));
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
