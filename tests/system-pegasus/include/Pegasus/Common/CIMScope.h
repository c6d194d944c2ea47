#pragma once

#include <Pegasus/Common/String.h>

namespace Pegasus {

class CIMScope {
  public:
    static const CIMScope NONE;
    static const CIMScope CLASS;
    static const CIMScope ASSOCIATION;
    static const CIMScope INDICATION;
    static const CIMScope PROPERTY;
    static const CIMScope REFERENCE;
    static const CIMScope METHOD;
    static const CIMScope PARAMETER;
    static const CIMScope ANY;

    CIMScope();
    CIMScope(const CIMScope& other);
    CIMScope& operator=(const CIMScope& other);

    void addScope(const CIMScope& scope);
    Boolean hasScope(const CIMScope& scope) const;
    Boolean equal(const CIMScope& scope) const;
    String toString() const;

  private:
    Uint32 bits_;
};

CIMScope operator+(const CIMScope& a, const CIMScope& b);

} // namespace Pegasus
