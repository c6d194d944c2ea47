#pragma once

#include <Pegasus/Common/String.h>

namespace Pegasus {

class CIMFlavor {
  public:
    static const CIMFlavor NONE;
    static const CIMFlavor OVERRIDABLE;
    static const CIMFlavor ENABLEOVERRIDE;
    static const CIMFlavor TOSUBCLASS;
    static const CIMFlavor TOINSTANCE;
    static const CIMFlavor TRANSLATABLE;
    static const CIMFlavor DISABLEOVERRIDE;
    static const CIMFlavor RESTRICTED;
    static const CIMFlavor DEFAULTS;

    CIMFlavor();
    CIMFlavor(const CIMFlavor& other);
    CIMFlavor& operator=(const CIMFlavor& other);

    void addFlavor(const CIMFlavor& flavor);
    void removeFlavor(const CIMFlavor& flavor);
    Boolean hasFlavor(const CIMFlavor& flavor) const;
    Boolean equal(const CIMFlavor& flavor) const;
    String toString() const;

  private:
    Uint32 bits_;
};

CIMFlavor operator+(const CIMFlavor& a, const CIMFlavor& b);

} // namespace Pegasus
