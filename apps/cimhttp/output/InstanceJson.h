#pragma once

#include "host/TCIMValue.h"
#include "output/PropertySelector.h"
#include "output/ValueTexts.h"

#include <boost/shared_ptr.hpp>

#include <string>
#include <vector>

namespace cimhttp {

/// Writes instances, each in one line of JSON, with the properties that are selected:
///
///     {"path":"CIM_Fan.Name=\"a\"","class":"CIM_Fan","properties":{"Speed":{"type":"uint64","value":3,"text":"3"}}}
///
/// The class is the instance's own. A `value` is that of JsonValue(). `text` is what the value says to people, an array
/// of texts for an array that is not null. An array's `type` is that of its elements. Where the value is an embedded
/// object, and so a text, or an array of them, there is a member `object`, too: one of these or, of an array, an array
/// of them, in which a null element is null; values are those of JsonValue() again.
///
///     {"class":"CIM_Setting","properties":{"Speed":3,"Next":{"class":"CIM_Setting","properties":{}}}}
class InstanceJson {
  public:
    /// About `nameSpace` see PathOf().
    InstanceJson(PropertySelector selector, const ValueTexts& texts, std::string nameSpace = {})
        : selector_(std::move(selector)), texts_(texts), nameSpace_(std::move(nameSpace)) {}

    void Append(const NQORVYX20::ICIMInstance& instance, std::string& json);

    /// Without the braces around it.
    void AppendMembers(const NQORVYX20::ICIMInstance& instance, std::string& json);

  private:
    struct Member {
        std::string name;
        std::string head; ///< what all instances of a class have in common: all up to the value
    };

    /// The member `object`, where the value is one.
    void AppendObjects(const NQORVYX20::ICIMInstance& instance, const std::string& property,
                       const NQORVYX20::TCIMValue& value, std::string& json) const;

    const std::vector<Member>& MembersOf(const NQORVYX20::ICIMInstance& instance);

    PropertySelector selector_;
    ValueTexts texts_;
    std::string nameSpace_;
    boost::shared_ptr<NQORVYX20::ICIMClass> lastClass_; // whose members are held
    std::string classJson_;
    std::vector<Member> members_;
};

} // namespace cimhttp
