#include <Pegasus/Common/String.h>

#include <algorithm>
#include <new>
#include <ostream>
#include <stdexcept>

namespace Pegasus {

namespace {

constexpr char toLower(char c) noexcept { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

} // namespace

const String String::EMPTY;

String::String(const char* utf8) : String(std::string_view(utf8)) {}

String::String(const char* utf8, Uint32 bytes) : String(std::string_view(utf8, bytes)) {}

String::String(std::string_view utf8) : block_(create(utf8, {})) {}

String::Block* String::create(std::string_view first, std::string_view second) {
    const std::size_t bytes = first.size() + second.size();
    if (bytes == 0)
        return nullptr;
    if (bytes > ~Uint32{0})
        throw std::length_error("a String holds at most 4 GiB");
    auto* block = new (::operator new(sizeof(Block) + bytes + 1)) Block{{1}, static_cast<Uint32>(bytes)};
    char* text = reinterpret_cast<char*>(block + 1);
    text = std::copy(first.begin(), first.end(), text);
    text = std::copy(second.begin(), second.end(), text);
    *text = '\0';
    return block;
}

void String::destroy(Block* block) noexcept {
    block->~Block();
    ::operator delete(block);
}

Uint32 String::size() const noexcept {
    Uint32 units = 0;
    for (const char c : view()) {
        const auto byte = static_cast<Uint8>(c);
        const bool continuation = (byte & 0xC0U) == 0x80U;
        const bool surrogatePair = byte >= 0xF0U;
        units += continuation ? 0U : surrogatePair ? 2U : 1U;
    }
    return units;
}

CString String::getCString() const { return CString(*this); }

std::string_view String::view() const noexcept {
    return block_ ? std::string_view(reinterpret_cast<const char*>(block_ + 1), block_->bytes) : std::string_view("");
}

String& String::append(const String& text) {
    if (text.empty())
        return *this;
    String joined;
    joined.block_ = create(view(), text.view());
    return *this = std::move(joined);
}

Boolean String::equal(const String& a, const String& b) noexcept {
    return a.block_ == b.block_ || a.view() == b.view();
}

Boolean String::equalNoCase(const String& a, const String& b) noexcept {
    if (a.block_ == b.block_)
        return true;
    const std::string_view left = a.view();
    const std::string_view right = b.view();
    return left.size() == right.size() && std::equal(left.begin(), left.end(), right.begin(),
                                                     [](char x, char y) { return x == y || toLower(x) == toLower(y); });
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

} // namespace Pegasus
