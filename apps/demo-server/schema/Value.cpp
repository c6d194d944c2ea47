#include "schema/Value.h"

#include "schema/Names.h"

#include <algorithm>

namespace demo {

Value Value::Reference(ObjectPath path) {
    return Value(std::in_place, std::make_shared<const ObjectPath>(std::move(path)));
}

const ObjectPath* Value::AsReference() const {
    const auto* const reference = std::get_if<std::shared_ptr<const ObjectPath>>(&content_);
    return reference ? reference->get() : nullptr;
}

const KeyBinding* ObjectPath::FindKey(std::string_view keyName) const {
    const auto found =
        std::find_if(keys.begin(), keys.end(), [&](const KeyBinding& key) { return SameName(key.name, keyName); });
    return found == keys.end() ? nullptr : &*found;
}

} // namespace demo
