#pragma once

#include <cstddef>

namespace Pegasus {
inline namespace bundled {
namespace detail {

/// Gives memory to the small parts of objects that are decoded one after the other: piece by piece out of chunks, which
/// takes a few instructions for each. A chunk is freed after the last of its pieces; any thread may release them.
/// Whatever is kept of an object thus keeps up to kChunkBytes.
class Chunks {
  public:
    static constexpr std::size_t kChunkBytes = 4096;
    /// The longest piece.
    static constexpr std::size_t kMaxBytes = 512;

    Chunks() noexcept = default;
    ~Chunks() { leaveChunk(); }
    Chunks(const Chunks&) = delete;
    Chunks& operator=(const Chunks&) = delete;

    /// At most kMaxBytes, aligned for a pointer.
    void* allocate(std::size_t bytes) {
        const std::size_t size = (bytes + sizeof(void*) - 1) / sizeof(void*) * sizeof(void*);
        if (size > room_) {
            enterChunk();
        }
        void* const piece = next_;
        next_ += size;
        room_ -= size;
        ++pieces_;
        return piece;
    }
    static void release(void* piece) noexcept;

    /// What this thread makes its objects of; null outside every Scope.
    static Chunks* current() noexcept { return current_; }

    /// While it exists, its thread makes objects of these chunks; of none where they are null.
    class Scope {
      public:
        explicit Scope(Chunks* chunks) noexcept : outer_(current_) { current_ = chunks; }
        ~Scope() { current_ = outer_; }
        Scope(const Scope&) = delete;
        Scope& operator=(const Scope&) = delete;

      private:
        Chunks* const outer_;
    };

  private:
    struct Chunk;

    void enterChunk();
    void leaveChunk() noexcept;

    // thread_local would ask at each use whether it is initialised. In the memory that each thread begins with, so that
    // reaching it takes no call, and a library that is loaded late needs no other.
    [[gnu::tls_model("initial-exec")]] static __thread Chunks* current_;

    Chunk* chunk_ = nullptr;
    char* next_ = nullptr;
    std::size_t room_ = 0;
    unsigned pieces_ = 0; // of this chunk, released ones included
};

} // namespace detail
} // namespace bundled
} // namespace Pegasus
