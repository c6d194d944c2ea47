#pragma once

#include <boost/shared_ptr.hpp>

#include <optional>
#include <string>
#include <vector>

#include "host/TCIMValue.h"

namespace NQORVYX20 {

class ICIMPropertyDecl;

/// A property declaration's qualifiers as the display of values reads them: a qualifier that is absent or null, or that
/// has another type than the one asked for, has nothing to say. Every operation throws TVYXException with the code of a
/// lookup that failed for another reason than absence.
class DisplayQualifiers {
  public:
    explicit DisplayQualifiers(boost::shared_ptr<ICIMPropertyDecl const> declaration);

    /// True for a qualifier that is there and not null, whatever its type and value.
    bool Has(const std::string& name) const;
    std::optional<std::string> GetString(const std::string& name) const;
    std::optional<unsigned char> GetUint8(const std::string& name) const;

    /// The texts of an array's elements, numbers in base 10. Any element type will do.
    std::optional<std::vector<std::string>> GetTexts(const std::string& name) const;

  private:
    /// The qualifier's value, null when it is absent.
    TCIMValue Find(const std::string& name) const;

    boost::shared_ptr<ICIMPropertyDecl const> fDeclaration;
};

} // namespace NQORVYX20
