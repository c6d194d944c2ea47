#pragma once

#include <Pegasus/Common/Char16.h>
#include <Pegasus/Common/Config.h>

#include <atomic>
#include <iosfwd>
#include <string_view>
#include <utility>

namespace Pegasus {
inline namespace bundled {

class CString;

/// Text in UTF-8. A copy shares the bytes with its original until one of them is changed, so copies are cheap; several
/// threads may copy from one String at the same time.
class String {
  public:
    static const String EMPTY;

    String() noexcept = default;
    /// Throw NullPointer for a null pointer, and Exception for bytes that are not UTF-8.
    String(const char* utf8);
    String(const char* utf8, Uint32 bytes);
    /// An extension: the bytes as they are.
    explicit String(std::string_view utf8);
    String(const String& other) noexcept : block_(other.block_) {
        if (block_) {
            block_->references.fetch_add(1, std::memory_order_relaxed);
        }
    }
    String(String&& other) noexcept : block_(std::exchange(other.block_, nullptr)) {}
    String& operator=(String other) noexcept {
        std::swap(block_, other.block_);
        return *this;
    }
    ~String() {
        if (block_ && block_->references.fetch_sub(1, std::memory_order_acq_rel) == 1) {
            destroy(block_);
        }
    }

    /// The length in UTF-16 units, as the API counts.
    Uint32 size() const noexcept;
    bool empty() const noexcept { return !block_; }

    CString getCString() const;
    /// The bytes, valid as long as this String lives unchanged. Followed by a null byte.
    std::string_view view() const noexcept;

    String& append(const String& text);
    String& assign(const String& text) noexcept { return *this = text; }
    void clear() noexcept { *this = String(); }
    /// Has no effect: each text takes what it needs.
    void reserveCapacity(Uint32 /*capacity*/) noexcept {}

    // Indexes and lengths are counted in UTF-16 units, as size() counts.

    /// The index of the first occurrence of the character or text; PEG_NOT_FOUND when there is none.
    Uint32 find(Char16 character) const { return find(0, character); }
    Uint32 find(Uint32 from, Char16 character) const;
    Uint32 find(const String& text) const;
    /// The index of the last occurrence of the character; PEG_NOT_FOUND when there is none.
    Uint32 reverseFind(Char16 character) const;
    /// The part that begins at an index, of at most `length` units. Throws IndexOutOfBoundsException for an index
    /// beyond the end.
    String subString(Uint32 index, Uint32 length = PEG_NOT_FOUND) const;
    /// Removes this part. Throws like subString().
    void remove(Uint32 index, Uint32 length = PEG_NOT_FOUND);
    /// Change the letters A to Z, or a to z.
    void toLower();
    void toUpper();

    /// Less than 0, 0, or greater than 0, as `a` comes before, equals or comes after `b` in the order of UTF-16 units;
    /// without regard to case, the texts are compared in lower case. The second form compares the first `length` units.
    static int compare(const String& a, const String& b);
    static int compare(const String& a, const String& b, Uint32 length);
    static int compareNoCase(const String& a, const String& b);

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

} // namespace bundled
} // namespace Pegasus
