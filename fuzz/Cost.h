#pragma once

#include <cstddef>
#include <cstdint>

/// The most that something may be for an input of so many bytes: a straight line, so that what grows faster than the
/// input crosses it.
struct CostLine {
    std::uint64_t base;
    std::uint64_t perByte;

    std::uint64_t At(std::size_t size) const { return base + perByte * size; }
};

/// What handling an input may take of its thread.
struct CostBounds {
    CostLine instructions; ///< those of the program, not of the system
    CostLine bytes;        ///< allocated at the same time
    CostLine allocations;  ///< in all
};

// The lines. Inputs have up to 16 KiB (fuzz/run), where a square is 16,384 times a line: a loop of the second order
// takes some 250 million steps, each of a few instructions of its own and of the sanitizers. The lines lie well below
// that, and some ten times above what the corpora take; each fuzzer says at its end how far it came. What they hold per
// byte is large since the shortest element, `<A/>`, becomes an object of some hundred bytes, which is then described.

/// A reader of texts, with nothing to set up but a buffer for the network, of 256 KiB.
constexpr CostBounds kReaderBounds{{20'000'000, 30'000}, {512 * 1024, 2'000}, {2'000, 40}};

/// A server without a network: its model, which is larger than the input, answers.
constexpr CostBounds kServiceBounds{{100'000'000, 30'000}, {2 * 1024 * 1024, 4'000}, {10'000, 100}};

/// A schema, of which every class holds what it inherits, and what a server says of some of its classes.
constexpr CostBounds kSchemaBounds{{60'000'000, 60'000}, {1024 * 1024, 8'000}, {5'000, 100}};

/// A dialogue: namespaces, connections and requests, each with an answer, before the first byte of the input counts.
constexpr CostBounds kDialogueBounds{{60'000'000, 30'000}, {2 * 1024 * 1024, 4'000}, {5'000, 40}};

/// Watches what its thread takes while it lives. At its end, what is more than the bounds allow for an input of `size`
/// bytes ends the program. What other threads take, such as a server's, does not count.
///
/// Instructions are counted where the machine counts them for programs; elsewhere the thread's processor time stands in
/// for them. Memory is watched where a sanitizer has the allocations. When the program starts, a line on the error
/// stream says which; when it ends, another one says how much of the bounds the costliest inputs took.
class CostGuard {
  public:
    CostGuard(const CostBounds& bounds, std::size_t size);
    ~CostGuard();
    CostGuard(const CostGuard&) = delete;
    CostGuard& operator=(const CostGuard&) = delete;

  private:
    const CostBounds& bounds_;
    const std::size_t size_;
    std::uint64_t start_;
};
