#include "provider/ConnectionOptions.h"

#include "provider/PrintableText.h"

#include <utility>

namespace NQORVYX20 {

void ConnectionOptions::Set(const std::string& key, Value value) { values_.insert_or_assign(key, std::move(value)); }

std::string TextOf(const ConnectionOptions::Value& value) {
    if (const auto* const text = std::get_if<std::string>(&value)) {
        return PrintableText(*text);
    }
    if (const auto* const flag = std::get_if<bool>(&value)) {
        return *flag ? "true" : "false";
    }
    return std::to_string(std::get<std::uint64_t>(value));
}

} // namespace NQORVYX20
