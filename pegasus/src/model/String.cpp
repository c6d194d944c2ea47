#include "model/Chunks.h"
#include "model/Utf16.h"
#include "text/Ascii.h"
#include "text/Utf8.h"

#include <Pegasus/Common/Exception.h>
#include <Pegasus/Common/String.h>

#include <algorithm>
#include <cstring>
#include <new>
#include <ostream>
#include <stdexcept>
#include <string>

namespace Pegasus {
inline namespace bundled {

namespace {

std::string_view checked(const char* utf8, std::size_t bytes) {
    if (!utf8) {
        throw NullPointer();
    }
    const std::string_view text(utf8, bytes);
    if (!text::isUtf8(text)) {
        throw Exception(String(std::string_view("a text is not UTF-8")));
    }
    return text;
}

template <class Change>
String changed(const String& text, Change change) {
    std::string bytes(text.view());
    std::transform(bytes.begin(), bytes.end(), bytes.begin(), change);
    return String(std::string_view(bytes));
}

String fromUnits(std::u16string_view units) { return String(std::string_view(detail::utf8Of(units))); }

Uint32 placeOf(std::size_t found) noexcept {
    return found == std::u16string::npos ? PEG_NOT_FOUND : static_cast<Uint32>(found);
}

/// The length of a text in a Chunks begins with these bits. No other text is as long: of the longest ones, 4 KiB are
/// left out.
constexpr Uint32 kInChunk = ~Uint32{0} << 12U;
static_assert(detail::Chunks::kMaxBytes < ~kInChunk);

int signOf(int comparison) noexcept { return comparison < 0 ? -1 : comparison > 0 ? 1 : 0; }

} // namespace

const String String::EMPTY;

String::String(const char* utf8) : String(checked(utf8, utf8 ? std::strlen(utf8) : 0)) {}

String::String(const char* utf8, Uint32 bytes) : String(checked(utf8, bytes)) {}

String::String(std::string_view utf8) : block_(create(utf8, {})) {}

String::Block* String::create(std::string_view first, std::string_view second) {
    const std::size_t bytes = first.size() + second.size();
    if (bytes == 0) {
        return nullptr;
    }
    if (bytes >= kInChunk) {
        throw std::length_error("a String holds at most 4 GiB");
    }
    const std::size_t size = sizeof(Block) + bytes + 1;
    detail::Chunks* const chunks = size <= detail::Chunks::kMaxBytes ? detail::Chunks::current() : nullptr;
    auto* block = new (chunks ? chunks->allocate(size) : ::operator new(size))
        Block{{1}, static_cast<Uint32>(bytes) | (chunks ? kInChunk : 0)};
    char* text = reinterpret_cast<char*>(block + 1);
    text = std::copy(first.begin(), first.end(), text);
    text = std::copy(second.begin(), second.end(), text);
    *text = '\0';
    return block;
}

void String::destroy(Block* block) noexcept {
    const bool isInChunk = block->bytes >= kInChunk;
    block->~Block();
    if (isInChunk) {
        detail::Chunks::release(block);
    } else {
        ::operator delete(block);
    }
}

Uint32 String::size() const noexcept {
    Uint32 units = 0;
    for (const char c : view()) {
        const bool surrogatePair = static_cast<Uint8>(c) >= 0xF0U;
        units += text::isContinuation(c) ? 0U : surrogatePair ? 2U : 1U;
    }
    return units;
}

CString String::getCString() const { return CString(*this); }

std::string_view String::view() const noexcept {
    if (!block_) {
        return "";
    }
    const Uint32 bytes = block_->bytes;
    return {reinterpret_cast<const char*>(block_ + 1), bytes >= kInChunk ? bytes - kInChunk : bytes};
}

String& String::append(const String& text) {
    if (text.empty()) {
        return *this;
    }
    String joined;
    joined.block_ = create(view(), text.view());
    return *this = std::move(joined);
}

Uint32 String::find(Uint32 from, Char16 character) const {
    return placeOf(detail::utf16Of(view()).find(static_cast<char16_t>(Uint16(character)), from));
}

Uint32 String::find(const String& text) const {
    return placeOf(detail::utf16Of(view()).find(detail::utf16Of(text.view())));
}

Uint32 String::reverseFind(Char16 character) const {
    return placeOf(detail::utf16Of(view()).rfind(static_cast<char16_t>(Uint16(character))));
}

String String::subString(Uint32 index, Uint32 length) const {
    const std::u16string units = detail::utf16Of(view());
    if (index > units.size()) {
        throw IndexOutOfBoundsException();
    }
    return fromUnits(std::u16string_view(units).substr(index, length));
}

void String::remove(Uint32 index, Uint32 length) {
    std::u16string units = detail::utf16Of(view());
    if (index > units.size()) {
        throw IndexOutOfBoundsException();
    }
    *this = fromUnits(units.erase(index, length));
}

void String::toLower() { *this = changed(*this, text::lowered); }
void String::toUpper() { *this = changed(*this, text::raised); }

int String::compare(const String& a, const String& b) {
    return signOf(detail::utf16Of(a.view()).compare(detail::utf16Of(b.view())));
}

int String::compare(const String& a, const String& b, Uint32 length) {
    return signOf(detail::utf16Of(a.view()).substr(0, length).compare(detail::utf16Of(b.view()).substr(0, length)));
}

int String::compareNoCase(const String& a, const String& b) {
    return compare(changed(a, text::lowered), changed(b, text::lowered));
}

Boolean String::equal(const String& a, const String& b) noexcept {
    return a.block_ == b.block_ || a.view() == b.view();
}

Boolean String::equalNoCase(const String& a, const String& b) noexcept {
    return a.block_ == b.block_ || text::equalIgnoringCase(a.view(), b.view());
}

bool operator==(const String& a, const String& b) noexcept { return String::equal(a, b); }
bool operator!=(const String& a, const String& b) noexcept { return !String::equal(a, b); }
bool operator<(const String& a, const String& b) noexcept { return a.view() < b.view(); }
bool operator<=(const String& a, const String& b) noexcept { return a.view() <= b.view(); }
bool operator>(const String& a, const String& b) noexcept { return a.view() > b.view(); }
bool operator>=(const String& a, const String& b) noexcept { return a.view() >= b.view(); }

String operator+(const String& a, const String& b) {
    String sum(a);
    sum.append(b);
    return sum;
}

std::ostream& operator<<(std::ostream& out, const String& text) { return out << text.view(); }

} // namespace bundled
} // namespace Pegasus
