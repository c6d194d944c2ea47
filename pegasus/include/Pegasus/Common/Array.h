#pragma once

#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/Exception.h>

#include <algorithm>
#include <memory>
#include <utility>

namespace Pegasus {
inline namespace bundled {

/// A growing sequence with its elements side by side in memory, for every element type, Boolean included. A value: a
/// copy has elements of its own. T needs a default constructor.
template <class T>
class Array {
  public:
    Array() noexcept = default;
    explicit Array(Uint32 size) : items_(std::make_unique<T[]>(size)), size_(size), capacity_(size) {}
    Array(const T* items, Uint32 size) : Array(size) { std::copy(items, items + size, items_.get()); }
    Array(const Array& other) : Array(other.getData(), other.size_) {}
    Array(Array&& other) noexcept { swap(other); }
    Array& operator=(Array other) noexcept {
        swap(other);
        return *this;
    }
    ~Array() = default;

    Uint32 size() const noexcept { return size_; }
    const T* getData() const noexcept { return items_.get(); }

    /// Throws IndexOutOfBoundsException for an index that is not below size().
    T& operator[](Uint32 index) { return items_[checked(index)]; }
    const T& operator[](Uint32 index) const { return items_[checked(index)]; }

    void append(const T& item) { append(T(item)); }
    void append(T&& item) {
        if (size_ == capacity_) {
            reserveCapacity(std::max(kFirstCapacity, 2 * capacity_));
        }
        items_[size_++] = std::move(item);
    }

    void clear() noexcept { *this = Array(); }
    /// Makes room for so many elements, so that appending them moves nothing. Never shrinks.
    void reserveCapacity(Uint32 capacity) {
        if (capacity <= capacity_) {
            return;
        }
        auto items = std::make_unique<T[]>(capacity);
        std::move(begin(), end(), items.get());
        items_ = std::move(items);
        capacity_ = capacity;
    }
    void swap(Array& other) noexcept {
        items_.swap(other.items_);
        std::swap(size_, other.size_);
        std::swap(capacity_, other.capacity_);
    }

    T* begin() noexcept { return items_.get(); }
    T* end() noexcept { return items_.get() + size_; }
    const T* begin() const noexcept { return items_.get(); }
    const T* end() const noexcept { return items_.get() + size_; }

    friend bool operator==(const Array& a, const Array& b) {
        return std::equal(a.begin(), a.end(), b.begin(), b.end());
    }
    friend bool operator!=(const Array& a, const Array& b) { return !(a == b); }

  private:
    static constexpr Uint32 kFirstCapacity = 4;

    Uint32 checked(Uint32 index) const {
        if (index >= size_) {
            throw IndexOutOfBoundsException();
        }
        return index;
    }

    std::unique_ptr<T[]> items_;
    Uint32 size_ = 0;
    Uint32 capacity_ = 0;
};

} // namespace bundled
} // namespace Pegasus
