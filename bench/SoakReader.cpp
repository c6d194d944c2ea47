#include "SoakReader.h"

#include "cimhttp/ContextKeys.h"
#include "host/ICIMClass.h"
#include "host/ICIMInstance.h"
#include "host/ICIMMethodDecl.h"
#include "host/ICIMProperty.h"
#include "host/ICIMPropertyDecl.h"
#include "host/ICIMQualifier.h"
#include "host/ICIMQualifierDecl.h"
#include "host/TCIMReference.h"
#include "host/TVYXException.h"
#include "model/TCimHTTPProperty.h"
#include "provider/TCimHTTPNamespace.h"
#include "provider/TCimHTTPNamespaceProvider.h"

#include <Pegasus/Client/CIMClient.h>

#include <boost/pointer_cast.hpp>

#include <functional>
#include <iostream>
#include <stdexcept>
#include <thread>

using namespace NQORVYX20;

namespace bench {

namespace {

using NamespacePtr = boost::shared_ptr<TCimHTTPNamespace>;

constexpr const char* kVolumeClass = "DEMO_StorageVolume";
/// Of servers that are not lying, answers are waited for; the machine may be busy.
constexpr std::chrono::milliseconds kTimeout(60'000);
constexpr std::chrono::milliseconds kShortTimeout(300);

std::chrono::milliseconds TimeoutFor(const SoakServer& server) {
    return server.manner == Manner::kLying ? kShortTimeout : kTimeout;
}

NamespacePtr Allocate(const std::string& reading, std::chrono::milliseconds timeout) {
    const TCIMValue milliseconds(static_cast<unsigned>(timeout.count()));
    TCIMContext context{{"pluginNameQualDeclValue", TCIMValue("cimhttp")},
                        {kReadingKey, TCIMValue(reading)},
                        {kConnectTimeoutKey, milliseconds},
                        {kTimeoutKey, milliseconds}};
    return boost::dynamic_pointer_cast<TCimHTTPNamespace>(
        TCimHTTPNamespaceProvider::GetInstance()->AllocateNamespace(context, false));
}

void Connect(TCimHTTPNamespace& nameSpace, const SoakServer& server) {
    nameSpace.connect(server.address, server.user, server.password, server.port);
}

Digest DigestOfQualifiers(const ICIMNamedElement& element) {
    Digest digest;
    element.EnumerateQualifiers(
        [&](const boost::shared_ptr<ICIMQualifier>& qualifier) {
            digest.Add(qualifier->GetName(TCIMContext()) + '=' +
                       static_cast<std::string>(qualifier->GetValue(TCIMContext())));
            return true;
        },
        TCIMContext());
    return digest;
}

/// The names of a class, its features and their qualifiers, with the qualifiers' values.
Digest DigestOf(const ICIMClass& cls) {
    Digest digest = DigestOfQualifiers(cls);
    digest.Add(cls.GetName(TCIMContext()));
    cls.EnumeratePropertyDecls(
        [&](const boost::shared_ptr<ICIMPropertyDecl>& property) {
            digest.Add(property->GetName(TCIMContext()));
            digest.Add(DigestOfQualifiers(*property));
            return true;
        },
        TCIMContext());
    cls.EnumerateMethodDecls(
        [&](const boost::shared_ptr<ICIMMethodDecl>& method) {
            digest.Add(method->GetName(TCIMContext()));
            return true;
        },
        TCIMContext());
    return digest;
}

/// The display texts of an instance.
Digest DigestOf(ICIMInstance& instance) {
    Digest digest;
    std::string text = instance.GetReference(TCIMContext()).GetPath();
    instance.EnumerateProperties(
        [&](const boost::shared_ptr<ICIMProperty>& property) {
            const auto declaration = property->GetDeclaration(TCIMContext());
            text += '\n' + declaration->GetName(TCIMContext()) + '=' +
                    TCimHTTPProperty(declaration, property->GetValue(TCIMContext())).ToString();
            return true;
        },
        TCIMContext());
    digest.Add(text);
    return digest;
}

boost::shared_ptr<ICIMClass> ClassOf(TCimHTTPNamespace& nameSpace, const std::string& name) {
    return nameSpace.GetClass(name, TCIMContext());
}

std::optional<Digest> ReadClass(TCimHTTPNamespace& nameSpace, const std::string& name) {
    const auto cls = ClassOf(nameSpace, name);
    return cls ? std::optional<Digest>(DigestOf(*cls)) : std::nullopt;
}

std::optional<Digest> ReadInstances(TCimHTTPNamespace& nameSpace, const std::string& name) {
    const auto cls = ClassOf(nameSpace, name);
    if (!cls) {
        return std::nullopt;
    }
    Digest digest;
    cls->EnumerateInstances(
        [&](const boost::shared_ptr<ICIMInstance>& instance) {
            digest.Add(DigestOf(*instance));
            return true;
        },
        false, TCIMContext());
    return digest;
}

/// One instance by its path, after the enumeration that tells the path.
std::optional<Digest> ReadInstance(TCimHTTPNamespace& nameSpace, const std::string& name) {
    const auto cls = ClassOf(nameSpace, name);
    std::optional<TCIMReference> path;
    if (cls) {
        cls->EnumerateInstances(
            [&](const boost::shared_ptr<ICIMInstance>& instance) {
                path = instance->GetReference(TCIMContext());
                return false;
            },
            false, TCIMContext());
    }
    const auto instance = path ? nameSpace.GetInstance(*path, TCIMContext()) : nullptr;
    return instance ? std::optional<Digest>(DigestOf(*instance)) : std::nullopt;
}

/// The names of the subclasses that the server has, or that were read so far.
std::optional<Digest> ReadSubclasses(TCimHTTPNamespace& nameSpace, const std::string& name) {
    const auto cls = ClassOf(nameSpace, name);
    if (!cls) {
        return std::nullopt;
    }
    Digest digest;
    cls->EnumerateSubClasses(
        [&](const boost::shared_ptr<ICIMClass>& subclass) {
            digest.Add(subclass->GetName(TCIMContext()));
            return true;
        },
        true, TCIMContext());
    return digest;
}

/// The qualifier declarations that the namespace has so far.
std::optional<Digest> ReadQualifiers(TCimHTTPNamespace& nameSpace, const std::string& /*name*/) {
    Digest digest;
    nameSpace.EnumerateQualifierDecls(
        [&](const boost::shared_ptr<ICIMQualifierDecl>& declaration) {
            digest.Add(declaration->GetName(TCIMContext()));
            return true;
        },
        TCIMContext());
    return digest;
}

struct Job {
    const char* what;
    std::optional<Digest> (*read)(TCimHTTPNamespace& nameSpace, const std::string& className);
    const char* className;
    /// Whether it brings the same each time, whatever was read before.
    bool isKnown;
};

constexpr Job kJobs[] = {
    {"the class", ReadClass, kVolumeClass, true},
    {"the class", ReadClass, "CIM_FileSystem", true},
    {"the class", ReadClass, "DEMO_SystemDevice", true},
    {"the instances", ReadInstances, kVolumeClass, true},
    {"the instances", ReadInstances, "DEMO_AllTypes", true},
    {"the instances", ReadInstances, "DEMO_OperatingSystem", false}, // they tell the time
    {"the instances", ReadInstances, "DEMO_FileSystem", false},
    {"an instance", ReadInstance, kVolumeClass, true},
    {"the subclasses", ReadSubclasses, "CIM_LogicalDevice", false},
    {"the qualifiers", ReadQualifiers, "", false},
};
constexpr const char* kReadings[] = {kCompatibleReading, kFaithfulReading};

std::string KeyOf(const std::string& reading, const Job& job) {
    return reading + ": " + job.what + " of " + job.className;
}

/// What the client library cannot be blamed for has a kind; for the others, see RemoteFailure.
constexpr const char* kKindNames[] = {"name unknown", "refused",    "not connected", "TLS",     "closed",
                                      "time-out",     "login",      "HTTP",          "not CIM", "malformed",
                                      "limit",        "CIM status", "policy",        "other"};
static_assert(std::size(kKindNames) == SoakTally::kKinds);
static_assert(static_cast<std::size_t>(RemoteFailure::Kind::kOther) == SoakTally::kKinds - 1);

} // namespace

void Digest::Add(const std::string& text) {
    ++count;
    sum += std::hash<std::string>()(text);
}

void Digest::Add(const Digest& other) {
    count += other.count;
    sum += other.sum * 31; // not the same wherever a qualifier stands
}

void SoakTally::CountWrong(const std::string& what) {
    constexpr std::size_t kMaxPrinted = 20;
    const std::lock_guard<std::mutex> lock(mutex_);
    if (wrong_++ < kMaxPrinted) {
        std::cout << "WRONG: " << what << std::endl;
    }
}

void SoakTally::Print() const {
    std::cout << "  namespaces " << namespaces_ << ", reads " << reads_ << ", of which checked " << checks_
              << ", wrong " << wrong_ << "\n  failures:";
    for (std::size_t kind = 0; kind < kKinds; ++kind) {
        std::cout << (kind == 0 ? " " : ", ") << kKindNames[kind] << ' ' << failures_[kind];
    }
    std::cout << std::endl;
}

SoakReader::Known SoakReader::Learn(const SoakServer& server) {
    Known known;
    for (const char* const reading : kReadings) {
        for (const Job& job : kJobs) {
            const auto nameSpace = Allocate(reading, kTimeout);
            Connect(*nameSpace, server);
            const auto digest = job.read(*nameSpace, job.className);
            if (!digest || nameSpace->LastFailure()) {
                throw std::runtime_error("cannot read " + KeyOf(reading, job));
            }
            if (job.isKnown) {
                known[KeyOf(reading, job)] = *digest;
            }
            if (job.read == ReadInstances && job.className == std::string(kVolumeClass) &&
                digest->count != SoakServers::kVolumes) {
                throw std::runtime_error("not all instances: " + KeyOf(reading, job));
            }
        }
    }
    return known;
}

void SoakReader::Visit(const std::vector<SoakServer>& servers, std::chrono::milliseconds pause) {
    const SoakServer& server = servers[Pick(generator_, servers.size())];
    const std::string reading = kReadings[Pick(generator_, std::size(kReadings))];
    const auto nameSpace = Allocate(reading, TimeoutFor(server));
    tally_.CountNamespace();
    try {
        Connect(*nameSpace, server);
        Read(*nameSpace, server, reading, pause);
    } catch (const TVYXException& error) {
        if (nameSpace->LastFailure()) {
            tally_.Count(*nameSpace->LastFailure());
        }
        // Without a failure of the server, what an exception tells is a fault of the plug-in, or of a lie.
        if (server.manner == Manner::kTruthful || (server.manner == Manner::kPassing && !nameSpace->LastFailure())) {
            tally_.CountWrong(reading + ": " + server.address + ' ' + error.what() +
                              (nameSpace->LastFailure() ? ": " + nameSpace->LastFailure()->text : ""));
        }
    } catch (const std::exception& error) {
        tally_.CountWrong(reading + ": " + server.address +
                          " an exception that the contract does not know: " + error.what());
    }
    nameSpace->disconnect();
}

/// Reads until something fails: what comes then may lack what was missed.
void SoakReader::Read(TCimHTTPNamespace& nameSpace, const SoakServer& server, const std::string& reading,
                      std::chrono::milliseconds pause) {
    constexpr std::size_t kMaxReads = 5;
    for (std::size_t left = 1 + Pick(generator_, kMaxReads); left > 0; --left) {
        const Job& job = kJobs[Pick(generator_, std::size(kJobs))];
        tally_.CountRead();
        const auto digest = job.read(nameSpace, job.className);
        const auto failure = nameSpace.LastFailure();
        if (failure) {
            tally_.Count(*failure);
        }
        if (job.isKnown) {
            Check(server, KeyOf(reading, job), digest, !failure);
        }
        nameSpace.TakeIncidents();
        std::this_thread::sleep_for(pause);
        if (failure) {
            return;
        }
    }
}

void SoakReader::Check(const SoakServer& server, const std::string& key, const std::optional<Digest>& read,
                       bool isWhole) {
    if (server.manner == Manner::kLying || (server.manner == Manner::kPassing && !isWhole)) {
        return;
    }
    tally_.CountCheck();
    if (!isWhole || !read || !(*read == known_.at(key))) {
        tally_.CountWrong(key + " of " + server.address + " port " + std::to_string(server.port) +
                          (isWhole ? " is another than it should be: " + std::to_string(read ? read->count : 0) +
                                         " instead of " + std::to_string(known_.at(key).count)
                                   : " is not whole"));
    }
}

} // namespace bench
