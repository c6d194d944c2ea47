#pragma once

#include "schema/CimType.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

namespace demo {

struct ObjectPath;

/// A value of a property, qualifier or parameter, in the text form of DSP0201: null, one text, an array of texts (some
/// of which may be null), or a reference. Its type is that of the element that it belongs to.
class Value {
  public:
    using Items = std::vector<std::optional<std::string>>;

    /// Null.
    Value() = default;

    static Value Text(std::string text) { return Value(std::in_place, std::move(text)); }
    static Value Array(Items items) { return Value(std::in_place, std::move(items)); }
    static Value Reference(ObjectPath path);

    static Value Boolean(bool value) { return Text(value ? "TRUE" : "FALSE"); }

    template <typename Integer>
    static Value Number(Integer value) {
        static_assert(std::is_integral_v<Integer> && !std::is_same_v<Integer, bool>);
        return Text(std::to_string(value));
    }

    /// Null for nothing.
    template <typename Integer>
    static Value Number(const std::optional<Integer>& value) {
        return value ? Number(*value) : Value();
    }

    bool IsNull() const { return std::holds_alternative<std::monostate>(content_); }

    /// The content if it is of that kind, null otherwise.
    const std::string* AsText() const { return std::get_if<std::string>(&content_); }
    const Items* AsArray() const { return std::get_if<Items>(&content_); }
    const ObjectPath* AsReference() const;

  private:
    using Content = std::variant<std::monostate, std::string, Items, std::shared_ptr<const ObjectPath>>;

    template <typename Kind>
    Value(std::in_place_t /*content follows*/, Kind content) : content_(std::move(content)) {}

    Content content_;
};

/// A key property with its value.
struct KeyBinding {
    std::string name;
    CimType type = CimType::kString;
    Value value;
};

/// Names an instance by its class and keys, or a class when there are no keys.
struct ObjectPath {
    std::string className;
    std::vector<KeyBinding> keys;
    /// As in "root/cimv2"; empty for the namespace of whatever holds the path.
    std::string nameSpace = {};
    /// The server of the namespace; empty for the one of whatever holds the path.
    std::string host = {};

    /// Whether it leads into the namespace of whatever holds it.
    bool IsLocal() const { return nameSpace.empty() && host.empty(); }

    /// The key of that name, null if there is none.
    const KeyBinding* FindKey(std::string_view keyName) const;
};

} // namespace demo
