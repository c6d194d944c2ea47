#include "CutInput.h"

#include <algorithm>

Pieces::Pieces(std::string_view bytes, std::string_view sizes) : bytes_(bytes), sizes_(sizes) {}

std::string_view Pieces::Next(std::size_t limit) {
    const std::string_view piece = bytes_.substr(0, std::min(NextSize(), limit));
    bytes_.remove_prefix(piece.size());
    return piece;
}

std::size_t Pieces::NextSize() {
    if (sizes_.empty()) {
        return bytes_.size();
    }
    const auto size = static_cast<std::uint8_t>(sizes_[index_]);
    index_ = (index_ + 1) % sizes_.size();
    return size % std::size_t{64} + 1;
}

CutInput::CutInput(const std::uint8_t* data, std::size_t size)
    : bytes_(size != 0 ? reinterpret_cast<const char*>(data) : "", size) {
    const std::size_t line = std::min(bytes_.find('\n'), bytes_.size());
    sizes_ = bytes_.substr(0, line);
    bytes_.remove_prefix(std::min(line + 1, bytes_.size()));
}
