#include "model/ObjectXml.h"
#include "model/VisitType.h"
#include "text/Utf8.h"

#include <Pegasus/Common/CIMClass.h>
#include <Pegasus/Common/CIMValue.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <string>

namespace Pegasus {
inline namespace bundled {

namespace {

template <class T>
bool same(const T& a, const T& b) {
    return a == b;
}
/// Embedded objects; an uninitialised one is a null.
template <class Object>
bool sameObject(const Object& a, const Object& b) {
    if (a.isUninitialized() || b.isUninitialized()) {
        return a.isUninitialized() == b.isUninitialized();
    }
    return a.identical(b);
}
bool same(const CIMInstance& a, const CIMInstance& b) { return sameObject(a, b); }
bool same(const CIMObject& a, const CIMObject& b) { return sameObject(a, b); }

template <class Number, class = std::enable_if_t<std::is_integral_v<Number>>>
void print(std::string& out, Number number) {
    std::array<char, 32> text{};
    const auto result = std::to_chars(text.data(), text.data() + text.size(), number);
    out.append(text.data(), result.ptr);
}
/// As printf does in the locale "C", which is not the one of this process for sure.
void printReal(std::string& out, Real64 value, int digits) {
    std::array<char, 64> text{};
    const auto result =
        std::to_chars(text.data(), text.data() + text.size(), value, std::chars_format::scientific, digits);
    out.append(text.data(), result.ptr);
}
void print(std::string& out, Real32 value) { printReal(out, value, 7); }
void print(std::string& out, Real64 value) { printReal(out, value, 16); }
void print(std::string& out, Boolean value) { out += value ? "TRUE" : "FALSE"; }
void print(std::string& out, const String& text) { out += text.view(); }
void print(std::string& out, const CIMDateTime& value) { out += value.toString().view(); }
void print(std::string& out, const CIMObjectPath& path) { out += path.toString().view(); }
void print(std::string& out, const CIMInstance& instance) {
    if (!instance.isUninitialized()) {
        detail::appendXml(out, instance);
    }
}
void print(std::string& out, const CIMObject& object) {
    if (!object.isUninitialized()) {
        print(out, object.toString());
    }
}

/// A UTF-16 unit as UTF-8; half of a surrogate pair is no character and becomes U+FFFD.
void print(std::string& out, Char16 value) {
    const Uint32 unit = value;
    text::appendUtf8((unit & 0xF800U) == 0xD800U ? 0xFFFDU : unit, out);
}

template <class T>
T getScalar(const CIMValue& value) {
    T scalar{};
    value.get(scalar);
    return scalar;
}

template <class T>
const Array<T>& itemsOf(const detail::ArrayContent& array) {
    return static_cast<const detail::ArrayOf<T>&>(array).items;
}

bool sameNulls(const detail::ArrayContent& a, const detail::ArrayContent& b) {
    bool same = a.size() == b.size();
    for (Uint32 i = 0; same && i < a.size(); ++i) {
        same = a.isNull(i) == b.isNull(i);
    }
    return same;
}

bool sameItems(CIMType type, const detail::ArrayContent& a, const detail::ArrayContent& b) {
    return sameNulls(a, b) && detail::visitType(type, [&](auto tag) {
               using T = typename decltype(tag)::Type;
               const auto& left = itemsOf<T>(a);
               return std::equal(left.begin(), left.end(), itemsOf<T>(b).begin(),
                                 [](const T& x, const T& y) { return same(x, y); });
           });
}

void printItems(std::string& out, CIMType type, const detail::ArrayContent& array) {
    detail::visitType(type, [&](auto tag) {
        const auto& items = itemsOf<typename decltype(tag)::Type>(array);
        for (Uint32 i = 0; i < items.size(); ++i) {
            if (array.isNull(i)) {
                out += "NULL";
            } else {
                print(out, items[i]);
            }
            out += ' ';
        }
    });
}

std::string typeText(CIMType type, Boolean isArray) {
    return std::string(cimTypeToString(type)) + (isArray ? " array" : "");
}

} // namespace

void detail::throwTypeMismatch(CIMType type, Boolean isArray, CIMType askedType, Boolean askedArray) {
    throw TypeMismatchException(String(std::string_view("the value is of type " + typeText(type, isArray) +
                                                        ", asked for as " + typeText(askedType, askedArray))));
}

CIMValue::CIMValue(CIMType type, Boolean isArray, Uint32 /*size*/) noexcept : type_(type), isArray_(isArray) {}

Uint32 CIMValue::getArraySize() const {
    const auto* array = std::get_if<ArrayHandle>(&content_);
    return array ? (*array)->size() : 0;
}

Boolean CIMValue::isNullElement(Uint32 index) const {
    if (index >= getArraySize()) {
        throw IndexOutOfBoundsException();
    }
    return std::get<ArrayHandle>(content_)->isNull(index);
}

Boolean CIMValue::equal(const CIMValue& other) const {
    if (type_ != other.type_ || isArray_ != other.isArray_ || isNull() != other.isNull()) {
        return false;
    }
    if (isNull()) {
        return true;
    }
    if (isArray_) {
        return sameItems(type_, *std::get<ArrayHandle>(content_), *std::get<ArrayHandle>(other.content_));
    }
    return detail::visitType(type_, [&](auto tag) {
        using T = typename decltype(tag)::Type;
        return same(getScalar<T>(*this), getScalar<T>(other));
    });
}

String CIMValue::toString() const {
    std::string text;
    if (const auto* array = std::get_if<ArrayHandle>(&content_)) {
        printItems(text, type_, **array);
    } else if (!isNull()) {
        detail::visitType(type_, [&](auto tag) { print(text, getScalar<typename decltype(tag)::Type>(*this)); });
    }
    return String(std::string_view(text));
}

} // namespace bundled
} // namespace Pegasus
