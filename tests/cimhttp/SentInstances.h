#pragma once

#include <nlohmann/json.hpp>

#include <map>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

namespace pugi {
class xml_node;
}

// What a server's answer says of instances (DSP0201), read by code that shares nothing with the program and its
// libraries, and whether the program's JSON says the same.

/// An answer of which one cannot say what it says: not well-formed, not CIM-XML, or with a value that its type does not
/// have.
class UnreadableAnswer : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

struct SentProperty {
    std::string type; ///< of DSP0201, and `reference`; of an array, that of its elements
    bool isEmbedded = false;
    /// Null, a scalar or an array of them. An integer has all its digits; a real is the number as its type holds it.
    /// What is embedded is an object with the members `class` and `properties`, of which each has `type` and `value`.
    nlohmann::json value;
};

struct SentInstance {
    std::string path;      ///< as the program writes it
    std::string className; ///< of the INSTANCE, which need not be that of the path
    std::map<std::string, SentProperty> properties;
    std::string doubledProperty; ///< the name of one that is there twice; empty when there is none
};

/// The instances of an answer to EnumerateInstances, in their order. Throws UnreadableAnswer.
std::vector<SentInstance> ReadSentInstances(const std::string& body);

/// The paths of an answer to EnumerateInstanceNames, as the program writes them. Throws UnreadableAnswer.
std::vector<std::string> ReadSentPaths(const std::string& body);

/// Those paths as wbemcli writes them: keys in the order of the answer, references without quotes. A path without its
/// host and namespace.
std::vector<std::string> ReadSentPathsAsWbemcliShowsThem(const std::string& body);

/// Leaves out the properties that have other names.
void KeepProperties(const std::set<std::string>& names, std::vector<SentInstance>& instances);

/// In what a JSON array of the program's differs from the instances that were sent; empty when in nothing. A property
/// of which nothing was sent has to be null or absent, and the type of a null is not looked at. Two instances of one
/// path, and two properties of one name in an instance, are a difference, whatever is shown of them.
std::string DifferenceFromSent(const std::vector<SentInstance>& sent, const nlohmann::json& shown);
