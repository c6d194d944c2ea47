#include "connection/Session.h"

#include "Failure.h"
#include "access/ReferenceKeys.h"
#include "cimhttp/ContextKeys.h"
#include "connection/ConnectionContext.h"
#include "connection/FailedConnect.h"
#include "connection/OperationStatistics.h"
#include "connection/RemoteReason.h"
#include "connection/ServerFailure.h"
#include "host/ICIMClass.h"
#include "host/ICIMInstance.h"
#include "host/ICIMNamespace.h"
#include "host/TVYXException.h"
#include "text/Names.h"
#include "text/NearestNames.h"
#include "waiting/Interrupt.h"

#include <algorithm>
#include <chrono>
#include <exception>

namespace cimhttp {

namespace {

using NQORVYX20::ICIMClass;
using NQORVYX20::ICIMInstance;
using NQORVYX20::ICIMNamespace;
using NQORVYX20::RemoteFailure;
using NQORVYX20::TCIMContext;
using NQORVYX20::TCIMReference;
using NQORVYX20::TCIMValue;
using NQORVYX20::TVYXException;
using NQORVYX20::TVYXStatusCode;

constexpr bool kWithSubclasses = true;

// Status codes of CIM (DSP0200).
constexpr unsigned kCimInvalidParameter = 4;
constexpr unsigned kCimInvalidClass = 5;

Failure NotAName(const std::string& name) { return {Failure::kUsage, "'" + name + "' is not a class name"}; }

std::string NoConnection(const PluginAccess& access, const Connection& connection, const std::string& reason) {
    return "no connection to " + connection.Url() + ": " + ExplainFailedConnect(access, connection, reason);
}

/// About a server that ends a connection for want of a certificate.
std::string AdviceAbout(const RemoteFailure& failure, const PluginAccess& access, const Connection& connection) {
    const bool isEnded = failure.kind == RemoteFailure::Kind::kTls || failure.kind == RemoteFailure::Kind::kClosed;
    return isEnded && !failure.refusal ? CertificateAdvice(access, connection) : std::string();
}

/// The plug-in has no time-out for connecting; the user has one.
ProgressWait::Limit LimitOf(const PluginAccess& access, const Connection& connection) {
    return {connection.ConnectTimeout(), [&access, &connection] {
                const auto seconds = connection.ConnectTimeout().count();
                return Failure(Failure::kConnection, NoConnection(access, connection,
                                                                  "it took longer than " + std::to_string(seconds) +
                                                                      (seconds == 1 ? " second" : " seconds")));
            }};
}

/// What a reading of instances is asked with.
TCIMContext ReadingContext(const std::vector<std::string>& properties) {
    TCIMContext context;
    if (!properties.empty()) {
        const std::vector<TCIMValue> names(properties.begin(), properties.end());
        context.emplace(NQORVYX20::kPropertiesKey, TCIMValue(TCIMValue::TCIMType::eCIMString, 0, names));
    }
    return context;
}

std::string WithoutLeadingSlash(const std::string& name) {
    return !name.empty() && name.front() == '/' ? name.substr(1) : name;
}

/// The instances of a class, with `deep` of its subclasses, too.
std::vector<boost::shared_ptr<ICIMInstance>> InstancesOf(ICIMClass& cls, bool deep, const TCIMContext& context) {
    std::vector<boost::shared_ptr<ICIMInstance>> instances;
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

bool HasName(const std::vector<std::string>& names, const std::string& name) {
    return std::any_of(names.begin(), names.end(), [&](const std::string& one) { return IsSameName(one, name); });
}

/// Those that the user gives.
std::vector<std::string> NamesOf(const AssociationQuery& query) {
    std::vector<std::string> names{query.associationClass, query.role, query.resultClass, query.resultRole};
    names.insert(names.end(), query.properties.begin(), query.properties.end());
    return names;
}

Failure NotAPath(const std::string& path, const std::string& reason) {
    return {Failure::kUsage, "'" + path + "' " + reason};
}

} // namespace

Failure NoSuchClass(const std::string& name, const std::string& server, const std::vector<std::string>& classes) {
    const std::string suggestion = DidYouMean(NearestNames(name, classes));
    return {Failure::kNotFound, "there is no class " + name + " on " + server +
                                    (suggestion.empty() ? "; 'cimhttp classes' lists all" : suggestion)};
}

Session::Session(const Plugin& plugin, const Connection& connection, const ProgressWait& wait)
    : plugin_(plugin), connection_(connection), wait_(wait), namespace_(Open(connection)) {}

Session::Namespace Session::Allocate(const Connection& connection) const {
    try {
        const auto allocated = plugin_.AllocateNamespace(ContextOf(connection));
        return connection.statistics ? plugin_.Access().Measured(allocated, connection.statistics) : allocated;
    } catch (const TVYXException& exception) {
        if (exception.GetStatusCode().GetCode() != TVYXStatusCode::eTypeMismatch) {
            throw;
        }
        throw Failure(Failure::kUsage, "'" + connection.nameSpace + "' is not the name of a namespace");
    }
}

Session::Namespace Session::Open(const Connection& connection) const {
    auto opened = Allocate(connection);
    const auto limit = LimitOf(plugin_.Access(), connection);
    const auto begin = std::chrono::steady_clock::now();
    const auto connect = [&] {
        plugin_.Access().Connect(*opened, connection.host, connection.user, connection.password, connection.Port());
    };
    try {
        if (wait_) {
            wait_->Run("connecting to " + Server(), connect, limit);
        } else {
            connect();
        }
    } catch (const TVYXException& exception) {
        // the client library may be the first to notice that the time is over
        const bool isLate = std::chrono::steady_clock::now() - begin >= limit.time;
        throw isLate ? limit.failure() : NotConnected(ReasonOf(exception, *opened));
    }
    return opened;
}

Failure Session::NotConnected(const RemoteFailure& failure) const {
    if (failure.refusal || failure.kind == RemoteFailure::Kind::kPolicy) { // about which the ports have nothing to say
        return {Failure::kConnection,
                "no connection to " + Server() + ": " + RemoteReason(failure, connection_).Text()};
    }
    return {Failure::kConnection, NoConnection(plugin_.Access(), connection_,
                                               failure.text + AdviceAbout(failure, plugin_.Access(), connection_))};
}

Session Session::WithoutProgress() const {
    Session session = *this;
    session.wait_.reset();
    return session;
}

template <typename Operation>
auto Session::Awaited(const std::string& thing, const Operation& operation) const {
    return wait_ ? wait_->Read("reading " + thing, operation) : operation();
}

RemoteFailure Session::ReasonOf(const TVYXException& exception, ICIMNamespace& nameSpace) const {
    RemoteFailure unknown;
    unknown.text = exception.what();
    return plugin_.Access().LastFailure(nameSpace).value_or(unknown);
}

void Session::Fail(const std::string& what, const RemoteFailure& failure) const {
    const RemoteReason reason(failure, connection_);
    const std::string text = what + ": " + reason.Text() + AdviceAbout(failure, plugin_.Access(), connection_);
    if (reason.IsLoginRefused()) {
        throw LoginFailure(text);
    }
    throw ServerFailure(reason.Status(), text, failure);
}

template <typename Operation>
auto Session::Remotely(const std::string& thing, const Operation& operation) const {
    try {
        return Awaited(thing, operation);
    } catch (const RemoteError& error) {
        Fail(thing + " cannot be read from " + Place(), error.Failure());
    }
}

std::vector<std::string> Session::ClassNames() {
    try {
        return ClassNamesIn(*namespace_);
    } catch (const RemoteError& error) {
        Fail("the classes of " + Place() + " cannot be listed", error.Failure());
    }
}

std::vector<std::string> Session::ClassNamesIn(ICIMNamespace& nameSpace) {
    return Awaited("the names of the classes", [&] { return plugin_.Access().ClassNames(nameSpace); });
}

std::vector<RemoteClassName> Session::Hierarchy() {
    return Remotely("the hierarchy of classes", [&] { return plugin_.Access().ReadHierarchy(*namespace_); });
}

std::vector<RemoteQualifierDeclaration> Session::QualifierDeclarations() {
    return Remotely("the qualifiers", [&] { return plugin_.Access().ReadQualifierDeclarations(*namespace_); });
}

std::vector<RemoteQualifierDeclaration> Session::KnownQualifiers() {
    try {
        return Awaited("the qualifiers", [&] { return plugin_.Access().ReadQualifierDeclarations(*namespace_); });
    } catch (const RemoteError& error) {
        if (error.Failure().kind == RemoteFailure::Kind::kLimit) { // there are some, too many to be read
            Fail("the qualifiers cannot be read from " + Place(), error.Failure());
        }
        return {};
    }
}

template <typename Operation>
auto Session::ReadingClass(const std::string& thing, const std::string& className, const Operation& operation) {
    try {
        return Awaited(thing, operation);
    } catch (const RemoteError& error) {
        FailAboutClass(className, *namespace_, error.Failure());
    } catch (const std::invalid_argument&) {
        throw NotAName(className);
    }
}

RemoteClass Session::Definition(const std::string& name) {
    return ReadingClass("the class " + name, name, [&] { return plugin_.Access().ReadClass(*namespace_, name); });
}

std::vector<NQORVYX20::TCIMReference> Session::InstancePaths(const std::string& className) {
    return ReadingClass("the paths of the instances of " + className, className,
                        [&] { return plugin_.Access().InstancePaths(*namespace_, className); });
}

boost::shared_ptr<ICIMClass> Session::Class(const std::string& name) {
    if (name.empty()) { // which would be the root of all classes
        throw NotAName(name);
    }
    try {
        return Awaited("the class " + name, [&] { return namespace_->GetClass(name, TCIMContext()); });
    } catch (const TVYXException& exception) {
        if (exception.GetStatusCode().GetCode() == TVYXStatusCode::eInvalidName) {
            throw NotAName(name);
        }
        FailAboutClass(name, *namespace_, ReasonOf(exception, *namespace_));
    }
}

void Session::FailAboutClass(const std::string& name, ICIMNamespace& nameSpace, const RemoteFailure& failure) {
    if (RemoteReason(failure, connection_).Status() != Failure::kNotFound) {
        Fail("the class " + name + " cannot be read from " + Place(), failure);
    }
    std::vector<std::string> classes;
    try {
        classes = ClassNamesIn(nameSpace);
    } catch (const RemoteError&) {
        // a server that does not list its classes
    }
    throw NoSuchClass(name, Place(), classes);
}

std::vector<boost::shared_ptr<ICIMInstance>> Session::Instances(ICIMClass& cls, bool deep,
                                                                const std::vector<std::string>& properties) {
    const std::string name = cls.GetName(TCIMContext());
    try {
        return Awaited("the instances of " + name, [&] { return InstancesOf(cls, deep, ReadingContext(properties)); });
    } catch (const TVYXException& exception) {
        Fail("the instances of " + name + " cannot be read from " + Place(), ReasonOf(exception, *namespace_));
    }
}

std::unique_ptr<InstanceSequence>
Session::OpenInstances(ICIMClass& cls, bool deep, const std::vector<std::string>& properties, std::size_t held) const {
    TCIMContext context = ReadingContext(properties);
    context.emplace(NQORVYX20::kHeldKey, TCIMValue(static_cast<unsigned long long>(held)));
    return plugin_.Access().OpenInstances(*namespace_, cls, deep, context);
}

std::vector<boost::shared_ptr<ICIMInstance>> Session::Next(InstanceSequence& instances,
                                                           const std::string& className) const {
    const auto read = [&] { return instances.Next(); };
    try {
        return wait_ ? wait_->Read("reading the instances of " + className, read, [&] { instances.Stop(); }) : read();
    } catch (const TVYXException& exception) {
        Fail("the instances of " + className + " cannot be read from " + Place(), ReasonOf(exception, *namespace_));
    }
}

void Session::EndIfInterrupted(std::unique_ptr<InstanceSequence>& instances) const {
    if (wait_ && Interrupted()) {
        instances.reset();
        wait_->End();
    }
}

std::vector<boost::shared_ptr<ICIMInstance>> Session::InstancesIn(const std::string& nameSpace,
                                                                  const std::string& className) {
    const std::string thing = "the instances of " + className + " in " + nameSpace;
    ICIMNamespace& where = NamespaceOrOwn(nameSpace);
    try {
        return Awaited(thing, [&] {
            return InstancesOf(*where.GetClass(className, TCIMContext()), kWithSubclasses, TCIMContext());
        });
    } catch (const TVYXException& exception) {
        const RemoteFailure failure = ReasonOf(exception, where);
        FailUnlessAnswered(thing + " cannot be read from " + Server(), failure);
        throw RemoteError(failure);
    }
}

std::vector<TCIMReference> Session::InstancePathsIn(const std::string& nameSpace, const std::string& className) {
    const std::string thing = "the instances of " + className + " in " + nameSpace;
    try {
        return Awaited(thing, [&] { return plugin_.Access().InstancePathsIn(*namespace_, nameSpace, className); });
    } catch (const RemoteError& error) {
        FailUnlessAnswered(thing + " cannot be read from " + Server(), error.Failure());
        throw;
    }
}

std::string Session::NamespaceName() const { return connection_.nameSpace; }

Session::Trial Session::Try(const std::string& thing,
                            const std::function<void(const PluginAccess&, ICIMNamespace&)>& ask) {
    const auto begin = std::chrono::steady_clock::now();
    const auto elapsed = [&] {
        return std::chrono::duration_cast<std::chrono::microseconds>(std::chrono::steady_clock::now() - begin);
    };
    try {
        Awaited(thing, [&] {
            ask(plugin_.Access(), *namespace_);
            return true;
        });
        return {elapsed(), std::nullopt};
    } catch (const RemoteError& error) {
        if (RemoteReason(error.Failure(), connection_).Status() == Failure::kConnection) {
            Fail(thing + " cannot be read from " + Server(), error.Failure());
        }
        return {elapsed(), error.Failure()};
    }
}

void Session::FailUnlessAnswered(const std::string& what, const RemoteFailure& failure) const {
    if (failure.kind != RemoteFailure::Kind::kCimStatus && failure.kind != RemoteFailure::Kind::kHttp) {
        Fail(what, failure);
    }
}

// --- Associations ------------------------------------------------------------------------------------------------

template <typename Operation>
auto Session::ReadingAssociations(const AssociationQuery& query, const Operation& operation) {
    try {
        return Awaited("the associations of " + query.path, operation);
    } catch (const RemoteError& error) {
        FailAboutAssociations(query, error.Failure());
    } catch (const std::invalid_argument& error) {
        if (HasName(NamesOf(query), error.what())) {
            throw Failure(Failure::kUsage, std::string("'") + error.what() + "' is not a name");
        }
        throw NotAPath(query.path, error.what());
    }
}

void Session::FailAboutAssociations(const AssociationQuery& query, const RemoteFailure& failure) {
    const bool isAboutNames = failure.kind == RemoteFailure::Kind::kCimStatus &&
                              (failure.cimStatus == kCimInvalidParameter || failure.cimStatus == kCimInvalidClass);
    std::vector<std::string> classes;
    try {
        classes = isAboutNames ? ClassNamesIn(NamespaceOrOwn(NamespaceIn(query.path))) : classes;
    } catch (const RemoteError&) {
        // a server that does not list its classes
    }
    for (const std::string& name : {ClassIn(query.path), query.associationClass, query.resultClass}) {
        if (!name.empty() && !classes.empty() && !HasName(classes, name)) {
            throw NoSuchClass(name, Server(), classes);
        }
    }
    Fail("the associations of " + query.path + " cannot be read from " + Server(), failure);
}

std::vector<TCIMReference> Session::RelatedPaths(AssociationQuery query) {
    query.host = connection_.host;
    return ReadingAssociations(query, [&] { return plugin_.Access().RelatedPaths(*namespace_, query); });
}

std::vector<boost::shared_ptr<ICIMInstance>> Session::Related(AssociationQuery query) {
    query.host = connection_.host;
    const auto objects = ReadingAssociations(query, [&] { return plugin_.Access().ReadRelated(*namespace_, query); });
    std::vector<boost::shared_ptr<ICIMInstance>> all;
    for (const std::string& name : objects->Namespaces()) {
        ICIMNamespace& where = NamespaceOrOwn(name);
        const auto instances = ReadingAssociations(query, [&] { return objects->TakeInstances(name, where); });
        all.insert(all.end(), instances.begin(), instances.end());
    }
    return all;
}

std::vector<RemoteLink> Session::Links(const std::string& path) {
    AssociationQuery query;
    query.path = path;
    return ReadingAssociations(query, [&] { return plugin_.Access().ReadLinks(*namespace_, path); });
}

TCIMReference Session::ReferenceTo(const std::string& path) {
    try {
        TCIMReference reference = plugin_.Access().ParsePath(path);
        const std::string name = NamespaceIn(path);
        if (!HasKeys(reference)) {
            throw std::invalid_argument("cannot be read: it names a class, and not an instance");
        }
        reference.SetHost(std::string());
        reference.SetNamespaceName(name.empty() ? NamespaceName() : name);
        return reference;
    } catch (const std::invalid_argument& error) {
        throw NotAPath(path, error.what());
    }
}

void Session::CheckExists(const std::string& path) {
    try {
        Awaited("the instance " + path, [&] {
            plugin_.Access().CheckInstance(*namespace_, path);
            return true;
        });
    } catch (const RemoteError& error) {
        const auto status = RemoteReason(error.Failure(), connection_).Status();
        if (status == Failure::kNotFound || status == Failure::kConnection) {
            Fail("the instance " + path + " cannot be read from " + Server(), error.Failure());
        }
        // a server that does not tell
    }
}

// --- Other namespaces --------------------------------------------------------------------------------------------

std::string Session::ClassIn(const std::string& path) const { return plugin_.Access().ParsePath(path).GetClassName(); }

ICIMNamespace& Session::NamespaceOrOwn(const std::string& name) {
    return name.empty() || IsSameName(name, connection_.nameSpace) ? *namespace_ : NamespaceNamed(name);
}

ICIMNamespace& Session::NamespaceNamed(const std::string& name) {
    const auto known = others_.find(name);
    if (known != others_.end()) {
        return *known->second;
    }
    Connection other = connection_;
    other.nameSpace = name;
    return *others_.emplace(name, Open(other)).first->second;
}

std::string Session::NamespaceIn(const std::string& path) const {
    try {
        const std::string name = WithoutLeadingSlash(plugin_.Access().NamespaceOf(path));
        return IsSameName(name, connection_.nameSpace) ? std::string() : name;
    } catch (const std::invalid_argument& error) {
        throw NotAPath(path, error.what());
    }
}

Session::FoundInstance Session::Instance(const std::string& path) {
    const std::string name = NamespaceIn(path);
    ICIMNamespace& nameSpace = name.empty() ? *namespace_ : NamespaceNamed(name);
    try {
        return {Awaited("the instance " + path, [&] { return plugin_.Access().ReadInstance(nameSpace, path); }), name};
    } catch (const std::invalid_argument& error) {
        throw NotAPath(path, error.what());
    } catch (const RemoteError& error) {
        if (error.Failure().kind == RemoteFailure::Kind::kCimStatus && error.Failure().cimStatus == kCimInvalidClass) {
            FailAboutClass(ClassIn(path), nameSpace, error.Failure());
        }
        Fail("the instance " + path + " cannot be read from " + Place(), error.Failure());
    }
}

IncidentTally Session::TakeIncidents() {
    IncidentTally incidents;
    incidents.Add(plugin_.Access().TakeIncidents(*namespace_));
    for (const auto& [name, other] : others_) {
        incidents.Add(plugin_.Access().TakeIncidents(*other));
    }
    return incidents;
}

} // namespace cimhttp
