#include "cimxml/QualifierMemory.h"

#include "cimxml/Limits.h"

#include <functional>
#include <utility>

namespace Pegasus::cimxml {

namespace {

std::size_t hashOf(std::string_view text) noexcept { return std::hash<std::string_view>()(text); }

} // namespace

const QualifierMemory::Known* QualifierMemory::find(std::string_view text) const {
    const auto found = all_.find(hashOf(text));
    return found != all_.end() && found->second.text == text ? &found->second : nullptr;
}

void QualifierMemory::add(Known known) {
    const std::size_t size = known.text.size();
    full_ = full_ || size > kMaxRememberedQualifierBytes - bytes_;
    if (!full_ && all_.emplace(hashOf(known.text), std::move(known)).second) {
        bytes_ += size;
    }
}

void QualifierMemory::clear() noexcept {
    all_.clear();
    bytes_ = 0;
    full_ = false;
}

} // namespace Pegasus::cimxml
