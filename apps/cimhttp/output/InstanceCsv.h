#pragma once

#include "HostTypes.h"
#include "output/PropertySelector.h"
#include "output/SelectedValues.h"
#include "output/ShownValue.h"
#include "output/ValueTexts.h"
#include "table/Column.h"
#include "text/TextBuffer.h"

#include <cstddef>
#include <string>
#include <vector>

namespace cimhttp {

/// Writes instances as records of CSV, a property each: the instance's path, the property, its type, its value as it
/// is, and the text that it is shown by. An array's value is a JSON array, so that it can be taken apart again.
class InstanceCsv {
  public:
    /// About `nameSpace` see PathOf(). With `isShown`, for a terminal, which the texts must not steer. Each record has
    /// the fields `first` before its own.
    InstanceCsv(PropertySelector selector, const ValueTexts& texts, std::string nameSpace, bool isShown,
                std::string first = {});

    /// Without those of `first`.
    static std::vector<Column> Columns() { return {{"Path"}, {"Property"}, {"Type"}, {"Value"}, {"Text"}}; }

    void Append(NQORVYX20::ICIMInstance& instance, TextBuffer& csv);

  private:
    /// What all instances of a class have in common in a property.
    struct Field {
        std::string head; ///< name and type, with the commas around them
        bool showsAsItIs; ///< see PluginAccess
    };

    void PrepareClass();
    void AppendRecord(const NQORVYX20::ICIMInstance& instance, std::size_t place, const NQORVYX20::TCIMValue& value,
                      TextBuffer& csv);
    void AppendValue(const NQORVYX20::TCIMValue& value, TextBuffer& csv);

    SelectedValues values_;
    ShownValue shown_;
    const std::string nameSpace_;
    const bool isShown_;
    const std::string first_;
    TextBuffer begin_; // of the records of the instance at hand
    std::vector<Field> fields_;
    TextBuffer json_; // of an array
};

} // namespace cimhttp
