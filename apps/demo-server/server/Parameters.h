#pragma once

#include "schema/Names.h"
#include "wire/CimRequest.h"

#include <initializer_list>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>

namespace demo {

/// The parameters of one intrinsic method, with their types. Every member throws CimError kInvalidParameter where the
/// request does not have what the method takes.
class Parameters {
  public:
    /// Refuses parameters that the method does not have, and those that appear twice.
    Parameters(const CimRequest& request, std::initializer_list<std::string_view> known);

    bool Flag(std::string_view name, bool otherwise) const;

    /// A class name; nothing for null.
    std::optional<std::string> ClassName(std::string_view name) const;
    std::string RequiredClassName(std::string_view name) const;

    std::string RequiredText(std::string_view name) const;

    /// A property list; nothing for null, which is no restriction.
    std::optional<std::set<std::string, NameLess>> PropertyList(std::string_view name) const;

  private:
    /// The parameter, null if it is absent or null; of one of the kinds of CIM-XML otherwise.
    const RequestParameter* Find(std::string_view name, std::string_view kind) const;

    std::map<std::string, const RequestParameter*, NameLess> parameters_;
};

} // namespace demo
