#pragma once

#include <algorithm>
#include <cstddef>
#include <memory>
#include <string_view>
#include <utility>

namespace cimhttp {

/// A text that is made of very many small parts, in memory that is used again: adding takes fewer instructions than
/// with std::string.
class TextBuffer {
  public:
    std::string_view Text() const { return {bytes_.get(), size_}; }
    std::size_t Size() const { return size_; }
    void Clear() { size_ = 0; }

    /// `part` must not be one of this text, see AddAgain().
    void Add(std::string_view part) {
        std::copy(part.begin(), part.end(), Room(part.size()));
        size_ += part.size();
    }
    void Add(char byte) {
        *Room(1) = byte;
        ++size_;
    }

    /// Adds what stands from `begin` to `end`.
    void AddAgain(std::size_t begin, std::size_t end) {
        char* const room = Room(end - begin);
        std::copy(bytes_.get() + begin, bytes_.get() + end, room);
        size_ += end - begin;
    }

    /// Room for so many bytes behind the text, of which Take() takes those that have been written.
    char* Room(std::size_t size) {
        if (capacity_ - size_ < size) {
            Grow(size);
        }
        return bytes_.get() + size_;
    }
    void Take(const char* end) { size_ = static_cast<std::size_t>(end - bytes_.get()); }

  private:
    void Grow(std::size_t size) {
        constexpr std::size_t kLeast = 64;
        const std::size_t capacity = std::max({2 * capacity_, size_ + size, kLeast});
        std::unique_ptr<char[]> bytes(new char[capacity]); // not filled with zeros, as std::make_unique would
        std::copy_n(bytes_.get(), size_, bytes.get());
        bytes_ = std::move(bytes);
        capacity_ = capacity;
    }

    std::unique_ptr<char[]> bytes_;
    std::size_t size_ = 0;
    std::size_t capacity_ = 0;
};

} // namespace cimhttp
