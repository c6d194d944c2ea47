#pragma once

#include "HostTypes.h"
#include "output/PropertySelector.h"
#include "output/ValueTexts.h"
#include "table/Column.h"

#include <boost/shared_ptr.hpp>

#include <string>
#include <utility>
#include <vector>

namespace cimhttp {

/// Writes instances as records of CSV, a property each: the instance's path, the property, its type, its value as it
/// is, and the text that it is shown by. An array's value is a JSON array, so that it can be taken apart again.
class InstanceCsv {
  public:
    /// About `nameSpace` see PathOf(). With `isShown`, for a terminal, which the texts must not steer. Each record has
    /// the fields `first` before its own.
    InstanceCsv(PropertySelector selector, const ValueTexts& texts, std::string nameSpace, bool isShown,
                std::string first = {})
        : selector_(std::move(selector)),
          texts_(texts),
          nameSpace_(std::move(nameSpace)),
          isShown_(isShown),
          first_(std::move(first)) {}

    /// Without those of `first`.
    static std::vector<Column> Columns() { return {{"Path"}, {"Property"}, {"Type"}, {"Value"}, {"Text"}}; }

    void Append(const NQORVYX20::ICIMInstance& instance, std::string& csv);

  private:
    struct Field {
        std::string name;
        std::string text; ///< name and type, with the commas around them
    };

    const std::vector<Field>& FieldsOf(const NQORVYX20::ICIMInstance& instance);
    void AppendValue(const NQORVYX20::TCIMValue& value, std::string& csv) const;

    PropertySelector selector_;
    const ValueTexts texts_;
    const std::string nameSpace_;
    const bool isShown_;
    const std::string first_;
    boost::shared_ptr<NQORVYX20::ICIMClass> lastClass_; // whose fields are held, since most instances have one class
    std::vector<Field> fields_;
};

} // namespace cimhttp
