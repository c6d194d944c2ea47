#include "Cost.h"

#include "Require.h"

#include <linux/perf_event.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <cinttypes>
#include <cstdio>
#include <ctime>
#include <string>

// Defined where a sanitizer has the allocations; the names are its own. NOLINTBEGIN(bugprone-reserved-identifier)
extern "C" {
__attribute__((weak)) int __sanitizer_install_malloc_and_free_hooks(void (*allocated)(const volatile void*,
                                                                                      std::size_t),
                                                                    void (*freed)(const volatile void*));
__attribute__((weak)) std::size_t __sanitizer_get_allocated_size(const volatile void* memory);
}
// NOLINTEND(bugprone-reserved-identifier)

namespace {

/// What a nanosecond counts for where instructions are not counted.
constexpr std::uint64_t kInstructionsPerNanosecond = 1;

/// Such a count has this much beside what it is about: a machine with other work gives a thread time in which it gets
/// nothing done.
constexpr std::uint64_t kTimeNoise = 200'000'000;

/// What the thread has allocated and freed since it is watched. Frees of what there was before count, too, so that the
/// sum may be negative.
struct Allocations {
    std::int64_t bytes = 0;
    std::int64_t peak = 0;
    std::uint64_t count = 0;
};

thread_local Allocations* watched = nullptr;

void OnAllocated(const volatile void* /*memory*/, std::size_t size) {
    if (watched != nullptr) {
        watched->bytes += static_cast<std::int64_t>(size);
        watched->peak = std::max(watched->peak, watched->bytes);
        ++watched->count;
    }
}

void OnFreed(const volatile void* memory) {
    if (watched != nullptr && memory != nullptr) {
        watched->bytes -= static_cast<std::int64_t>(__sanitizer_get_allocated_size(memory));
    }
}

/// The descriptor of a counter of this thread's instructions, -1 where there is none.
int OpenInstructionCounter() {
    perf_event_attr attributes{};
    attributes.size = sizeof attributes;
    attributes.type = PERF_TYPE_HARDWARE;
    attributes.config = PERF_COUNT_HW_INSTRUCTIONS;
    attributes.exclude_kernel = 1;
    attributes.exclude_hv = 1;
    return static_cast<int>(::syscall(SYS_perf_event_open, &attributes, 0, -1, -1, PERF_FLAG_FD_CLOEXEC));
}

std::uint64_t ProcessorTime() {
    constexpr std::uint64_t kNanosecondsPerSecond = 1'000'000'000;
    timespec time{};
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<std::uint64_t>(time.tv_sec) * kNanosecondsPerSecond + static_cast<std::uint64_t>(time.tv_nsec);
}

double Share(std::uint64_t cost, std::uint64_t bound) { return static_cast<double>(cost) / static_cast<double>(bound); }

/// The means of this process, and the largest shares of the bounds so far.
class Meter {
  public:
    Meter() : counter_(OpenInstructionCounter()), hasHooks_(InstallHooks()) {
        std::fprintf(stderr, "cost: %s; memory: %s\n", counter_ >= 0 ? "instructions" : "processor time",
                     hasHooks_ ? "watched" : "not watched");
    }
    ~Meter() {
        std::fprintf(stderr, "cost: at most %.1f %% of the %s, %.1f %% of the bytes, %.1f %% of the allocations\n",
                     100 * instructions_, counter_ >= 0 ? "instructions" : "time", 100 * bytes_, 100 * allocations_);
    }
    Meter(const Meter&) = delete;
    Meter& operator=(const Meter&) = delete;

    /// Instructions of this thread so far, or what stands for them.
    std::uint64_t Instructions() const {
        std::uint64_t count = 0;
        if (counter_ >= 0) {
            Require(::read(counter_, &count, sizeof count) == sizeof count, "the counter of instructions can be read");
            return count;
        }
        return ProcessorTime() * kInstructionsPerNanosecond;
    }

    void Check(std::uint64_t instructions, const Allocations& allocations, const CostBounds& bounds, std::size_t size) {
        const auto peak = static_cast<std::uint64_t>(allocations.peak);
        const std::uint64_t noise = counter_ >= 0 ? 0 : kTimeNoise;
        Check("instructions", instructions, bounds.instructions.At(size) + noise, size, instructions_);
        Check("bytes at the same time", peak, bounds.bytes.At(size), size, bytes_);
        Check("allocations", allocations.count, bounds.allocations.At(size), size, allocations_);
    }

  private:
    static bool InstallHooks() {
        return __sanitizer_install_malloc_and_free_hooks != nullptr && __sanitizer_get_allocated_size != nullptr &&
               __sanitizer_install_malloc_and_free_hooks(OnAllocated, OnFreed) != 0;
    }

    static void Check(const char* what, std::uint64_t cost, std::uint64_t bound, std::size_t size, double& largest) {
        largest = std::max(largest, Share(cost, bound));
        if (cost > bound) {
            std::fprintf(stderr, "cost: %" PRIu64 " %s for %zu bytes of input, where %" PRIu64 " are allowed\n", cost,
                         what, size, bound);
        }
        Require(cost <= bound, "the cost of an input is in proportion to its size");
    }

    const int counter_;
    const bool hasHooks_;
    double instructions_ = 0;
    double bytes_ = 0;
    double allocations_ = 0;
};

Meter meter; // from the program's start, so that it speaks first
Allocations allocations;

} // namespace

CostGuard::CostGuard(const CostBounds& bounds, std::size_t size) : bounds_(bounds), size_(size) {
    Require(watched == nullptr, "one thing is watched at a time");
    allocations = Allocations();
    watched = &allocations;
    start_ = meter.Instructions();
}

CostGuard::~CostGuard() {
    const std::uint64_t instructions = meter.Instructions() - start_;
    watched = nullptr;
    meter.Check(instructions, allocations, bounds_, size_);
}
