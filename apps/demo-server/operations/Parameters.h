#pragma once

#include "schema/Value.h"
#include "wire/CimRequest.h"
#include "wire/CimXmlWriter.h"

#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace demo {

/// What a parameter of an intrinsic method holds, and so which element it is in.
enum class ParameterKind { kFlag, kText, kNumber, kClassName, kInstanceName, kObjectName, kPropertyList };

/// A parameter as DSP0200 declares it for a method.
struct ParameterDeclaration {
    std::string_view name;
    ParameterKind kind = ParameterKind::kText;
    bool isRequired = false;
    /// The value of a flag that the request leaves out.
    bool flagDefault = false;
};

using ParameterDeclarations = std::vector<ParameterDeclaration>;

constexpr ParameterDeclaration RequiredParameter(std::string_view name, ParameterKind kind) {
    return {name, kind, true, false};
}
constexpr ParameterDeclaration OptionalParameter(std::string_view name, ParameterKind kind) {
    return {name, kind, false, false};
}
constexpr ParameterDeclaration FlagParameter(std::string_view name, bool otherwise) {
    return {name, ParameterKind::kFlag, false, otherwise};
}

/// The parameters of one request, checked against the declarations of its method. The accessors take names that are
/// declared, with their kind.
class Parameters {
  public:
    /// Throws CimError kInvalidParameter when a parameter is missing, appears twice, is unknown to the method or holds
    /// what its declaration does not allow. Both arguments must outlive the object.
    Parameters(const CimRequest& request, const ParameterDeclarations& declarations);

    bool Flag(std::string_view name) const;

    /// A whole number of 32 bits; nothing for null.
    std::optional<std::uint32_t> Number(std::string_view name) const;

    /// A text or the name of a class; empty for null.
    std::string Name(std::string_view name) const;

    /// A required parameter: the path of an instance or, where the method takes one, the name of a class.
    const ObjectPath& Object(std::string_view name) const;

    /// Whether the parameter is a class name, for those that can be an instance name as well.
    bool IsClassName(std::string_view name) const;

    /// What the parameters LocalOnly, IncludeQualifiers, IncludeClassOrigin and PropertyList say, as far as the method
    /// has them.
    Selection GetSelection() const;

  private:
    struct Entry {
        const ParameterDeclaration* declaration = nullptr;
        /// Null if the request does not have it.
        const RequestParameter* parameter = nullptr;
    };

    void Take(const RequestParameter& parameter, const std::string& method);
    /// Null if the parameter is null.
    const RequestParameter* Find(std::string_view name) const;
    bool FlagIfDeclared(std::string_view name) const;

    std::map<std::string, Entry, NameLess> entries_;
};

} // namespace demo
