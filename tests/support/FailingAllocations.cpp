#include "support/FailingAllocations.h"

#include <cstdlib>
#include <new>

namespace support {

namespace {

struct Plan {
    bool active = false;
    bool struck = false;
    FailingAllocations::Fail fail = FailingAllocations::Fail::kOne;
    std::size_t left = 0;
};

thread_local Plan plan;

bool Fails() {
    if (!plan.active || plan.left > 0) {
        plan.left -= plan.active ? 1U : 0U;
        return false;
    }
    const bool fails = !plan.struck || plan.fail == FailingAllocations::Fail::kAllFromThere;
    plan.struck = true;
    return fails;
}

void* Allocate(std::size_t size) noexcept { return std::malloc(size != 0 ? size : 1); }

void* AllocateOrThrow(std::size_t size) {
    void* const memory = Fails() ? nullptr : Allocate(size);
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    return memory;
}

} // namespace

FailingAllocations::FailingAllocations(std::size_t n, Fail fail) { plan = {true, false, fail, n}; }

FailingAllocations::~FailingAllocations() { plan.active = false; }

bool FailingAllocations::HasStruck() const { return plan.struck; }

} // namespace support

// The operators of the whole program, its libraries included. A caller that asks without an exception can do without
// the memory (a sort then needs more time); its requests do not count.

void* operator new(std::size_t size) { return support::AllocateOrThrow(size); }
void* operator new[](std::size_t size) { return support::AllocateOrThrow(size); }
void* operator new(std::size_t size, const std::nothrow_t&) noexcept { return support::Allocate(size); }
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept { return support::Allocate(size); }
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete[](void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }
void operator delete[](void* memory, std::size_t) noexcept { std::free(memory); }
void operator delete(void* memory, const std::nothrow_t&) noexcept { std::free(memory); }
void operator delete[](void* memory, const std::nothrow_t&) noexcept { std::free(memory); }
