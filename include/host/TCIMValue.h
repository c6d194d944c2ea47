#pragma once

#include "host/TCIMChar16.h"
#include "host/TCIMContext.h"
#include "host/TCIMDateTime.h"
#include "host/TCIMIndirect.h"
#include "host/TCIMReference.h"

#include <array>
#include <charconv>
#include <cstddef>
#include <iosfwd>
#include <limits>
#include <string>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

namespace NQORVYX20 {

/// A CIM value: null, one scalar, or one array of one element type. It always has a type, also when it is null.
/// Values are plain data: copies are independent, and one value must not be changed while another thread reads it. A
/// value that was moved from may be assigned to and destroyed, nothing else. Moving takes no operation of the host's
/// library, only this header.
class TCIMValue {
  public:
    /// The type of a value: one code, in which bit 0x10 marks an array of the type in the lower bits.
    class TCIMType {
      public:
        enum ECIMType {
            eCIMUnknown = 0,
            eCIMBoolean = 1,
            eCIMUint8 = 2,
            eCIMSint8 = 3,
            eCIMUint16 = 4,
            eCIMSint16 = 5,
            eCIMUint32 = 6,
            eCIMSint32 = 7,
            eCIMUint64 = 8,
            eCIMSint64 = 9,
            eCIMReal32 = 10,
            eCIMReal64 = 11,
            eCIMChar16 = 12,
            eCIMString = 13,
            eCIMDateTime = 14,
            eCIMReference = 15,
            eCIMArrayUnknown = 16,
            eCIMBooleanArray = 17,
            eCIMUint8Array = 18,
            eCIMSint8Array = 19,
            eCIMUint16Array = 20,
            eCIMSint16Array = 21,
            eCIMUint32Array = 22,
            eCIMSint32Array = 23,
            eCIMUint64Array = 24,
            eCIMSint64Array = 25,
            eCIMReal32Array = 26,
            eCIMReal64Array = 27,
            eCIMChar16Array = 28,
            eCIMStringArray = 29,
            eCIMDateTimeArray = 30,
            eCIMReferenceArray = 31
        };

        /*implicit*/ TCIMType(ECIMType code) : code_(code) {}
        operator ECIMType() const { return code_; }

      private:
        ECIMType code_;
    };

    /// A null value of type eCIMUnknown.
    TCIMValue();
    /*implicit*/ TCIMValue(bool value);
    /*implicit*/ TCIMValue(unsigned char value);
    /*implicit*/ TCIMValue(signed char value);
    /*implicit*/ TCIMValue(unsigned short value);
    /*implicit*/ TCIMValue(short value);
    /*implicit*/ TCIMValue(unsigned int value);
    /*implicit*/ TCIMValue(int value);
    /*implicit*/ TCIMValue(unsigned long long value);
    /*implicit*/ TCIMValue(long long value);
    /*implicit*/ TCIMValue(float value);
    /*implicit*/ TCIMValue(double value);
    /*implicit*/ TCIMValue(const char* value);
    /*implicit*/ TCIMValue(const std::string& value);
    /*implicit*/ TCIMValue(std::string&& value) : content_(std::move(value)) {}
    /*implicit*/ TCIMValue(const TCIMChar16& value);
    /*implicit*/ TCIMValue(const TCIMDateTime& value);
    /*implicit*/ TCIMValue(TCIMReference& value);

    /// A null value of a type. The second argument has no meaning; pass 0.
    TCIMValue(TCIMType type, unsigned int unused);

    /// An array of the elements in their order, also of none. `elementType` is the type of one element. The second
    /// argument has no meaning; pass 0.
    TCIMValue(TCIMType elementType, unsigned int unused, const std::vector<TCIMValue>& elements);
    TCIMValue(TCIMType elementType, unsigned int /*unused*/, std::vector<TCIMValue>&& elements)
        : content_(TCIMIndirect<TArray>(TArray{ElementOf(elementType), std::move(elements)})) {}

    TCIMValue(const TCIMValue& other);
    TCIMValue(TCIMValue&& other) noexcept = default;
    TCIMValue& operator=(const TCIMValue& other);
    TCIMValue& operator=(TCIMValue&& other) noexcept = default;
    ~TCIMValue();

    bool IsNull() const;
    bool IsArray() const;
    TCIMType GetType() const;

    /// True for a value of type reference, null or not.
    bool IsReference() const;

    /// The name of the class that a reference points at; empty when it names none, and for a value that is no
    /// reference.
    std::string GetReferencedClass() const;

    /// The value as text: booleans `true` and `false`, integers in `base` (2 to 36, any other counts as 10), reals in
    /// the shortest form that reads back the same (or `nan`, `inf`, `-inf`), char16 as UTF-8, date-times as their 25
    /// characters, references as their path, arrays as `{a, b}`, null as the empty text. Does not depend on the locale.
    std::string ToString(unsigned char base) const;

