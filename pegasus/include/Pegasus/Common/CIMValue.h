#pragma once

#include <Pegasus/Common/Array.h>
#include <Pegasus/Common/CIMDateTime.h>
#include <Pegasus/Common/CIMInstance.h>
#include <Pegasus/Common/CIMObject.h>
#include <Pegasus/Common/CIMObjectPath.h>
#include <Pegasus/Common/CIMType.h>
#include <Pegasus/Common/Char16.h>
#include <Pegasus/Common/Handle.h>
#include <Pegasus/Common/String.h>

#include <type_traits>
#include <variant>

namespace Pegasus {

namespace detail {

/// Which CIM type a C++ type stands for. Only the types below can be held by a CIMValue.
template <class T>
struct ScalarType {
    static constexpr bool kHeld = false;
};
template <CIMType type>
struct Held {
    static constexpr bool kHeld = true;
    static constexpr CIMType kType = type;
};
template <>
struct ScalarType<Boolean> : Held<CIMTYPE_BOOLEAN> {};
template <>
struct ScalarType<Uint8> : Held<CIMTYPE_UINT8> {};
template <>
struct ScalarType<Sint8> : Held<CIMTYPE_SINT8> {};
template <>
struct ScalarType<Uint16> : Held<CIMTYPE_UINT16> {};
template <>
struct ScalarType<Sint16> : Held<CIMTYPE_SINT16> {};
template <>
struct ScalarType<Uint32> : Held<CIMTYPE_UINT32> {};
template <>
struct ScalarType<Sint32> : Held<CIMTYPE_SINT32> {};
template <>
struct ScalarType<Uint64> : Held<CIMTYPE_UINT64> {};
template <>
struct ScalarType<Sint64> : Held<CIMTYPE_SINT64> {};
template <>
struct ScalarType<Real32> : Held<CIMTYPE_REAL32> {};
template <>
struct ScalarType<Real64> : Held<CIMTYPE_REAL64> {};
template <>
struct ScalarType<Char16> : Held<CIMTYPE_CHAR16> {};
template <>
struct ScalarType<String> : Held<CIMTYPE_STRING> {};
template <>
struct ScalarType<CIMDateTime> : Held<CIMTYPE_DATETIME> {};
template <>
struct ScalarType<CIMObjectPath> : Held<CIMTYPE_REFERENCE> {};
template <>
struct ScalarType<CIMObject> : Held<CIMTYPE_OBJECT> {};
template <>
struct ScalarType<CIMInstance> : Held<CIMTYPE_INSTANCE> {};

template <class T>
struct ValueType : ScalarType<T> {
    static constexpr bool kIsArray = false;
};
template <class T>
struct ValueType<Array<T>> : ScalarType<T> {
    static constexpr bool kIsArray = true;
};

template <class T>
struct ArrayRep;

} // namespace detail

/// A value of one CIM type, scalar or array, or the null of that type. A value itself: changing a copy does not change
/// the original.
class CIMValue {
  public:
    /// The null boolean.
    CIMValue() noexcept = default;
    /// The null of a type. The size is that of a fixed array and has no effect on a null.
    CIMValue(CIMType type, Boolean isArray, Uint32 size = 0) noexcept;
    /// From Boolean, the number types, Char16, String, CIMDateTime, CIMObjectPath, CIMObject, CIMInstance, or an Array
    /// of one of them. A text needs String(...) around it.
    template <class T, class = std::enable_if_t<detail::ValueType<T>::kHeld>>
    CIMValue(const T& value) {
        set(value);
    }

    CIMType getType() const noexcept { return type_; }
    Boolean isArray() const noexcept { return isArray_; }
    Boolean isNull() const noexcept { return std::holds_alternative<std::monostate>(content_); }
    /// The number of elements; 0 for a null and for a scalar.
    Uint32 getArraySize() const noexcept;

    /// Copies the content to `value`. A null leaves `value` as it is, so initialise it. Throws TypeMismatchException
    /// when T is not this value's type and array-ness.
    template <class T>
    void get(T& value) const {
        static_assert(detail::ValueType<T>::kHeld, "no CIM type is held in this C++ type");
        load(value);
    }

    /// Takes over type and content of `value`.
    template <class T>
    void set(const T& value) {
        static_assert(detail::ValueType<T>::kHeld, "no CIM type is held in this C++ type");
        store(value);
    }
    void setNullValue(CIMType type, Boolean isArray, Uint32 size = 0) noexcept {
        *this = CIMValue(type, isArray, size);
    }

    /// False when type or array-ness differ; two nulls of one type are equal; a null never equals a content.
    Boolean equal(const CIMValue& other) const;

    /// The content as text: TRUE and FALSE, numbers in base 10, reals in the shortest form that reads back the same,
    /// arrays as "{a, b}", embedded objects as their path. Empty for a null.
    String toString() const;

    friend bool operator==(const CIMValue& a, const CIMValue& b) { return a.equal(b); }
    friend bool operator!=(const CIMValue& a, const CIMValue& b) { return !a.equal(b); }

  private:
    using ArrayHandle = detail::Handle<detail::RefCounted>;
    // Each alternative fits into eight bytes; values are by far the most frequent objects.
    using Content =
        std::variant<std::monostate, Boolean, Uint8, Sint8, Uint16, Sint16, Uint32, Sint32, Uint64, Sint64, Real32,
                     Real64, Char16, String, CIMDateTime, CIMObjectPath, CIMObject, CIMInstance, ArrayHandle>;

    template <class T>
    void load(T& value) const;
    template <class T>
    void store(const T& value);
    template <class T>
    const Array<T>& items() const;

    Content content_;
    CIMType type_ = CIMTYPE_BOOLEAN;
    Boolean isArray_ = false;
};

} // namespace Pegasus
