#pragma once

#include <unistd.h>

#include <string>
#include <utility>

namespace Pegasus::http {

/// A file descriptor, which is closed with its owner. After fork() each process has one of its own, and closing the
/// child's does nothing to the connection of the parent.
class Descriptor {
  public:
    Descriptor() = default;
    /// Owns `number`; -1 is none.
    explicit Descriptor(int number) : number_(number) {}
    Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
    Descriptor& operator=(Descriptor&& other) noexcept {
        std::swap(number_, other.number_);
        return *this;
    }
    ~Descriptor() {
        if (number_ >= 0) {
            ::close(number_);
        }
    }

    explicit operator bool() const { return number_ >= 0; }
    int number() const { return number_; }

    /// Why this process cannot have one more descriptor now; empty when it can.
    static std::string shortage();

  private:
    int number_ = -1;
};

} // namespace Pegasus::http
