#pragma once

#include <Pegasus/Common/Array.h>
#include <Pegasus/Common/CIMDateTime.h>
#include <Pegasus/Common/CIMInstance.h>
#include <Pegasus/Common/CIMObject.h>
#include <Pegasus/Common/CIMObjectPath.h>
#include <Pegasus/Common/CIMType.h>
#include <Pegasus/Common/Char16.h>
#include <Pegasus/Common/String.h>

namespace Pegasus {

class CIMValue {
  public:
    CIMValue();
    CIMValue(const CIMValue& other);
    CIMValue(CIMType type, Boolean isArray, Uint32 size = 0);
    CIMValue(Boolean value);
    CIMValue(Uint8 value);
    CIMValue(Sint8 value);
    CIMValue(Uint16 value);
    CIMValue(Sint16 value);
    CIMValue(Uint32 value);
    CIMValue(Sint32 value);
    CIMValue(Uint64 value);
    CIMValue(Sint64 value);
    CIMValue(Real32 value);
    CIMValue(Real64 value);
    CIMValue(const Char16& value);
    CIMValue(const String& value);
    CIMValue(const CIMDateTime& value);
    CIMValue(const CIMObjectPath& value);
    CIMValue(const CIMObject& value);
    CIMValue(const CIMInstance& value);
    CIMValue(const Array<Boolean>& value);
    CIMValue(const Array<Uint8>& value);
    CIMValue(const Array<Sint8>& value);
    CIMValue(const Array<Uint16>& value);
    CIMValue(const Array<Sint16>& value);
    CIMValue(const Array<Uint32>& value);
    CIMValue(const Array<Sint32>& value);
    CIMValue(const Array<Uint64>& value);
    CIMValue(const Array<Sint64>& value);
    CIMValue(const Array<Real32>& value);
    CIMValue(const Array<Real64>& value);
    CIMValue(const Array<Char16>& value);
    CIMValue(const Array<String>& value);
    CIMValue(const Array<CIMDateTime>& value);
    CIMValue(const Array<CIMObjectPath>& value);
    CIMValue(const Array<CIMObject>& value);
    CIMValue(const Array<CIMInstance>& value);
    /// An installed library makes a boolean of it, which nobody means.
    CIMValue(const char* text) = delete;
    ~CIMValue();
    CIMValue& operator=(const CIMValue& other);

    CIMType getType() const;
    Boolean isArray() const;
    Boolean isNull() const;
    Uint32 getArraySize() const;
    Boolean typeCompatible(const CIMValue& other) const;
    Boolean equal(const CIMValue& other) const;
    String toString() const;

    void get(Boolean& value) const;
    void get(Uint8& value) const;
    void get(Sint8& value) const;
    void get(Uint16& value) const;
    void get(Sint16& value) const;
    void get(Uint32& value) const;
    void get(Sint32& value) const;
    void get(Uint64& value) const;
    void get(Sint64& value) const;
    void get(Real32& value) const;
    void get(Real64& value) const;
    void get(Char16& value) const;
    void get(String& value) const;
    void get(CIMDateTime& value) const;
    void get(CIMObjectPath& value) const;
    void get(CIMObject& value) const;
    void get(CIMInstance& value) const;
    void get(Array<Boolean>& value) const;
    void get(Array<Uint8>& value) const;
    void get(Array<Sint8>& value) const;
    void get(Array<Uint16>& value) const;
    void get(Array<Sint16>& value) const;
    void get(Array<Uint32>& value) const;
    void get(Array<Sint32>& value) const;
    void get(Array<Uint64>& value) const;
    void get(Array<Sint64>& value) const;
    void get(Array<Real32>& value) const;
    void get(Array<Real64>& value) const;
    void get(Array<Char16>& value) const;
    void get(Array<String>& value) const;
    void get(Array<CIMDateTime>& value) const;
    void get(Array<CIMObjectPath>& value) const;
    void get(Array<CIMObject>& value) const;
    void get(Array<CIMInstance>& value) const;

    void set(const Boolean& value);
    void set(const Uint8& value);
    void set(const Sint8& value);
    void set(const Uint16& value);
    void set(const Sint16& value);
    void set(const Uint32& value);
    void set(const Sint32& value);
    void set(const Uint64& value);
    void set(const Sint64& value);
    void set(const Real32& value);
    void set(const Real64& value);
    void set(const Char16& value);
    void set(const String& value);
    void set(const CIMDateTime& value);
    void set(const CIMObjectPath& value);
    void set(const CIMObject& value);
    void set(const CIMInstance& value);
    void set(const Array<Boolean>& value);
    void set(const Array<Uint8>& value);
    void set(const Array<Sint8>& value);
    void set(const Array<Uint16>& value);
    void set(const Array<Sint16>& value);
    void set(const Array<Uint32>& value);
    void set(const Array<Sint32>& value);
    void set(const Array<Uint64>& value);
    void set(const Array<Sint64>& value);
    void set(const Array<Real32>& value);
    void set(const Array<Real64>& value);
    void set(const Array<Char16>& value);
    void set(const Array<String>& value);
    void set(const Array<CIMDateTime>& value);
    void set(const Array<CIMObjectPath>& value);
    void set(const Array<CIMObject>& value);
    void set(const Array<CIMInstance>& value);
    void assign(const CIMValue& value);
    void setNullValue(CIMType type, Boolean isArray, Uint32 size = 0);
    void clear();

  private:
    void* rep_;
};

Boolean operator==(const CIMValue& a, const CIMValue& b);
Boolean operator!=(const CIMValue& a, const CIMValue& b);

} // namespace Pegasus
