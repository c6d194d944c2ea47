#pragma once

#include <gtest/gtest.h>

#include <cstddef>
#include <cstring>

constexpr std::size_t kFirstSlot = 2; // the destructor takes two

/// The index in the virtual table. The Itanium C++ ABI keeps it in a pointer to a virtual member function, as one more
/// than the byte offset.
template <typename Operation>
std::size_t SlotOf(Operation operation) {
    std::size_t parts[2] = {};
    static_assert(sizeof operation == sizeof parts);
    std::memcpy(parts, &operation, sizeof parts);
    return (parts[0] - 1) / sizeof(void*);
}

/// The operation, whose type must be exactly this one: with another, the test does not compile. Where an operation is
/// overloaded, the type chooses.
template <typename Signature, typename Interface>
constexpr Signature Interface::*As(Signature Interface::*operation) {
    return operation;
}

/// The interface with one more operation, which comes after all others.
template <typename Interface>
class WithOneMore : public Interface {
  public:
    virtual void OneMore() = 0;
};

/// Expects the operations to stand one after the other from a slot on, and returns the slot after them.
template <typename... Operations>
std::size_t ExpectSlots(std::size_t first, Operations... operations) {
    std::size_t next = first;
    (
        [&] {
            EXPECT_EQ(SlotOf(operations), next) << "operation " << next - first + 1 << " of the list";
            ++next;
        }(),
        ...);
    return next;
}

/// Expects the operations to stand one after the other from a slot on, and no other after them.
template <typename Interface, typename... Operations>
void ExpectLastSlots(std::size_t first, Operations... operations) {
    EXPECT_EQ(SlotOf(&WithOneMore<Interface>::OneMore), ExpectSlots(first, operations...))
        << "there are others after them";
}
