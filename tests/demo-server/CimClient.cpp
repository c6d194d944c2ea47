#include "CimClient.h"

#include "HttpExchange.h"

#include <gtest/gtest.h>

#include <unistd.h>

#include <fstream>
#include <sstream>
#include <string_view>

namespace cim {

namespace {

std::string Escaped(const std::string& text) {
    pugi::xml_document document;
    document.append_child(pugi::node_pcdata).set_value(text.c_str());
    std::ostringstream stream;
    document.print(stream, "", pugi::format_raw | pugi::format_no_declaration);
    return stream.str();
}

std::string HostName() {
    std::string name;
    std::getline(std::ifstream("/proc/sys/kernel/hostname"), name);
    return name;
}

std::string OperatingSystemName() {
    std::string name;
    std::getline(std::ifstream("/proc/sys/kernel/ostype"), name);
    return name;
}

} // namespace

std::string Parameter(const std::string& name, const std::string& content) {
    return "<IPARAMVALUE NAME=\"" + name + "\">" + content + "</IPARAMVALUE>";
}

std::string Flag(const std::string& name, bool value) { return Text(name, value ? "TRUE" : "FALSE"); }

std::string Text(const std::string& name, const std::string& value) {
    return Parameter(name, "<VALUE>" + Escaped(value) + "</VALUE>");
}

std::string Class(const std::string& name, const std::string& className) {
    return Parameter(name, "<CLASSNAME NAME=\"" + className + "\"/>");
}

std::string Class(const std::string& className) { return Class("ClassName", className); }

std::string List(const Names& names) {
    std::string values;
    for (const auto& name : names) {
        values += "<VALUE>" + name + "</VALUE>";
    }
    return Parameter("PropertyList", "<VALUE.ARRAY>" + values + "</VALUE.ARRAY>");
}

std::string InstanceName(const std::string& className, const Keys& keys) {
    std::string text = "<INSTANCENAME CLASSNAME=\"" + className + "\">";
    for (const auto& [name, value] : keys) {
        text += "<KEYBINDING NAME=\"" + name + "\"><KEYVALUE VALUETYPE=\"string\">" + Escaped(value) +
                "</KEYVALUE></KEYBINDING>";
    }
    return text + "</INSTANCENAME>";
}

Answer Call(const std::string& method, const std::vector<std::string>& parameters, const std::string& nameSpace) {
    std::string all;
    for (const auto& parameter : parameters) {
        all += parameter;
    }
    auto headers = exchange::OperationHeaders(method);
    headers["CIMObject"] = nameSpace;
    const auto http = exchange::Send(exchange::Post(headers, exchange::OperationBody(method, all, nameSpace)));
    EXPECT_EQ(http.status, 200) << http.body;
    Answer answer;
    answer.document = std::make_shared<pugi::xml_document>();
    const auto parsed = answer.document->load_string(http.body.c_str());
    EXPECT_TRUE(parsed) << parsed.description() << http.body;
    const auto message = answer.document->child("CIM").child("MESSAGE");
    EXPECT_STREQ(message.attribute("ID").value(), "7");
    answer.response = message.child("SIMPLERSP").child("IMETHODRESPONSE");
    EXPECT_EQ(answer.response.attribute("NAME").value(), method);
    const auto error = answer.response.child("ERROR");
    answer.error = error.attribute("CODE").as_int();
    answer.description = error.attribute("DESCRIPTION").value();
    return answer;
}

Names NamesOf(const pugi::xml_node& parent, const std::string& elementPrefix) {
    Names names;
    for (const auto& child : parent.children()) {
        if (std::string_view(child.name()).substr(0, elementPrefix.size()) == elementPrefix) {
            names.emplace_back(child.attribute("NAME").value());
        }
    }
    return names;
}

pugi::xml_node Named(const pugi::xml_node& parent, const char* name) {
    return parent.find_child_by_attribute("NAME", name);
}

Names AttributesAt(const pugi::xml_node& node, const char* xpath, const char* attribute) {
    Names values;
    for (const auto& found : node.select_nodes(xpath)) {
        values.emplace_back(found.node().attribute(attribute).value());
    }
    return values;
}

std::string ValueOf(const pugi::xml_node& instance, const char* property) {
    const auto found = Named(instance, property);
    if (!found) {
        return "absent";
    }
    return found.child("VALUE") ? found.child("VALUE").text().get() : "null";
}

std::string Raw(const pugi::xml_node& node) {
    std::ostringstream stream;
    node.print(stream, "", pugi::format_raw);
    return stream.str();
}

Names RawChildren(const pugi::xml_node& parent) {
    Names texts;
    for (const auto& child : parent.children()) {
        texts.push_back(Raw(child));
    }
    return texts;
}

std::string ComputerSystem() {
    return InstanceName("DEMO_ComputerSystem", {{"CreationClassName", "DEMO_ComputerSystem"}, {"Name", HostName()}});
}

std::string OperatingSystem() {
    return InstanceName("DEMO_OperatingSystem", {{"CSCreationClassName", "DEMO_ComputerSystem"},
                                                 {"CSName", HostName()},
                                                 {"CreationClassName", "DEMO_OperatingSystem"},
                                                 {"Name", OperatingSystemName()}});
}

std::string Process(std::optional<int> number) {
    return InstanceName("DEMO_Process", {{"CSCreationClassName", "DEMO_ComputerSystem"},
                                         {"CSName", HostName()},
                                         {"OSCreationClassName", "DEMO_OperatingSystem"},
                                         {"OSName", OperatingSystemName()},
                                         {"CreationClassName", "DEMO_Process"},
                                         {"Handle", std::to_string(number.value_or(::getpid()))}});
}

} // namespace cim
