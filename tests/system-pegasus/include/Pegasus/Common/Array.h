#pragma once

#include <Pegasus/Common/Config.h>

namespace Pegasus {

class Char16;
class CIMClass;
class CIMDateTime;
class CIMInstance;
class CIMKeyBinding;
class CIMName;
class CIMObject;
class CIMObjectPath;
class CIMQualifierDecl;
class String;

namespace standin {

template <class T, class... Types>
struct IsOneOf;
template <class T>
struct IsOneOf<T> {
    static constexpr bool value = false;
};
template <class T, class... Others>
struct IsOneOf<T, T, Others...> {
    static constexpr bool value = true;
};
template <class T, class First, class... Others>
struct IsOneOf<T, First, Others...> : IsOneOf<T, Others...> {};

} // namespace standin

/// Of the API's own types, which are all that an installed library has arrays of. There is no begin() and no end().
template <class T>
class Array {
    static_assert(standin::IsOneOf<T, Boolean, Uint8, Sint8, Uint16, Sint16, Uint32, Sint32, Uint64, Sint64, Real32,
                                   Real64, Char16, String, CIMDateTime, CIMObjectPath, CIMObject, CIMInstance, CIMClass,
                                   CIMName, CIMKeyBinding, CIMQualifierDecl>::value,
                  "an installed library has no arrays of this type");

  public:
    Array();
    Array(const Array& other);
    explicit Array(Uint32 size);
    ~Array();
    Array& operator=(const Array& other);

    Uint32 size() const;
    const T* getData() const;
    T& operator[](Uint32 index);
    const T& operator[](Uint32 index) const;
    void append(const T& item);
    void clear();
    void reserveCapacity(Uint32 capacity);
    void swap(Array& other);

  private:
    void* rep_;
};

} // namespace Pegasus
