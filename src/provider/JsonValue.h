#pragma once

#include "provider/ConnectionOptions.h"

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace NQORVYX20 {

/// A value of a JSON document, as far as a policy can have a use for it.
struct JsonValue {
    enum class Kind { kScalar, kArray, kObject };

    Kind kind = Kind::kScalar;
    std::optional<ConnectionOptions::Value> scalar; ///< empty for null, and for a number that is not a whole one from 0
    std::vector<JsonValue> elements;                ///< of an array
    std::map<std::string, JsonValue> members;       ///< of an object

    /// The member of that name; null when there is none.
    const JsonValue* Member(const std::string& name) const {
        const auto found = members.find(name);
        return found == members.end() ? nullptr : &found->second;
    }
};

/// Reads a document. Throws PolicyFault with the line of what is no JSON, for an object with two members of one name,
/// and where values stand in more than a few others.
JsonValue ReadJson(const std::string& text);

} // namespace NQORVYX20
