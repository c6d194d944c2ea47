#pragma once

#include <Pegasus/Common/String.h>

namespace Pegasus {
inline namespace bundled {

/// The name of a class, property, method, parameter, qualifier or key; null by default. Names are compared without
/// regard to the case of the letters A to Z.
class CIMName {
  public:
    CIMName() noexcept = default;
    /// Throws InvalidNameException for an illegal name, the empty one included.
    CIMName(const String& name);
    CIMName(const char* name);

    const String& getString() const noexcept { return name_; }
    Boolean isNull() const noexcept { return name_.empty(); }
    void clear() noexcept { name_.clear(); }

    Boolean equal(const CIMName& other) const noexcept { return String::equalNoCase(name_, other.name_); }

    /// A letter, '_' or a character beyond ASCII, then any number of these and of digits.
    static Boolean legal(const String& name) noexcept;

    friend bool operator==(const CIMName& a, const CIMName& b) noexcept { return a.equal(b); }
    friend bool operator!=(const CIMName& a, const CIMName& b) noexcept { return !a.equal(b); }

  private:
    String name_;
};

/// The name of a namespace: names separated by '/', for example "root/cimv2"; null by default. One '/' before it is
/// taken and dropped. Compared without regard to the case of the letters A to Z.
class CIMNamespaceName {
  public:
    CIMNamespaceName() noexcept = default;
    /// Throws InvalidNamespaceNameException for an illegal name, the empty one included.
    CIMNamespaceName(const String& name);
    CIMNamespaceName(const char* name);

    const String& getString() const noexcept { return name_; }
    Boolean isNull() const noexcept { return name_.empty(); }
    void clear() noexcept { name_.clear(); }

    Boolean equal(const CIMNamespaceName& other) const noexcept { return String::equalNoCase(name_, other.name_); }

    static Boolean legal(const String& name) noexcept;

    friend bool operator==(const CIMNamespaceName& a, const CIMNamespaceName& b) noexcept { return a.equal(b); }
    friend bool operator!=(const CIMNamespaceName& a, const CIMNamespaceName& b) noexcept { return !a.equal(b); }

  private:
    String name_;
};

} // namespace bundled
} // namespace Pegasus
