#include "schema/Value.h"

namespace demo {

Value Value::Reference(ObjectPath path) {
    return Value(std::in_place, std::make_shared<const ObjectPath>(std::move(path)));
}

const ObjectPath* Value::AsReference() const {
    const auto* const reference = std::get_if<std::shared_ptr<const ObjectPath>>(&content_);
    return reference ? reference->get() : nullptr;
}

} // namespace demo
