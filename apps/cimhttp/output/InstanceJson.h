#pragma once

#include <boost/shared_ptr.hpp>

#include <string>
#include <vector>

namespace NQORVYX20 {
class ICIMInstance;
class ICIMPropertyDecl;
} // namespace NQORVYX20

namespace cimhttp {

class PluginAccess;

/// Writes the instances of a class, each in one line of JSON, with these properties in their order:
///
///     {"path":"CIM_Fan.Name=\"a\"","properties":{"Speed":{"type":"uint64","value":3,"text":"3"}}}
///
/// A `value` is that of JsonValue(). `text` is what the value says to people, an array of texts for an array that is
/// not null. An array's `type` is that of its elements.
class InstanceJson {
  public:
    /// `access` must outlive the object.
    InstanceJson(const std::vector<boost::shared_ptr<NQORVYX20::ICIMPropertyDecl>>& properties,
                 const PluginAccess& access);

    void Append(const NQORVYX20::ICIMInstance& instance, std::string& json) const;

  private:
    struct Member {
        std::string name;
        std::string head; ///< what all instances have in common: all up to the value
    };

    std::vector<Member> members_;
    const PluginAccess& access_;
};

} // namespace cimhttp
