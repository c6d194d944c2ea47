#pragma once

#include <Pegasus/Common/Config.h>

#include <atomic>
#include <iosfwd>
#include <string_view>
#include <utility>

namespace Pegasus {

class CString;

/// Text in UTF-8. A copy shares the bytes with its original until one of them is changed, so copies are cheap; several
/// threads may copy from one String at the same time.
class String {
  public:
    static const String EMPTY;

    String() noexcept = default;
    String(const char* utf8);
    String(const char* utf8, Uint32 bytes);
    explicit String(std::string_view utf8);
    String(const String& other) noexcept : block_(other.block_) {
        if (block_)
            block_->references.fetch_add(1, std::memory_order_relaxed);
    }
    String(String&& other) noexcept : block_(std::exchange(other.block_, nullptr)) {}
    String& operator=(String other) noexcept {
        std::swap(block_, other.block_);
        return *this;
    }
    ~String() {
        if (block_ && block_->references.fetch_sub(1, std::memory_order_acq_rel) == 1)
            destroy(block_);
    }

    /// The length in UTF-16 units, as the API counts.
    Uint32 size() const noexcept;
    bool empty() const noexcept { return !block_; }

    CString getCString() const;
    /// The bytes, valid as long as this String lives unchanged. Followed by a null byte.
    std::string_view view() const noexcept;

    String& append(const String& text);
    void clear() noexcept { *this = String(); }

    static Boolean equal(const String& a, const String& b) noexcept;
    /// Without regard to the case of the letters A to Z.
    static Boolean equalNoCase(const String& a, const String& b) noexcept;

  private:
    struct Block {
        std::atomic<Uint32> references;
        Uint32 bytes;
    };
    static Block* create(std::string_view first, std::string_view second);
    static void destroy(Block* block) noexcept;

    Block* block_ = nullptr; // null stands for the empty text; else the bytes follow the block
};

/// The bytes of a String for C interfaces. Owns them, so it may outlive the String.
class CString {
  public:
    CString() noexcept = default;
    explicit CString(String text) noexcept : text_(std::move(text)) {}
    operator const char*() const noexcept { return text_.view().data(); }

  private:
    String text_;
};

bool operator==(const String& a, const String& b) noexcept;
bool operator!=(const String& a, const String& b) noexcept;
bool operator<(const String& a, const String& b) noexcept;
bool operator<=(const String& a, const String& b) noexcept;
bool operator>(const String& a, const String& b) noexcept;
bool operator>=(const String& a, const String& b) noexcept;
String operator+(const String& a, const String& b);
/// Writes the text as UTF-8.
std::ostream& operator<<(std::ostream& out, const String& text);

} // namespace Pegasus
