// Goes one of a few short paths, of which tests/perf/compare counts the instructions under callgrind: those of
// Measured() alone. The server is in this process, on an address that is given.

#include "host/ICIMClass.h"
#include "host/ICIMInstance.h"
#include "host/ICIMProperty.h"
#include "model/TCimHTTPProperty.h"
#include "provider/TCimHTTPNamespace.h"
#include "provider/TCimHTTPNamespaceProvider.h"
#include "server/DemoServer.h"

#include <Pegasus/Client/CIMClient.h>
#include <Pegasus/Common/Exception.h>

#include <boost/pointer_cast.hpp>

#include <exception>
#include <functional>
#include <iostream>
#include <map>
#include <stdexcept>
#include <string>

using namespace NQORVYX20;

namespace {

constexpr int kPort = 5988;
constexpr std::size_t kVolumes = 100;
constexpr int kClassReadings = 20;
constexpr const char* kNamespace = "root/cimv2";
constexpr const char* kClassName = "DEMO_StorageVolume";

/// What is counted. Returns how many things the job did.
[[gnu::noinline]] std::size_t Measured(const std::function<std::size_t()>& job) { return job(); }

std::size_t WithClient(const std::string& address, const std::function<std::size_t(Pegasus::CIMClient&)>& job) {
    Pegasus::CIMClient client;
    client.setTimeout(300'000); // enough under callgrind, too
    client.connect(Pegasus::String(address.c_str()), kPort, "", "");
    client.getQualifier(kNamespace, "Key"); // opens the connection
    return Measured([&] { return job(client); });
}

std::size_t ReadInstances(const std::string& address) {
    return WithClient(address, [](Pegasus::CIMClient& client) {
        return client.enumerateInstances(kNamespace, kClassName, true, false).size();
    });
}

std::size_t ReadNames(const std::string& address) {
    return WithClient(address, [](Pegasus::CIMClient& client) {
        return client.enumerateInstanceNames(kNamespace, kClassName).size();
    });
}

std::size_t ReadClass(const std::string& address) {
    return WithClient(address, [](Pegasus::CIMClient& client) {
        std::size_t count = 0;
        for (int i = 0; i < kClassReadings; ++i) {
            count += client.getClass(kNamespace, kClassName, false).getPropertyCount();
        }
        return count;
    });
}

/// Does something with each instance that the plug-in reads.
std::size_t ForEachInstance(ICIMClass& cls, const std::function<void(ICIMInstance&)>& work) {
    std::size_t count = 0;
    cls.EnumerateInstances(
        [&](const boost::shared_ptr<ICIMInstance>& instance) {
            work(*instance);
            return ++count != 0;
        },
        false, TCIMContext());
    return count;
}

std::size_t Show(ICIMInstance& instance) {
    std::size_t length = 0;
    instance.EnumerateProperties(
        [&](const boost::shared_ptr<ICIMProperty>& property) {
            const TCIMValue& value = property->GetValue(TCIMContext());
            const TCimHTTPProperty shown(property->GetDeclaration(TCIMContext()), value);
            length += value.IsArray() ? shown.ToStringVector().size() : shown.ToString().size();
            return true;
        },
        TCIMContext());
    return length;
}

std::size_t WithClass(const std::string& address, const std::function<std::size_t(ICIMClass&)>& job) {
    const auto nameSpace =
        boost::dynamic_pointer_cast<TCimHTTPNamespace>(TCimHTTPNamespaceProvider::GetInstance()->AllocateNamespace(
            {{"pluginNameQualDeclValue", TCIMValue("cimhttp")}}, false));
    nameSpace->connect(address, "", "", kPort);
    const auto cls = nameSpace->GetClass(kClassName, TCIMContext());
    if (!cls) {
        throw std::runtime_error("the server does not serve the class");
    }
    return job(*cls);
}

std::size_t Enumerate(const std::string& address) {
    return WithClass(address, [](ICIMClass& cls) {
        return Measured([&] { return ForEachInstance(cls, [](ICIMInstance& /*instance*/) {}); });
    });
}

std::size_t Display(const std::string& address) {
    return WithClass(address, [](ICIMClass& cls) {
        ForEachInstance(cls, [](ICIMInstance& /*instance*/) {}); // fetches them
        std::size_t length = 0;
        return Measured([&] {
            ForEachInstance(cls, [&](ICIMInstance& instance) { length += Show(instance); });
            return length;
        });
    });
}

const std::map<std::string, std::size_t (*)(const std::string& address)>& Paths() {
    static const std::map<std::string, std::size_t (*)(const std::string& address)> paths = {
        {"instances", ReadInstances}, {"names", ReadNames}, {"class", ReadClass},
        {"enumeration", Enumerate},   {"display", Display},
    };
    return paths;
}

} // namespace

int main(int argc, char** argv) {
    const auto path = argc == 3 ? Paths().find(argv[1]) : Paths().end();
    if (path == Paths().end()) {
        std::cerr << "use: paths instances|names|class|enumeration|display ADDRESS, one to listen on\n";
        return 2;
    }
    try {
        demo::DemoServerOptions options;
        options.address = argv[2];
        options.volumes = kVolumes;
        const demo::DemoServer server(options);
        if (path->second(argv[2]) < kVolumes) {
            throw std::runtime_error("the path was not gone to its end");
        }
        return 0;
    } catch (const Pegasus::Exception& exception) {
        std::cerr << "paths: " << exception.getMessage() << '\n';
    } catch (const std::exception& exception) {
        std::cerr << "paths: " << exception.what() << '\n';
    }
    return 1;
}
