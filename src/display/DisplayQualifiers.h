#pragma once

#include <boost/shared_ptr.hpp>

#include <optional>
#include <string>
#include <vector>

namespace NQORVYX20 {

class ICIMPropertyDecl;
class ICIMQualifier;
class TCIMValue;

/// A property declaration's qualifiers as the display of values reads them: a qualifier that is absent or null, or that
/// has another type than the one asked for, has nothing to say. Every operation throws TVYXException with the code of a
/// lookup that failed for another reason than absence.
class DisplayQualifiers {
  public:
    /// A qualifier's name, normalised once for all look-ups.
    class TName {
      public:
        explicit TName(const char* name);
        const std::string& Given() const { return given_; }
        const std::string& Normalized() const { return normalized_; }

      private:
        std::string given_;
        std::string normalized_;
    };

    /// Finds a declaration's qualifier by its normalised name; an empty pointer when there is none.
    using TLookup = boost::shared_ptr<ICIMQualifier> (*)(const ICIMPropertyDecl& declaration,
                                                         const std::string& normalizedName);

    /// Looks qualifiers up in the declaration with `lookup`, which needs no exception to say that there is none, or
    /// through the declaration's interface when it is null.
    DisplayQualifiers(boost::shared_ptr<ICIMPropertyDecl const> declaration, TLookup lookup);

    /// True for a qualifier that is there and not null, whatever its type and value.
    bool Has(const TName& name) const;
    std::optional<std::string> GetString(const TName& name) const;
    std::optional<unsigned char> GetUint8(const TName& name) const;

    /// The texts of an array's elements, numbers in base 10. Any element type will do.
    std::optional<std::vector<std::string>> GetTexts(const TName& name) const;

  private:
    /// The qualifier, or an empty pointer when it is absent or its value is null.
    boost::shared_ptr<ICIMQualifier> Find(const TName& name) const;
    boost::shared_ptr<ICIMQualifier> LookUp(const TName& name) const;

    boost::shared_ptr<ICIMPropertyDecl const> declaration_;
    TLookup lookup_;
};

} // namespace NQORVYX20
