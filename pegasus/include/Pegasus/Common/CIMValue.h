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

#include <cstring>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

namespace Pegasus {
inline namespace bundled {

namespace detail {

/// Which CIM type a C++ type stands for; only the types listed here can be held by a CIMValue.
template <class T>
struct ScalarType {
    static constexpr bool kHeld = false;
};
template <CIMType type>
struct Holds {
    static constexpr bool kHeld = true;
    static constexpr CIMType kType = type;
};
// clang-format off
template <> struct ScalarType<Boolean> : Holds<CIMTYPE_BOOLEAN> {};
template <> struct ScalarType<Uint8> : Holds<CIMTYPE_UINT8> {};
template <> struct ScalarType<Sint8> : Holds<CIMTYPE_SINT8> {};
template <> struct ScalarType<Uint16> : Holds<CIMTYPE_UINT16> {};
template <> struct ScalarType<Sint16> : Holds<CIMTYPE_SINT16> {};
template <> struct ScalarType<Uint32> : Holds<CIMTYPE_UINT32> {};
template <> struct ScalarType<Sint32> : Holds<CIMTYPE_SINT32> {};
template <> struct ScalarType<Uint64> : Holds<CIMTYPE_UINT64> {};
template <> struct ScalarType<Sint64> : Holds<CIMTYPE_SINT64> {};
template <> struct ScalarType<Real32> : Holds<CIMTYPE_REAL32> {};
template <> struct ScalarType<Real64> : Holds<CIMTYPE_REAL64> {};
template <> struct ScalarType<Char16> : Holds<CIMTYPE_CHAR16> {};
template <> struct ScalarType<String> : Holds<CIMTYPE_STRING> {};
template <> struct ScalarType<CIMDateTime> : Holds<CIMTYPE_DATETIME> {};
template <> struct ScalarType<CIMObjectPath> : Holds<CIMTYPE_REFERENCE> {};
template <> struct ScalarType<CIMObject> : Holds<CIMTYPE_OBJECT> {};
template <> struct ScalarType<CIMInstance> : Holds<CIMTYPE_INSTANCE> {};
// clang-format on

template <class T>
struct ValueType : ScalarType<T> {
    static constexpr bool kIsArray = false;
};
template <class T>
struct ValueType<Array<T>> : ScalarType<T> {
    using Element = T;
    static constexpr bool kIsArray = true;
};

/// A boolean, number or character, whose type its owner knows.
class PlainScalar {
  public:
    template <class T>
    explicit PlainScalar(T scalar) noexcept {
        std::memcpy(bytes_, &scalar, sizeof scalar);
    }
    template <class T>
    T as() const noexcept {
        T scalar{};
        std::memcpy(&scalar, bytes_, sizeof scalar);
        return scalar;
    }

  private:
    alignas(Uint64) unsigned char bytes_[sizeof(Uint64)] = {};
};

/// What a scalar is kept as.
template <class T>
using KeptAs = std::conditional_t<std::is_trivially_copyable_v<T>, PlainScalar, T>;

/// The content of an array value, of whatever type.
class ArrayContent : public RefCounted {
  public:
    virtual Uint32 size() const noexcept = 0;
    /// Whether the element is null; the index must be within the array.
    virtual Boolean isNull(Uint32 index) const = 0;
};

/// The elements of an array value.
template <class T>
struct ArrayOf : ArrayContent {
    explicit ArrayOf(Array<T> itsItems) : items(std::move(itsItems)) {}

    Uint32 size() const noexcept override { return items.size(); }
    Boolean isNull([[maybe_unused]] Uint32 index) const override {
        if constexpr (std::is_same_v<T, CIMObject> || std::is_same_v<T, CIMInstance>) {
            return items[index].isUninitialized();
        } else {
            return false;
        }
    }

    const Array<T> items;
};

/// The elements of an array value some of which are null.
template <class T>
struct ArrayWithNulls final : ArrayOf<T> {
    ArrayWithNulls(Array<T> itsItems, const Array<Boolean>& itsNulls)
        : ArrayOf<T>(cleared(std::move(itsItems), itsNulls)), nulls(itsNulls.begin(), itsNulls.end()) {}

    Boolean isNull(Uint32 index) const override {
        return (index < nulls.size() && nulls[index]) || ArrayOf<T>::isNull(index);
    }

    static Array<T> cleared(Array<T> itsItems, const Array<Boolean>& itsNulls) {
        for (Uint32 i = 0; i < itsNulls.size(); ++i) {
            if (itsNulls[i]) {
                itsItems[i] = T();
            }
        }
        return itsItems;
    }

    const std::vector<bool> nulls; // elements beyond its end are not null
};

[[noreturn]] void throwTypeMismatch(CIMType type, Boolean isArray, CIMType askedType, Boolean askedArray);

} // namespace detail

/// A value of one CIM type, scalar or array, or the null of that type. Copies are independent: changing one does not
/// change the original.
class CIMValue {
  public:
    /// The null boolean.
    CIMValue() noexcept = default;
    /// The null of a type. The size is that of a fixed array and has no effect on a null.
    CIMValue(CIMType type, Boolean isArray, Uint32 size = 0) noexcept;
    /// From Boolean, the number types, Char16, String, CIMDateTime, CIMObjectPath, CIMObject, CIMInstance, or an Array
    /// of one of them. A text needs String(...) around it.
    template <class T, class = std::enable_if_t<detail::ValueType<std::decay_t<T>>::kHeld>>
    CIMValue(T&& value)
        : content_(contentOf(std::forward<T>(value))),
          type_(detail::ValueType<std::decay_t<T>>::kType),
          isArray_(detail::ValueType<std::decay_t<T>>::kIsArray) {}
    /// An array whose elements are null where `nulls` is true; `nulls` may be shorter than the array. Throws
    /// IndexOutOfBoundsException for a null beyond the end of the array.
    template <class T>
    CIMValue(Array<T> items, const Array<Boolean>& nulls)
        : content_(ArrayHandle::make<detail::ArrayWithNulls<T>>(std::move(items), nulls)),
          type_(detail::ValueType<T>::kType),
          isArray_(true) {}

    CIMType getType() const noexcept { return type_; }
    Boolean isArray() const noexcept { return isArray_; }
    Boolean isNull() const noexcept { return std::holds_alternative<std::monostate>(content_); }
    /// The number of elements; 0 for a null and for a scalar.
    Uint32 getArraySize() const;
    /// Whether an element of an array is null, or is an uninitialised object. Throws IndexOutOfBoundsException for an
    /// index that is not below getArraySize().
    Boolean isNullElement(Uint32 index) const;

    /// Copies the content to `value`. A null leaves `value` as it is, so initialise it; a null element of an array is
    /// T(). Throws TypeMismatchException when T is not the C++ type of this value, array or scalar.
    template <class T>
    void get(T& value) const {
        using Type = detail::ValueType<T>;
        static_assert(Type::kHeld, "no CIM type is held in this C++ type");
        if (type_ != Type::kType || isArray_ != Type::kIsArray) {
            detail::throwTypeMismatch(type_, isArray_, Type::kType, Type::kIsArray);
        }
        if (isNull()) {
            return;
        }
        if constexpr (Type::kIsArray) {
            value = static_cast<const detail::ArrayOf<typename Type::Element>&>(*std::get<ArrayHandle>(content_)).items;
        } else if constexpr (std::is_same_v<detail::KeptAs<T>, detail::PlainScalar>) {
            value = std::get<detail::PlainScalar>(content_).as<T>();
        } else {
            value = std::get<T>(content_);
        }
    }

    /// Takes over type and content of `value`.
    template <class T>
    void set(const T& value) {
        static_assert(detail::ValueType<T>::kHeld, "no CIM type is held in this C++ type");
        *this = CIMValue(value);
    }

    void assign(const CIMValue& value) { *this = value; }
    /// Makes it the null boolean.
    void clear() noexcept { *this = CIMValue(); }
    /// Whether both are of one type, and both arrays or both scalars.
    Boolean typeCompatible(const CIMValue& other) const noexcept {
        return type_ == other.type_ && isArray_ == other.isArray_;
    }

    void setNullValue(CIMType type, Boolean isArray, Uint32 size = 0) noexcept {
        *this = CIMValue(type, isArray, size);
    }

    /// False when the types differ, or only one is an array; two nulls of one type are equal; a null equals nothing
    /// else. The elements of arrays are compared likewise.
    Boolean equal(const CIMValue& other) const;

    /// The content as text: TRUE and FALSE, integers in base 10, reals as "%.7e" and "%.16e" write them, embedded
    /// objects as CIM-XML. Each element of an array is followed by a blank, a null one is NULL. Empty for a null.
    String toString() const;

    friend bool operator==(const CIMValue& a, const CIMValue& b) { return a.equal(b); }
    friend bool operator!=(const CIMValue& a, const CIMValue& b) { return !a.equal(b); }

  private:
    using ArrayHandle = detail::Handle<detail::ArrayContent>;
    // Each alternative fits into eight bytes, and there are few; values are by far the most frequent objects.
    using Content = std::variant<std::monostate, detail::PlainScalar, String, CIMDateTime, CIMObjectPath, CIMObject,
                                 CIMInstance, ArrayHandle>;

    template <class T>
    static Content contentOf(T&& value) {
        using Type = detail::ValueType<std::decay_t<T>>;
        if constexpr (Type::kIsArray) {
            return Content(ArrayHandle::make<detail::ArrayOf<typename Type::Element>>(std::forward<T>(value)));
        } else {
            return Content(std::in_place_type<detail::KeptAs<std::decay_t<T>>>, std::forward<T>(value));
        }
    }

    Content content_;
    CIMType type_ = CIMTYPE_BOOLEAN;
    Boolean isArray_ = false;
};

} // namespace bundled
} // namespace Pegasus
