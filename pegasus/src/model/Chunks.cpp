#include "model/Chunks.h"

#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <new>

namespace Pegasus {
inline namespace bundled {
namespace detail {

namespace {

// malloc keeps some bytes for itself: chunks of this size follow each other without a gap.
constexpr std::size_t kUsedBytes = Chunks::kChunkBytes - 2 * sizeof(void*);

/// More than a chunk has pieces.
constexpr unsigned kFilling = Chunks::kChunkBytes;

} // namespace

/// The beginning of a chunk; its address is a multiple of kChunkBytes.
struct Chunks::Chunk {
    /// The pieces that are in use; while the chunk is being filled, less those that were given out, plus kFilling.
    std::atomic<unsigned> references{kFilling};

    void release(unsigned count) noexcept {
        if (references.fetch_sub(count, std::memory_order_acq_rel) == count) {
            this->~Chunk();
            std::free(this); // NOLINT(cppcoreguidelines-no-malloc): it comes from posix_memalign
        }
    }
};

__thread Chunks* Chunks::current_ = nullptr;

void Chunks::release(void* piece) noexcept {
    const auto within = reinterpret_cast<std::uintptr_t>(piece) % kChunkBytes;
    reinterpret_cast<Chunk*>(static_cast<char*>(piece) - within)->release(1);
}

void Chunks::enterChunk() {
    void* memory = nullptr;
    if (posix_memalign(&memory, kChunkBytes, kUsedBytes) != 0) {
        throw std::bad_alloc();
    }
    leaveChunk();
    chunk_ = new (memory) Chunk;
    next_ = static_cast<char*>(memory) + sizeof(void*);
    room_ = kUsedBytes - sizeof(void*);
    pieces_ = 0;
}

void Chunks::leaveChunk() noexcept {
    if (chunk_ != nullptr) {
        chunk_->release(kFilling - pieces_);
    }
}

} // namespace detail
} // namespace bundled
} // namespace Pegasus
