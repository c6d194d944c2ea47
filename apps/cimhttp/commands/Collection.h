#pragma once

#include <iosfwd>
#include <memory>
#include <string>
#include <vector>

namespace cimhttp {

class CollectedClass;

/// Classes with their instances as they were read from a server.
struct Collection {
    std::string server; ///< a URL
    bool complete;      ///< nothing is missing: no class, no value
    std::vector<std::shared_ptr<const CollectedClass>> classes;
    bool isOneOfSeveral = false; ///< the member with the URL is `url`
};

/// Writes a collection as one JSON document (RFC 8259), an instance a line:
///
///     {"server": "http://server.example", "classes": [{
///         "name": "CIM_Fan", …, "methods": [],
///         "instances": [{"path": "CIM_Fan.Name=\"a\"", "class": "CIM_Fan",
///                        "properties": {"Speed": {"type": "uint64", "value": 3, "text": "3"}}}]}],
///      "complete": true}
///
/// A class is that of ClassJson(), and has its instances in addition.
/// `complete` is at the end, so that a document that breaks off early does not have it. Instances are those of
/// InstanceJson(), each with all properties of its own class, which may be a subclass.
void WriteJson(const Collection& collection, std::ostream& output);

} // namespace cimhttp
