#include "operations/Enumeration.h"

#include <utility>

namespace demo {

Enumeration::Enumeration(Kind kind, std::unique_ptr<InstanceSource> source, Write write)
    : kind_(kind), source_(std::move(source)), write_(std::move(write)), next_(source_->Next()) {}

std::optional<std::uint64_t> Enumeration::Left() const {
    const auto behindNext = source_->Left();
    return IsAtEnd() ? 0 : behindNext ? std::optional<std::uint64_t>(*behindNext + 1) : std::nullopt;
}

void Enumeration::WriteNext(XmlWriter& writer, std::size_t maxObjects, std::size_t maxBytes) {
    const std::size_t begin = writer.Length();
    for (std::size_t count = 0; next_ && count < maxObjects && writer.Length() - begin < maxBytes; ++count) {
        write_(writer, *next_);
        next_ = source_->Next();
    }
}

} // namespace demo
