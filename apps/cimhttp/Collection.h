#pragma once

#include <boost/shared_ptr.hpp>

#include <iosfwd>
#include <string>
#include <vector>

namespace NQORVYX20 {
class ICIMClass;
class ICIMInstance;
} // namespace NQORVYX20

namespace cimhttp {

class PluginAccess;

/// Classes with their instances as they were read from a server.
struct Collection {
    struct Class {
        boost::shared_ptr<NQORVYX20::ICIMClass> definition;
        std::vector<boost::shared_ptr<NQORVYX20::ICIMInstance>> instances;
    };

    std::string server; ///< a URL
    bool complete;      ///< no class is missing
    std::vector<Class> classes;
};

/// Writes a collection as one JSON document (RFC 8259), an instance a line:
///
///     {"server": "http://server.example", "complete": true, "classes": [{
///         "name": "CIM_Fan",
///         "qualifiers": {"Version": "2.1"},
///         "properties": [{"name": "Speed", "type": "uint64", "array": false, "qualifiers": {}}],
///         "methods": [{"name": "Stop", "type": "uint32",
///                      "parameters": [{"name": "Now", "type": "boolean", "array": false}], "qualifiers": {}}],
///         "instances": [{"path": "CIM_Fan.Name=\"a\"",
///                        "properties": {"Speed": {"type": "uint64", "value": 3, "text": "3"}}}]}]}
///
/// A `value` is null, a boolean, a number, a text or an array of these: integers have all their digits, also those of
/// 64 bits; reals read back the same, and where JSON has no number for them they are the texts "nan", "inf" and "-inf";
/// char16, date-times and references are texts. `text` is what the value says to people, an array of texts for an array
/// that is not null. An array's `type` is that of its elements. The object model declares
/// an array parameter of a method by its elements: its `array` is false. Bytes of a text that are not UTF-8 become
/// U+FFFD.
void WriteJson(const Collection& collection, const PluginAccess& access, std::ostream& output);

} // namespace cimhttp
