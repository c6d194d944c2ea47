#pragma once

#include "cimhttp/RemoteFailure.h"
#include "host/TCIMReference.h"
#include "host/TCIMValue.h"

#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace cimhttp {

// What a server says of classes and qualifiers. The object model keeps less: its classes have no superclass, and its
// declarations no defaults, array sizes, referenced classes, and no qualifiers below the properties.

/// The flavors of a qualifier (DSP0004 5.6.1).
struct RemoteFlavor {
    bool overridable = true;
    bool toSubclass = true;
    bool translatable = false;

    friend bool operator==(const RemoteFlavor& left, const RemoteFlavor& right) {
        return left.overridable == right.overridable && left.toSubclass == right.toSubclass &&
               left.translatable == right.translatable;
    }
};

struct RemoteQualifier {
    std::string name;
    NQORVYX20::TCIMValue value;
    RemoteFlavor flavor;
};

/// The type of a property, parameter or method.
struct RemoteType {
    std::string name; ///< as in MOF, `uint16`; `string` for embedded objects
    bool isArray = false;
    unsigned arraySize = 0;     ///< 0 for an array of any size
    std::string referenceClass; ///< of a reference; empty otherwise
};

struct RemoteParameter {
    std::string name;
    RemoteType type;
    std::vector<RemoteQualifier> qualifiers;
};

struct RemoteProperty {
    std::string name;
    RemoteType type;
    NQORVYX20::TCIMValue defaultValue;
    std::string origin; ///< the class that introduced it
    bool isInherited = false;
    std::vector<RemoteQualifier> qualifiers;
};

struct RemoteMethod {
    std::string name;
    RemoteType type;
    std::string origin;
    bool isInherited = false;
    std::vector<RemoteParameter> parameters;
    std::vector<RemoteQualifier> qualifiers;
};

struct RemoteClass {
    std::string name;
    std::string superclass; ///< empty for a top class
    std::vector<RemoteQualifier> qualifiers;
    std::vector<RemoteProperty> properties;
    std::vector<RemoteMethod> methods;
};

struct RemoteClassName {
    /// To what a property of an association refers.
    struct Reference {
        std::string role; ///< the property
        std::string className;
    };

    std::string name;
    std::string superclass;                 ///< empty for a top class
    std::vector<Reference> references = {}; ///< those that the class itself declares
};

struct RemoteQualifierDeclaration {
    std::string name;
    RemoteType type;
    NQORVYX20::TCIMValue defaultValue;
    std::vector<std::string> scopes; ///< as in MOF, in lower case
    RemoteFlavor flavor;
};

/// An association with the objects that it refers to. All of them are under their paths with the namespace, and with
/// the host where that is another server than the association's.
struct RemoteLink {
    struct End {
        std::string role; ///< the property that refers to the object
        NQORVYX20::TCIMReference object;
    };

    NQORVYX20::TCIMReference association;
    std::vector<End> ends;
};

/// The server, or the way to it, failed. What it says is the client library's text.
class RemoteError : public std::runtime_error {
  public:
    explicit RemoteError(NQORVYX20::RemoteFailure failure)
        : std::runtime_error(failure.text), failure_(std::move(failure)) {}

    const NQORVYX20::RemoteFailure& Failure() const { return failure_; }

  private:
    NQORVYX20::RemoteFailure failure_;
};

} // namespace cimhttp
