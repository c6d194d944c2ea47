#pragma once

#include <memory>
#include <utility>

namespace NQORVYX20 {

/// A value kept on the heap that copies like a value. It keeps large alternatives of TCIMValue from making every value
/// large, and lets a value hold values. Never empty, except after it has been moved from.
template <typename T>
class TCIMIndirect {
  public:
    explicit TCIMIndirect(T value) : value_(std::make_unique<T>(std::move(value))) {}
    TCIMIndirect(const TCIMIndirect& other) : value_(std::make_unique<T>(*other.value_)) {}
    TCIMIndirect(TCIMIndirect&& other) noexcept = default;
    TCIMIndirect& operator=(const TCIMIndirect& other) {
        *this = TCIMIndirect(other);
        return *this;
    }
    TCIMIndirect& operator=(TCIMIndirect&& other) noexcept = default;
    ~TCIMIndirect() = default;

    T& operator*() const { return *value_; }

    friend bool operator==(const TCIMIndirect& left, const TCIMIndirect& right) { return *left == *right; }
    friend bool operator<(const TCIMIndirect& left, const TCIMIndirect& right) { return *left < *right; }

  private:
    std::unique_ptr<T> value_;
};

} // namespace NQORVYX20
