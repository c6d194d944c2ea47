#pragma once

#include <Pegasus/Common/Array.h>
#include <Pegasus/Common/CIMName.h>
#include <Pegasus/Common/Handle.h>

#include <utility>

namespace Pegasus {
inline namespace bundled {

/// One key of an object path: a name and the value's text.
class CIMKeyBinding {
  public:
    enum Type { BOOLEAN, STRING, NUMERIC, REFERENCE };

    CIMKeyBinding() noexcept = default;
    /// The name is null for the only key of a path that does not name it. The value of a REFERENCE is the text form of
    /// an object path.
    CIMKeyBinding(CIMName name, String value, Type type)
        : name_(std::move(name)), value_(std::move(value)), type_(type) {}

    const CIMName& getName() const noexcept { return name_; }
    const String& getValue() const noexcept { return value_; }
    Type getType() const noexcept { return type_; }

    Boolean equal(const CIMKeyBinding& other) const { return *this == other; }
    /// Whether name, type and value agree: numbers by value where they are integers, booleans without regard to case,
    /// references as paths.
    friend bool operator==(const CIMKeyBinding& a, const CIMKeyBinding& b);
    friend bool operator!=(const CIMKeyBinding& a, const CIMKeyBinding& b) { return !(a == b); }

  private:
    CIMName name_;
    String value_;
    Type type_ = STRING;
};

/// The path of an object: host, namespace, class and keys, each of which may be absent. The key bindings are kept
/// sorted by name without regard to case.
class CIMObjectPath {
  public:
    CIMObjectPath() noexcept = default;
    CIMObjectPath(String host, CIMNamespaceName nameSpace, CIMName className,
                  Array<CIMKeyBinding> keyBindings = Array<CIMKeyBinding>());
    /// From the text form that toString() writes. A quoted value is taken for a reference when it is itself the text
    /// form of a path with keys. Throws MalformedObjectNameException.
    CIMObjectPath(const String& text);
    CIMObjectPath(const char* text);

    const String& getHost() const noexcept;
    const CIMNamespaceName& getNameSpace() const noexcept;
    const CIMName& getClassName() const noexcept;
    const Array<CIMKeyBinding>& getKeyBindings() const noexcept;

    /// Makes it the empty path.
    void clear() noexcept { *this = CIMObjectPath(); }
    /// As the constructors.
    void set(const String& text) { *this = CIMObjectPath(text); }
    void set(const String& host, const CIMNamespaceName& nameSpace, const CIMName& className,
             const Array<CIMKeyBinding>& keyBindings = Array<CIMKeyBinding>()) {
        *this = CIMObjectPath(host, nameSpace, className, keyBindings);
    }
    void setHost(const String& host);
    void setNameSpace(const CIMNamespaceName& nameSpace);
    void setClassName(const CIMName& className);
    void setKeyBindings(const Array<CIMKeyBinding>& keyBindings);

    /// A hash: paths that are identical have the same.
    Uint32 makeHashCode() const;

    /// "//host/namespace:Class.Key1=\"text\",Key2=3", with host and namespace only where present; texts and references
    /// in quotes, with '\' before '"' and '\' in them; numbers and booleans bare.
    String toString() const;

    /// Whether all parts agree: host, names without regard to case, and the keys.
    Boolean identical(const CIMObjectPath& other) const;

    friend bool operator==(const CIMObjectPath& a, const CIMObjectPath& b) { return a.identical(b); }
    friend bool operator!=(const CIMObjectPath& a, const CIMObjectPath& b) { return !a.identical(b); }

  private:
    struct Rep;
    const Rep& rep() const noexcept;

    detail::Handle<Rep> rep_; // none for the empty path
};

} // namespace bundled
} // namespace Pegasus
