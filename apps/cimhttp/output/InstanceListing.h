#pragma once

#include <boost/shared_ptr.hpp>

#include <string>
#include <vector>

#include "output/Listing.h"

namespace NQORVYX20 {
class ICIMClass;
class ICIMInstance;
class ICIMProperty;
class ICIMPropertyDecl;
} // namespace NQORVYX20

namespace cimhttp {

class PluginAccess;

using Instances = std::vector<boost::shared_ptr<NQORVYX20::ICIMInstance>>;

/// The declarations of a class's properties, keys first.
std::vector<boost::shared_ptr<NQORVYX20::ICIMPropertyDecl>> PropertiesOf(const NQORVYX20::ICIMClass& cls);

/// The declarations of these properties in the order of the names. Throws Failure(kUsage) for one that the class does
/// not have.
std::vector<boost::shared_ptr<NQORVYX20::ICIMPropertyDecl>> PropertiesOf(const NQORVYX20::ICIMClass& cls,
                                                                         const std::vector<std::string>& names);

std::vector<std::string> NamesOf(const std::vector<boost::shared_ptr<NQORVYX20::ICIMPropertyDecl>>& properties);

/// Turns instances of one class into listings and texts.
class InstanceListing {
  public:
    /// Values are shown as people read them, or with `is_raw` as they are.
    InstanceListing(const PluginAccess& access, bool is_raw) : access_(access), is_raw_(is_raw) {}

    /// An instance a row, a property a column.
    Listing Table(const Instances& instances,
                  const std::vector<boost::shared_ptr<NQORVYX20::ICIMPropertyDecl>>& properties) const;

    /// A property a row: the instance's path, the property, type, value and text.
    Listing Values(const Instances& instances,
                   const std::vector<boost::shared_ptr<NQORVYX20::ICIMPropertyDecl>>& properties) const;

    /// The same for one instance, without its path.
    Listing Values(NQORVYX20::ICIMInstance& instance,
                   const std::vector<boost::shared_ptr<NQORVYX20::ICIMPropertyDecl>>& properties) const;

    /// How one value is shown.
    std::string Text(const NQORVYX20::ICIMProperty& property) const;

  private:
    Cell CellOf(NQORVYX20::ICIMInstance& instance, const std::string& property) const;

    /// Adds the property, its type, the value and its text to a row.
    void AddValue(const NQORVYX20::ICIMPropertyDecl& property, const std::string& type,
                  NQORVYX20::ICIMInstance& instance, std::vector<Cell>& row) const;

    const PluginAccess& access_;
    bool is_raw_;
};

/// Null, or a text without characters, in every instance.
bool IsEmpty(const Instances& instances, const NQORVYX20::ICIMPropertyDecl& property);

} // namespace cimhttp
