// The guard that all fuzzers use refuses what grows faster than its input.

#include "Cost.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <ctime>
#include <string>
#include <vector>

namespace {

constexpr std::size_t kSize = 16384;
constexpr std::uint64_t kAny = std::uint64_t{1} << 50U;

constexpr CostBounds kFewInstructions{{20'000'000, 2'000}, {kAny, 0}, {kAny, 0}};
constexpr CostBounds kFewBytes{{kAny, 0}, {1024, 16}, {kAny, 0}};
constexpr CostBounds kFewAllocations{{kAny, 0}, {kAny, 0}, {16, 2}};

void ReadOnce(const std::string& text) {
    volatile std::size_t sum = 0;
    for (const char letter : text) {
        sum = sum + static_cast<unsigned char>(letter);
    }
}

/// Reads the text for each of its bytes, and on until that has taken longer than any bound here allows.
void ReadForEachByte(const std::string& text) {
    const std::clock_t end = std::clock() + CLOCKS_PER_SEC;
    for (std::size_t i = 0; i < text.size() || std::clock() < end; ++i) {
        ReadOnce(text);
    }
}

/// Keeps a copy of the text for each 64 of its bytes.
void KeepCopies(const std::string& text) { const std::vector<std::string> copies(text.size() / 64, text); }

/// Makes texts, and keeps none.
void MakeTexts(const std::string& text) {
    for (std::size_t i = 0; i < text.size() * 4; ++i) {
        const std::string copy(text, 0, 64); // too long for a text without memory of its own
    }
}

bool WatchesMemory() {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    return true;
#else
    return false;
#endif
}

template <typename Work>
void Guarded(const CostBounds& bounds, const Work& work) {
    const std::string text(kSize, 'a');
    const CostGuard guard(bounds, text.size());
    work(text);
}

} // namespace

TEST(CostGuardTest, LetsPassWhatIsInProportionToTheInput) {
    Guarded(kFewInstructions, ReadOnce);
    Guarded(kFewBytes, [](const std::string& text) { const std::string copy(text, 0); });
    Guarded(kFewAllocations, [](const std::string& text) { const std::string copy(text, 0); });
}

TEST(CostGuardTest, RefusesInstructionsOfTheSecondOrder) {
    EXPECT_DEATH(Guarded(kFewInstructions, ReadForEachByte), "instructions for 16384 bytes of input");
}

TEST(CostGuardTest, RefusesMemoryOfTheSecondOrder) {
    if (!WatchesMemory()) {
        GTEST_SKIP() << "no sanitizer has the allocations";
    }
    EXPECT_DEATH(Guarded(kFewBytes, KeepCopies), "bytes at the same time for 16384 bytes of input");
}

TEST(CostGuardTest, RefusesManySmallAllocationsOfWhichNoneIsKept) {
    if (!WatchesMemory()) {
        GTEST_SKIP() << "no sanitizer has the allocations";
    }
    EXPECT_DEATH(Guarded(kFewAllocations, MakeTexts), "allocations for 16384 bytes of input");
}

TEST(CostGuardTest, CountsWhatIsFreedOnlyAsLongAsItIsHeld) { Guarded(kFewBytes, MakeTexts); }

TEST(CostGuardTest, CountsNothingOfWhatWasBefore) {
    const std::string text(kSize, 'a');
    KeepCopies(text);
    ReadForEachByte(text);
    const CostGuard guard(kFewInstructions, text.size());
}