    /// Calls `visit` with the content where it is: a bool, a number, a text, a TCIMChar16, a TCIMDateTime, a
    /// TCIMReference, the elements of an array, or for null its type. For code that reads many values: it takes no
    /// operation of the host's library, only this header.
    template <typename Visitor>
    decltype(auto) Visit(const Visitor& visit) const;

    /// Appends ToString(10), as Visit() reads it.
    void AppendTo(std::string& text) const;

    // Numbers convert to every number type that can hold the value exactly (NaN and the infinities to both real types);
    // a boolean only to bool; everything to std::string, as ToString(10). All throw TVYXException eTypeMismatch when
    // the value is null or does not fit.
    operator bool() const;
    operator unsigned char() const;
    operator signed char() const;
    operator unsigned short() const;
    operator short() const;
    operator unsigned int() const;
    operator int() const;
    operator unsigned long long() const;
    operator long long() const;
    operator float() const;
    operator double() const;
    operator std::string() const;

    /// The elements of an array, in place. Throws TVYXException eTypeMismatch for a value that is not an array, and for
    /// null.
    operator std::vector<TCIMValue>&() const;

    /// The date-time or reference held. Throws TVYXException eTypeMismatch for a value of another type, and for null.
    const TCIMDateTime& GetDateTime() const;
    const TCIMReference& GetReference() const;

    /// Values are equal when type and content are; two nulls when their types are.
    bool operator==(const TCIMValue& other) const;
    bool operator!=(const TCIMValue& other) const { return !(*this == other); }

    /// A strict weak order: by type code, then null before content, then content. Arrays compare lexicographically.
    /// Among reals, `nan` equals itself and follows all numbers.
    bool operator<(const TCIMValue& other) const;

  private:
    static TCIMType ElementOf(TCIMType array) {
        constexpr unsigned int kArrayBit = TCIMType::eCIMArrayUnknown;
        return static_cast<TCIMType::ECIMType>(static_cast<unsigned int>(array) & ~kArrayBit);
    }

    struct TNull {
        TCIMType type;
    };
    struct TArray {
        TCIMType elementType;
        std::vector<TCIMValue> elements;
    };

    // The alternatives stand in the order of the type codes: the index of a scalar is its type.
    using TContent = std::variant<TNull, bool, unsigned char, signed char, unsigned short, short, unsigned int, int,
                                  unsigned long long, long long, float, double, TCIMChar16, std::string, TCIMDateTime,
                                  TCIMIndirect<TCIMReference>, TCIMIndirect<TArray>>;

    template <typename T>
    const T& Get() const;
    template <typename T>
    T ToNumber() const;
    template <typename TRelation>
    bool CompareContent(const TCIMValue& other, TRelation relation) const;

    TContent content_;
};

// A reference has values as keys, so that it can be copied only where they are known.
inline TCIMReference::TCIMReference(const TCIMReference& other) = default;
inline TCIMReference::TCIMReference(TCIMReference&& other) noexcept = default;
inline TCIMReference& TCIMReference::operator=(const TCIMReference& other) = default;
inline TCIMReference& TCIMReference::operator=(TCIMReference&& other) noexcept = default;

template <typename Visitor>
decltype(auto) TCIMValue::Visit(const Visitor& visit) const {
    return std::visit(
        [&visit](const auto& content) -> decltype(auto) {
            using T = std::decay_t<decltype(content)>;
            if constexpr (std::is_same_v<T, TNull>) {
                return visit(content.type);
            } else if constexpr (std::is_same_v<T, TCIMIndirect<TArray>>) {
                return visit(std::as_const((*content).elements));
            } else if constexpr (std::is_same_v<T, TCIMIndirect<TCIMReference>>) {
                return visit(std::as_const(*content));
            } else {
                return visit(content);
            }
        },
        content_);
}

inline void TCIMValue::AppendTo(std::string& text) const {
    Visit([this, &text](const auto& content) {
        using T = std::decay_t<decltype(content)>;
        if constexpr (std::is_same_v<T, std::string>) {
            text.append(content);
        } else if constexpr (std::is_same_v<T, bool>) {
            text.append(content ? "true" : "false");
        } else if constexpr (std::is_integral_v<T>) {
            std::array<char, std::numeric_limits<T>::digits10 + 2> digits; // one more digit may be, and a sign
            const char* const end = std::to_chars(digits.data(), digits.data() + digits.size(), content).ptr;
            text.append(digits.data(), static_cast<std::size_t>(end - digits.data()));
        } else if constexpr (std::is_same_v<T, TCIMDateTime>) {
            text.append(content.Characters());
        } else if constexpr (!std::is_same_v<T, TCIMType>) {
            text.append(ToString(10));
        }
    });
}

/// Writes a readable name, `uint16` or `string[]`.
std::ostream& operator<<(std::ostream& stream, const TCIMValue::TCIMType& type);

} // namespace NQORVYX20
