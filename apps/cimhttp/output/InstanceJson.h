#pragma once

#include "host/TCIMValue.h"
#include "output/PropertySelector.h"
#include "output/SelectedValues.h"
#include "output/ShownValue.h"
#include "output/ValueTexts.h"

#include <cstddef>
#include <string>
#include <vector>

namespace cimhttp {

class TextBuffer;

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
    InstanceJson(PropertySelector selector, const ValueTexts& texts, std::string nameSpace = {});

    void Append(NQORVYX20::ICIMInstance& instance, TextBuffer& json);

    /// Without the braces around it.
    void AppendMembers(NQORVYX20::ICIMInstance& instance, TextBuffer& json);

  private:
    /// What all instances of a class have in common in a property.
    struct Member {
        std::string head; ///< all up to the value
        bool showsAsItIs; ///< see PluginAccess
    };

    void PrepareClass();
    void AppendProperty(const NQORVYX20::ICIMInstance& instance, std::size_t place, const NQORVYX20::TCIMValue& value,
                        TextBuffer& json);

    /// The member `object`, where the value is one.
    void AppendObjects(const NQORVYX20::ICIMInstance& instance, const std::string& property,
                       const NQORVYX20::TCIMValue& value, TextBuffer& json) const;

    SelectedValues values_;
    ShownValue shown_;
    std::string nameSpace_;
    std::string classJson_;
    std::vector<Member> members_;
    bool hasObjects_ = false; // the instance at hand
};

} // namespace cimhttp
