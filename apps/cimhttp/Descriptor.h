#pragma once

#include <unistd.h>

#include <utility>

namespace cimhttp {

/// A file descriptor that is closed when the object goes; -1 for none.
class Descriptor {
  public:
    explicit Descriptor(int number) : number_(number) {}
    ~Descriptor() {
        if (number_ >= 0) {
            ::close(number_);
        }
    }
    Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    int Number() const { return number_; }

  private:
    int number_;
};

} // namespace cimhttp
