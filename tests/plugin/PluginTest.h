#pragma once

#include "CapturingLogger.h"
#include "host/ICIMClass.h"
#include "host/ICIMInstance.h"
#include "host/ICIMMethodDecl.h"
#include "host/ICIMParameterDecl.h"
#include "host/ICIMProperty.h"
#include "host/ICIMPropertyDecl.h"
#include "host/ICIMQualifier.h"
#include "host/TVYXException.h"
#include "model/TCimHTTPClass.h"
#include "model/TCimHTTPMethodDecl.h"
#include "model/TCimHTTPParameterDecl.h"
#include "model/TCimHTTPPropertyDecl.h"
#include "model/TCimHTTPQualifier.h"
#include "model/TCimHTTPQualifierDecl.h"
#include "provider/TCimHTTPNamespace.h"
#include "provider/TCimHTTPNamespaceProvider.h"
#include "support/CimServer.h"

#include <boost/make_shared.hpp>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

using ECIMType = NQORVYX20::TCIMValue::TCIMType::ECIMType;

// CIM-XML, as it stands inside an answer's IRETURNVALUE.
std::string QualifierXml(const std::string& name, const std::string& type, const std::string& value);
std::string KeyXml();
std::string PropertyXml(const std::string& name, const std::string& type, const std::string& content = "");
std::string ClassXml(const std::string& name, const std::string& superClass, const std::string& content);
std::string InstanceXml(const std::string& className, const std::string& keyName, const std::string& keyValue,
                        const std::string& properties);
std::string ValueXml(const std::string& value);

/// Runs an operation and returns the status code that it throws, 0 for none.
template <typename Operation>
unsigned StatusOf(Operation operation) {
    try {
        operation();
    } catch (const NQORVYX20::TVYXException& exception) {
        return exception.GetStatusCode().GetCode();
    }
    return 0;
}

/// The plug-in against a recording server on this process's address, with a logger that keeps its messages.
class PluginTest : public testing::Test {
  protected:
    PluginTest();
    ~PluginTest() override;

    /// A context with the one key that a namespace needs; the plug-in's name in it is "test plug-in".
    static NQORVYX20::TCIMContext PluginContext();

    boost::shared_ptr<NQORVYX20::TCimHTTPNamespace> MakeNamespace(bool redefine = false);
    boost::shared_ptr<NQORVYX20::TCimHTTPNamespace> ConnectedNamespace(bool redefine = false);

    /// The class of that name through the connected namespace; fails the test when there is none.
    boost::shared_ptr<NQORVYX20::TCimHTTPClass> FetchClass(NQORVYX20::TCimHTTPNamespace& nameSpace,
                                                           const std::string& name);

    /// Lets the server know a class, or the declaration of a qualifier.
    void ServeClass(const std::string& name, const std::string& superClass, const std::string& content);
    void ServeQualifier(const std::string& name, const std::string& type = "string", const std::string& attributes = "",
                        const std::string& scope = "CLASS=\"true\"");

    /// How many requests of a method for an object the server has seen.
    std::size_t CountCalls(const std::string& method, const std::string& object = "") const;

    /// How many connections were made to the server on these ports, besides its own: to each port it makes one and
    /// waits for an answer, and a server accepts connections in their order.
    std::size_t CountConnections(const std::vector<std::uint16_t>& ports) const;

    support::CimServer server_;
    boost::shared_ptr<CapturingLogger> log_ = boost::make_shared<CapturingLogger>();
};

/// The names of the classes that an enumeration visits.
template <typename Enumerate>
std::vector<std::string> VisitedNames(Enumerate enumerate) {
    std::vector<std::string> names;
    enumerate([&](const auto& element) {
        names.push_back(element->GetName(NQORVYX20::TCIMContext()));
        return true;
    });
    return names;
}
