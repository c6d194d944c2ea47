#pragma once

#include <Pegasus/Common/Config.h>

#include <atomic>
#include <utility>

namespace Pegasus {
inline namespace bundled {
namespace detail {

/// The base of every shared representation: a reference count that several threads may touch.
class RefCounted {
  public:
    RefCounted() = default;
    /// A copy of a representation begins with a count of its own.
    RefCounted(const RefCounted& /*other*/) noexcept {}
    RefCounted& operator=(const RefCounted&) = delete;
    virtual ~RefCounted() = default;

    void retain() const noexcept { references_.fetch_add(1, std::memory_order_relaxed); }
    /// Gives up one reference; the last one deletes the representation.
    void release() const noexcept {
        if (references_.fetch_sub(1, std::memory_order_acq_rel) == 1) {
            delete this;
        }
    }

  private:
    mutable std::atomic<Uint32> references_{1};
};

/// Changes objects without the checks that callers are held to.
struct Unchecked;

/// Reports the use of an object that has no representation.
[[noreturn]] void throwUninitializedObject();

/// One pointer that owns a share of a representation. Copying and destroying needs no more than a forward declaration
/// of Rep, so public headers stay free of what objects are made of.
template <class Rep>
class Handle {
  public:
    Handle() noexcept = default;
    Handle(const Handle& other) noexcept : shared_(other.shared_) {
        if (shared_) {
            shared_->retain();
        }
    }
    Handle(Handle&& other) noexcept : shared_(std::exchange(other.shared_, nullptr)) {}
    Handle& operator=(Handle other) noexcept {
        std::swap(shared_, other.shared_);
        return *this;
    }
    ~Handle() {
        // The static analyzer does not follow the count and takes every release for the last.
        if (shared_) {
            shared_->release(); // NOLINT(clang-analyzer-cplusplus.NewDelete)
        }
    }

    /// A new representation; `Actual` is Rep or derived from it.
    template <class Actual = Rep, class... Arguments>
    static Handle make(Arguments&&... arguments) {
        Handle handle;
        handle.shared_ = new Actual(std::forward<Arguments>(arguments)...);
        return handle;
    }

    /// A representation of its own with the same content.
    Handle copy() const { return make(static_cast<const Rep&>(**this)); }

    explicit operator bool() const noexcept { return shared_ != nullptr; }
    /// Throws UninitializedObjectException when there is no representation.
    Rep* operator->() const { return &**this; }
    Rep& operator*() const {
        if (!shared_) {
            throwUninitializedObject();
        }
        return *static_cast<Rep*>(shared_);
    }

    /// Whether both share one representation (or both have none).
    friend bool operator==(const Handle& a, const Handle& b) noexcept { return a.shared_ == b.shared_; }

  private:
    RefCounted* shared_ = nullptr;
};

} // namespace detail
} // namespace bundled
} // namespace Pegasus
