#pragma once

#include <pugixml.hpp>

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace cim {

using Names = std::vector<std::string>;
using Keys = std::vector<std::pair<std::string, std::string>>;

// IPARAMVALUE elements of a request, as text.

std::string Parameter(const std::string& name, const std::string& content);
std::string Flag(const std::string& name, bool value);
std::string Text(const std::string& name, const std::string& value);
std::string Class(const std::string& name, const std::string& className);
/// ClassName.
std::string Class(const std::string& className);
/// PropertyList.
std::string List(const Names& names);

/// INSTANCENAME, as text.
std::string InstanceName(const std::string& className, const Keys& keys);

/// What the server answers to an operation. Copies share the document.
struct Answer {
    std::shared_ptr<pugi::xml_document> document;
    /// IMETHODRESPONSE.
    pugi::xml_node response;
    /// The number of the CIM error, 0 for success.
    int error = 0;
    std::string description;

    /// IRETURNVALUE.
    pugi::xml_node Returned() const { return response.child("IRETURNVALUE"); }
    /// The first element of the IRETURNVALUE.
    pugi::xml_node First() const { return Returned().first_child(); }
};

/// Calls an intrinsic method over the HTTP port of this process's address. Fails the test when the answer is no CIM-XML
/// response to this very request.
Answer Call(const std::string& method, const std::vector<std::string>& parameters = {},
            const std::string& nameSpace = "root/cimv2");

// What stands in an answer.

/// The attribute NAME of the children whose element begins with a prefix.
Names NamesOf(const pugi::xml_node& parent, const std::string& elementPrefix);
/// The child with that NAME.
pugi::xml_node Named(const pugi::xml_node& parent, const char* name);
/// An attribute of each node that XPath finds.
Names AttributesAt(const pugi::xml_node& node, const char* xpath, const char* attribute);
/// The text of the VALUE of a property; "null" if it has none, "absent" if the property is not there.
std::string ValueOf(const pugi::xml_node& instance, const char* property);
/// The element as text without white space between elements, so that equal elements have equal texts.
std::string Raw(const pugi::xml_node& node);
/// Raw() of all children.
Names RawChildren(const pugi::xml_node& parent);

/// The INSTANCENAME of this machine's system, as text.
std::string ComputerSystem();
/// The INSTANCENAME of the operating system, as text.
std::string OperatingSystem();
/// The INSTANCENAME of a process, as text; of this one without a number.
std::string Process(std::optional<int> number = std::nullopt);

} // namespace cim
