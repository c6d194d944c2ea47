#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace Pegasus::cimxml {

/// The part of a body that has arrived and is not read yet.
class InputText {
  public:
    /// Adds bytes, cut anywhere. Views of the unread text become invalid.
    void append(std::string_view bytes);

    /// What has arrived, up to the last whole character.
    std::string_view unread() const noexcept { return {bytes_.data() + begin_, checked_ - begin_}; }
    /// Says that so many bytes of the unread text are read.
    void take(std::size_t length) noexcept { begin_ += length; }

    /// Whether no bytes are left, not even of a character that is not complete.
    bool isEmpty() const noexcept { return begin_ == bytes_.size(); }
    /// Whether the unread text is followed by what is not UTF-8, or a character that XML does not allow.
    bool endsBadly() const noexcept;

  private:
    std::string bytes_;
    std::size_t begin_ = 0;   // of what is unread
    std::size_t checked_ = 0; // the end of the characters that are good
};

} // namespace Pegasus::cimxml
