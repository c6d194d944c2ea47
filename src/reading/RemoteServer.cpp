#include "reading/RemoteServer.h"

#include <algorithm>
#include <limits>
#include <utility>

#if __has_include(<Pegasus/Client/ClientLimits.h>)
#include <Pegasus/Client/ClientLimits.h>
#define CIMHTTP_HAS_CLIENT_LIMITS 1
#endif

#if __has_include(<Pegasus/Client/LenientFinding.h>)
#include <Pegasus/Client/LenientFinding.h>
#define CIMHTTP_HAS_LENIENT_FINDINGS 1
#endif

#include "convert/RemoteText.h"
#include "reading/ReadingReport.h"

#if __has_include(<Pegasus/Client/ArrivingInstances.h>)
#include "reading/InstanceArrival.h"
#include "reading/RemoteFailures.h"
#define CIMHTTP_HAS_ARRIVING_INSTANCES 1
#endif

#if __has_include(<Pegasus/Client/ExchangeObserver.h>)
#include "reading/TraceFile.h"
#define CIMHTTP_HAS_EXCHANGE_OBSERVER 1
#endif

namespace NQORVYX20 {

namespace {

constexpr bool kLocalOnly = true;
constexpr bool kDeep = true;
constexpr bool kQualifiers = true;
constexpr bool kClassOrigin = true;
[[maybe_unused]] constexpr Pegasus::Uint32 kCloseMilliseconds = 2000;
[[maybe_unused]] constexpr Pegasus::Uint32 kSecondMilliseconds = 10000; // for an answer over a second connection

/// The null name for an empty text.
Pegasus::CIMName NameOrNull(const std::string& name) {
    return name.empty() ? Pegasus::CIMName() : Pegasus::CIMName(ToRemoteText(name));
}

#ifdef CIMHTTP_HAS_LENIENT_FINDINGS

ReadingIncident::Cause CauseOf(Pegasus::LenientFinding::Kind kind) {
    switch (kind) {
    case Pegasus::LenientFinding::FOREIGN_BYTES:
        return ReadingIncident::Cause::kForeignBytes;
    case Pegasus::LenientFinding::DOUBLED_PROPERTY:
        return ReadingIncident::Cause::kDoubledProperty;
    default:
        return ReadingIncident::Cause::kUnreadableValue;
    }
}

ReadingIncident IncidentOf(const Pegasus::LenientFinding& finding) {
    return {CauseOf(finding.kind), ToStdString(finding.className), ToStdString(finding.path),
            ToStdString(finding.element),
            ToStdString(finding.reason) + ", at byte " + std::to_string(finding.offset) + " of the answer"};
}

void MoveFindings(Pegasus::CIMClient& client, ReadingReport& report) {
    Pegasus::LenientFindings findings = client.takeFindings();
    for (Pegasus::Uint32 i = 0; i < findings.first.size(); ++i) {
        const Pegasus::LenientFinding& finding = findings.first[i];
        --findings.counts[finding.kind];
        report.AddAndLog(IncidentOf(finding));
    }
    for (Pegasus::Uint32 kind = 0; kind < Pegasus::LenientFinding::kKinds; ++kind) {
        if (findings.counts[kind] != 0) {
            report.AddMore(CauseOf(static_cast<Pegasus::LenientFinding::Kind>(kind)), findings.counts[kind]);
        }
    }
}

#endif

} // namespace

RemoteServer::RemoteServer(std::unique_ptr<Pegasus::CIMNamespaceName> nameSpace,
                           std::unique_ptr<Pegasus::CIMClient> client)
    : namespace_(std::move(nameSpace)), client_(std::move(client)) {}

RemoteServer::~RemoteServer() {
    namespace_.reset();
    arrival_.reset(); // which uses the client
    client_.reset();
}

bool RemoteServer::SetLimits(std::optional<std::uint64_t> connectMilliseconds, std::optional<std::uint64_t> answerBytes,
                             std::optional<std::uint64_t> answerObjects) {
#ifdef CIMHTTP_HAS_CLIENT_LIMITS
    Pegasus::ClientLimits limits = client_->getLimits();
    limits.connectMilliseconds =
        static_cast<Pegasus::Uint32>(connectMilliseconds.value_or(Pegasus::ClientLimits::kConnectMilliseconds));
    limits.answerBytes = answerBytes.value_or(Pegasus::ClientLimits::kAnswerBytes);
    limits.answerObjects = answerObjects.value_or(Pegasus::ClientLimits::kAnswerObjects);
    client_->setLimits(limits);
    return true;
#else
    return !connectMilliseconds && !answerBytes && !answerObjects;
#endif
}

#ifdef CIMHTTP_HAS_LENIENT_FINDINGS

void RemoteServer::SetLenient(bool lenient) { client_->setLenient(lenient); }

void RemoteServer::LeaveQualifiedTexts() { client_->setQualifiedEmbedding(false); }

void RemoteServer::ReadDoubledProperties() { client_->setDoubledProperties(true); }

void RemoteServer::MoveFindingsTo(ReadingReport& report) {
    MoveFindings(*client_, report);
    if (second_) {
        MoveFindings(*second_, report);
    }
}

#else

void RemoteServer::SetLenient(bool /*lenient*/) {}

void RemoteServer::LeaveQualifiedTexts() {}

void RemoteServer::ReadDoubledProperties() {}

void RemoteServer::MoveFindingsTo(ReadingReport& /*report*/) {}

#endif

bool RemoteServer::SetTrace(const std::optional<std::string>& path) {
#ifdef CIMHTTP_HAS_EXCHANGE_OBSERVER
    client_->setExchangeObserver(path ? std::make_shared<TraceFile>(*path) : nullptr);
    second_.reset();
    trace_ = path;
    return true;
#else
    return !path;
#endif
}

// --- Requests while an answer arrives ------------------------------------------------------------------------------

#ifdef CIMHTTP_HAS_ARRIVING_INSTANCES

namespace {

/// Whether a server that answers the first connection may have failed only because it was the second one.
bool IsOfTheConnection(const Pegasus::Exception& exception) {
    switch (RemoteFailureOf(exception).kind) {
    case RemoteFailure::Kind::kCimStatus:
    case RemoteFailure::Kind::kMalformed:
    case RemoteFailure::Kind::kLimit:
    case RemoteFailure::Kind::kOther:
        return false;
    default:
        return true;
    }
}

/// The second client, connected as the first one is.
Pegasus::CIMClient& Second(std::unique_ptr<Pegasus::CIMClient>& second, const Pegasus::CIMClient& first,
                           const std::optional<std::string>& trace) {
    if (!second) {
        auto made = std::make_unique<Pegasus::CIMClient>();
        if (trace) {
            made->setExchangeObserver(std::make_shared<TraceFile>(*trace));
        }
        second = std::move(made);
    }
    second->connectLike(first);
    second->setTimeout(std::min(first.getTimeout(), kSecondMilliseconds));
    return *second;
}

} // namespace

/// Sends a request, over a second connection where the first one is still in use for an answer. Where the server has
/// none to give, the rest of that answer is read into memory first.
template <typename Ask>
auto RemoteServer::Send(const Ask& ask) {
    if (!arrival_ || arrival_->EndsSoon()) {
        return ask(*client_);
    }
    if (hasSecond_) {
        try {
            return ask(Second(second_, *client_, trace_));
        } catch (const Pegasus::Exception& exception) {
            if (!IsOfTheConnection(exception)) {
                throw;
            }
        }
        hasSecond_ = false;
        second_->disconnect();
    }
    arrival_->ReadAll();
    return ask(*client_);
}

std::weak_ptr<InstanceArrival> RemoteServer::BeginWholeInstances(const std::string& className,
                                                                 const Pegasus::CIMPropertyList& properties) {
    if (!arrival_) {
        arrival_ = std::make_shared<InstanceArrival>(std::make_unique<Pegasus::ArrivingInstances>(
            *client_, *namespace_, Pegasus::CIMName(ToRemoteText(className)), kDeep, !kLocalOnly, !kQualifiers,
            !kClassOrigin, properties));
        return arrival_;
    }
    return {};
}

Pegasus::Array<Pegasus::CIMInstance> RemoteServer::NextInstances(const std::weak_ptr<InstanceArrival>& arriving,
                                                                 Pegasus::Boolean& isAtEnd) {
    const auto arrival = arriving.lock();
    if (!arrival) {
        throw Pegasus::NotConnectedException(); // the host has disconnected meanwhile
    }
    auto instances = arrival->Next();
    isAtEnd = arrival->IsAtEnd();
    return instances;
}

void RemoteServer::EndArrival() noexcept {
    arrival_.reset();
    if (second_) {
        try {
            second_->disconnect();
        } catch (...) {
            second_.reset();
        }
    }
}

void RemoteServer::EndArrival(const std::weak_ptr<InstanceArrival>& arriving) noexcept {
    if (const auto arrival = arriving.lock(); arrival && arrival == arrival_) {
        EndArrival();
    }
}

#else

template <typename Ask>
auto RemoteServer::Send(const Ask& ask) {
    return ask(*client_);
}

std::weak_ptr<InstanceArrival> RemoteServer::BeginWholeInstances(const std::string& /*className*/,
                                                                 const Pegasus::CIMPropertyList& /*properties*/) {
    return {};
}

Pegasus::Array<Pegasus::CIMInstance> RemoteServer::NextInstances(const std::weak_ptr<InstanceArrival>& /*arriving*/,
                                                                 Pegasus::Boolean& /*isAtEnd*/) {
    throw Pegasus::CIMException(Pegasus::CIM_ERR_NOT_SUPPORTED, "the client library reads answers as a whole");
}

void RemoteServer::EndArrival() noexcept {}

void RemoteServer::EndArrival(const std::weak_ptr<InstanceArrival>& /*arriving*/) noexcept {}

#endif

// --- The requests --------------------------------------------------------------------------------------------------

Pegasus::CIMQualifierDecl RemoteServer::GetQualifier(const Pegasus::CIMName& name) {
    return Send([&](Pegasus::CIMClient& client) { return client.getQualifier(*namespace_, name); });
}

Pegasus::Array<Pegasus::CIMName> RemoteServer::EnumerateClassNames(const Pegasus::CIMNamespaceName& nameSpace,
                                                                   const Pegasus::CIMName& top) {
    return Send([&](Pegasus::CIMClient& client) { return client.enumerateClassNames(nameSpace, top, kDeep); });
}

Pegasus::CIMClass RemoteServer::GetClassForItsNames(const std::string& name) { return GetClass(name, kClassOrigin); }

Pegasus::CIMClass RemoteServer::GetClassToBuild(const std::string& name) { return GetClass(name, !kClassOrigin); }

Pegasus::CIMClass RemoteServer::GetWholeClass(const std::string& name) { return GetClass(name, kClassOrigin); }

Pegasus::CIMClass RemoteServer::GetClass(const std::string& name, bool includeClassOrigin) {
    return Send([&](Pegasus::CIMClient& client) {
        return client.getClass(*namespace_, Pegasus::CIMName(ToRemoteText(name)), !kLocalOnly, kQualifiers,
                               includeClassOrigin, Pegasus::CIMPropertyList());
    });
}

Pegasus::Array<Pegasus::CIMInstance> RemoteServer::EnumerateLocalInstances(const std::string& className, bool deep) {
    return Send([&](Pegasus::CIMClient& client) {
        return client.enumerateInstances(*namespace_, Pegasus::CIMName(ToRemoteText(className)), deep, kLocalOnly,
                                         !kQualifiers, !kClassOrigin, Pegasus::CIMPropertyList());
    });
}

Pegasus::Array<Pegasus::CIMInstance>
RemoteServer::EnumerateInstancesForDiagnosis(const Pegasus::CIMNamespaceName& nameSpace,
                                             const Pegasus::CIMName& className) {
    return Send([&](Pegasus::CIMClient& client) {
        return client.enumerateInstances(nameSpace, className, !kDeep, !kLocalOnly, !kQualifiers, !kClassOrigin,
                                         Pegasus::CIMPropertyList());
    });
}

Pegasus::Array<Pegasus::CIMClass> RemoteServer::EnumerateWholeClasses(const std::string& name, bool deep) {
    return Send([&](Pegasus::CIMClient& client) {
        return client.enumerateClasses(*namespace_, NameOrNull(name), deep, !kLocalOnly, kQualifiers, kClassOrigin);
    });
}

Pegasus::Array<Pegasus::CIMQualifierDecl> RemoteServer::EnumerateQualifiers() {
    return Send([&](Pegasus::CIMClient& client) { return client.enumerateQualifiers(*namespace_); });
}

bool RemoteServer::HasPulledEnumerations() {
#ifdef CIMHTTP_HAS_CLIENT_LIMITS
    return Send([&](Pegasus::CIMClient& client) { return client.hasPulledEnumerations(*namespace_); });
#else
    throw Pegasus::CIMException(Pegasus::CIM_ERR_NOT_SUPPORTED, "the client library does not ask for that");
#endif
}

Pegasus::Array<Pegasus::CIMInstance> RemoteServer::EnumerateWholeInstances(const std::string& className,
                                                                           const Pegasus::CIMPropertyList& properties) {
    return Send([&](Pegasus::CIMClient& client) {
        return client.enumerateInstances(*namespace_, Pegasus::CIMName(ToRemoteText(className)), kDeep, !kLocalOnly,
                                         !kQualifiers, !kClassOrigin, properties);
    });
}

#ifdef CIMHTTP_HAS_PULLED_ENUMERATIONS

Pegasus::Array<Pegasus::CIMInstance> RemoteServer::OpenWholeInstances(RemoteEnumeration& enumeration,
                                                                      const std::string& className,
                                                                      const Pegasus::CIMPropertyList& properties,
                                                                      Pegasus::Uint32 count) {
    return Send([&](Pegasus::CIMClient& client) {
        return client.openEnumerateInstances(
            enumeration.context, enumeration.isAtEnd, *namespace_, Pegasus::CIMName(ToRemoteText(className)), kDeep,
            !kClassOrigin, properties, Pegasus::String(), Pegasus::String(), Pegasus::Uint32Arg(), false, count);
    });
}

Pegasus::Array<Pegasus::CIMInstance> RemoteServer::PullInstances(RemoteEnumeration& enumeration,
                                                                 Pegasus::Uint32 count) {
    return Send([&](Pegasus::CIMClient& client) {
        return client.pullInstancesWithPath(enumeration.context, enumeration.isAtEnd, count);
    });
}

void RemoteServer::CloseEnumeration(RemoteEnumeration& enumeration) {
    Send([&](Pegasus::CIMClient& client) {
        const Pegasus::Uint32 timeout = client.getTimeout();
        client.setTimeout(std::min(timeout, kCloseMilliseconds));
        try {
            client.closeEnumeration(enumeration.context);
        } catch (...) {
            client.setTimeout(timeout);
            throw;
        }
        client.setTimeout(timeout);
    });
}

#else

namespace {

[[noreturn]] void ThrowWithoutPulls() {
    throw Pegasus::CIMException(Pegasus::CIM_ERR_NOT_SUPPORTED, "the client library has no pulled enumerations");
}

} // namespace

Pegasus::Array<Pegasus::CIMInstance> RemoteServer::OpenWholeInstances(RemoteEnumeration& /*enumeration*/,
                                                                      const std::string& /*className*/,
                                                                      const Pegasus::CIMPropertyList& /*properties*/,
                                                                      Pegasus::Uint32 /*count*/) {
    ThrowWithoutPulls();
}

Pegasus::Array<Pegasus::CIMInstance> RemoteServer::PullInstances(RemoteEnumeration& /*enumeration*/,
                                                                 Pegasus::Uint32 /*count*/) {
    ThrowWithoutPulls();
}

void RemoteServer::CloseEnumeration(RemoteEnumeration& /*enumeration*/) { ThrowWithoutPulls(); }

#endif

#ifdef CIMHTTP_HAS_CLIENT_LIMITS

std::uint64_t RemoteServer::MaxBytes() const { return client_->getLimits().answerBytes; }

std::uint64_t RemoteServer::MaxInstances() const { return client_->getLimits().answerObjects; }

std::uint64_t RemoteServer::BytesOf(const RemoteEnumeration& enumeration) {
    return enumeration.context.getAnswerBytes();
}

#else

std::uint64_t RemoteServer::MaxBytes() const { return std::numeric_limits<std::uint64_t>::max(); }

std::uint64_t RemoteServer::MaxInstances() const { return std::numeric_limits<std::uint64_t>::max(); }

std::uint64_t RemoteServer::BytesOf(const RemoteEnumeration& /*enumeration*/) { return 0; }

#endif

Pegasus::CIMInstance RemoteServer::GetWholeInstance(const Pegasus::CIMObjectPath& path) {
    return Send([&](Pegasus::CIMClient& client) {
        return client.getInstance(*namespace_, path, !kLocalOnly, !kQualifiers, !kClassOrigin,
                                  Pegasus::CIMPropertyList());
    });
}

Pegasus::Array<Pegasus::CIMClass> RemoteServer::EnumerateClassHeads() {
    return Send([&](Pegasus::CIMClient& client) {
        return client.enumerateClasses(*namespace_, Pegasus::CIMName(), kDeep, kLocalOnly, !kQualifiers, !kClassOrigin);
    });
}

Pegasus::Array<Pegasus::CIMObjectPath> RemoteServer::EnumerateInstanceNames(const std::string& className) {
    return EnumerateInstanceNames(*namespace_, className);
}

Pegasus::Array<Pegasus::CIMObjectPath> RemoteServer::EnumerateInstanceNames(const Pegasus::CIMNamespaceName& nameSpace,
                                                                            const std::string& className) {
    return Send([&](Pegasus::CIMClient& client) {
        return client.enumerateInstanceNames(nameSpace, Pegasus::CIMName(ToRemoteText(className)));
    });
}

void RemoteServer::CheckInstance(const Pegasus::CIMNamespaceName& nameSpace, const Pegasus::CIMObjectPath& path) {
    const Pegasus::CIMPropertyList none{Pegasus::Array<Pegasus::CIMName>()};
    Send([&](Pegasus::CIMClient& client) {
        return client.getInstance(nameSpace, path, !kLocalOnly, !kQualifiers, !kClassOrigin, none);
    });
}

Pegasus::Array<Pegasus::CIMObject> RemoteServer::Associators(const AssociationRequest& request,
                                                             const Pegasus::CIMPropertyList& properties) {
    return Send([&](Pegasus::CIMClient& client) {
        return client.associators(request.nameSpace, request.object, NameOrNull(request.associationClass),
                                  NameOrNull(request.resultClass), ToRemoteText(request.role),
                                  ToRemoteText(request.resultRole), !kQualifiers, !kClassOrigin, properties);
    });
}

Pegasus::Array<Pegasus::CIMObjectPath> RemoteServer::AssociatorNames(const AssociationRequest& request) {
    return Send([&](Pegasus::CIMClient& client) {
        return client.associatorNames(request.nameSpace, request.object, NameOrNull(request.associationClass),
                                      NameOrNull(request.resultClass), ToRemoteText(request.role),
                                      ToRemoteText(request.resultRole));
    });
}

Pegasus::Array<Pegasus::CIMObject> RemoteServer::References(const AssociationRequest& request,
                                                            const Pegasus::CIMPropertyList& properties) {
    return Send([&](Pegasus::CIMClient& client) {
        return client.references(request.nameSpace, request.object, NameOrNull(request.associationClass),
                                 ToRemoteText(request.role), !kQualifiers, !kClassOrigin, properties);
    });
}

Pegasus::Array<Pegasus::CIMObjectPath> RemoteServer::ReferenceNames(const AssociationRequest& request) {
    return Send([&](Pegasus::CIMClient& client) {
        return client.referenceNames(request.nameSpace, request.object, NameOrNull(request.associationClass),
                                     ToRemoteText(request.role));
    });
}

} // namespace NQORVYX20
