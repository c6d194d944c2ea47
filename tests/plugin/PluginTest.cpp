#include "PluginTest.h"

#include "host/TRootObject.h"
#include "support/CimXml.h"

#include <algorithm>

using namespace NQORVYX20;

namespace xml = support::xml;

namespace {

constexpr std::uint16_t kHttpPort = 5988;

} // namespace

std::string ValueXml(const std::string& value) { return xml::Value(value); }

std::string QualifierXml(const std::string& name, const std::string& type, const std::string& value) {
    return xml::Qualifier(name, type, value.empty() ? "" : xml::Value(value));
}

std::string KeyXml() { return QualifierXml("Key", "boolean", "TRUE"); }

std::string PropertyXml(const std::string& name, const std::string& type, const std::string& content) {
    return xml::Property(name, type, content);
}

std::string ClassXml(const std::string& name, const std::string& superClass, const std::string& content) {
    return xml::Class(name, superClass, content);
}

std::string InstanceXml(const std::string& className, const std::string& keyName, const std::string& keyValue,
                        const std::string& properties) {
    return "<VALUE.NAMEDINSTANCE><INSTANCENAME CLASSNAME=\"" + className + "\"><KEYBINDING NAME=\"" + keyName +
           "\"><KEYVALUE VALUETYPE=\"string\">" + keyValue + "</KEYVALUE></KEYBINDING></INSTANCENAME>" +
           xml::Instance(className, properties) + "</VALUE.NAMEDINSTANCE>";
}

PluginTest::PluginTest() {
    TRootObject::SetCoreLogger(log_);
    server_.Listen(kHttpPort);
    ServeQualifier("Key", "boolean");
    ServeQualifier("Description");
}

PluginTest::~PluginTest() { TRootObject::SetCoreLogger(boost::shared_ptr<ILogger>()); }

TCIMContext PluginTest::PluginContext() { return {{"pluginNameQualDeclValue", TCIMValue("test plug-in")}}; }

boost::shared_ptr<TCimHTTPNamespace> PluginTest::MakeNamespace(bool redefine) {
    return boost::dynamic_pointer_cast<TCimHTTPNamespace>(
        TCimHTTPNamespaceProvider::GetInstance()->AllocateNamespace(PluginContext(), redefine));
}

boost::shared_ptr<TCimHTTPNamespace> PluginTest::ConnectedNamespace(bool redefine) {
    auto nameSpace = MakeNamespace(redefine);
    nameSpace->connect(server_.Address(), "", "", kHttpPort);
    return nameSpace;
}

boost::shared_ptr<TCimHTTPClass> PluginTest::FetchClass(TCimHTTPNamespace& nameSpace, const std::string& name) {
    auto cls = boost::dynamic_pointer_cast<TCimHTTPClass>(nameSpace.GetClass(name, TCIMContext()));
    if (!cls) {
        throw std::runtime_error("the class " + name + " could not be fetched");
    }
    return cls;
}

void PluginTest::ServeClass(const std::string& name, const std::string& superClass, const std::string& content) {
    server_.Answer("GetClass", name, ClassXml(name, superClass, content));
}

void PluginTest::ServeQualifier(const std::string& name, const std::string& type, const std::string& attributes,
                                const std::string& scope) {
    server_.Answer("GetQualifier", name,
                   "<QUALIFIER.DECLARATION NAME=\"" + name + "\" TYPE=\"" + type + "\" " + attributes + "><SCOPE " +
                       scope + "/></QUALIFIER.DECLARATION>");
}

std::size_t PluginTest::CountCalls(const std::string& method, const std::string& object) const {
    const auto calls = server_.Calls();
    return static_cast<std::size_t>(std::count_if(calls.begin(), calls.end(), [&](const auto& call) {
        if (call.method != method) {
            return false;
        }
        const auto parameter = call.parameters.find(method == "GetQualifier" ? "QualifierName" : "ClassName");
        return object.empty() || (parameter != call.parameters.end() && parameter->second == object);
    }));
}

std::size_t PluginTest::CountConnections(const std::vector<std::uint16_t>& ports) const {
    for (const std::uint16_t port : ports) {
        Pegasus::CIMClient client;
        client.connect(server_.Address().c_str(), port, "", "");
        EXPECT_THROW(client.getClass(Pegasus::CIMNamespaceName("root/cimv2"), Pegasus::CIMName("TEST_Unknown")),
                     Pegasus::CIMException); // which is an answer
    }
    return server_.ConnectionCount() - ports.size();
}
