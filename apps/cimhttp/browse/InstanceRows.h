#pragma once

#include "HostTypes.h"
#include "output/InstanceProperties.h"
#include "output/SelectedValues.h"
#include "output/ShownValue.h"
#include "output/ValueTexts.h"
#include "text/TextBuffer.h"

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace cimhttp {

/// Instances as rows of a table for a script, in JSON:
///
///     {"path":"CIM_Fan.Name=\"a\"","class":"CIM_Fan","cells":["a",["3 rpm","3"],null,0]}
///
/// A cell is a text where the value and its text for people are alike; otherwise both; null for null without a text; 0
/// where the instance's class has no such property, as also at the end of the row. The elements of an array stand in
/// one text.
class InstanceRows {
  public:
    /// The properties with these names, or all without names. Columns are those that `cls` declares, keys first, and
    /// then those of the instances' own classes.
    InstanceRows(const NQORVYX20::ICIMClass& cls, std::vector<std::string> names, const ValueTexts& texts);

    /// Appends instances to the rows.
    void Append(const Instances& instances);

    /// The rows since the last call, as an array, and how many bytes they take so far.
    std::string Take();
    std::size_t Size() const { return rows_.Size(); }
    std::size_t Count() const { return count_; }

    /// The columns as an array, where there are more than at the last call:
    ///
    ///     {"name":"Speed","type":"uint64","array":false,"key":false,"number":true,"counter":false,"unit":"°C","times":0.01}
    ///
    /// `number`: values stand for themselves; `times`: how many of the unit the number 1 is.
    std::optional<std::string> TakeColumns();

  private:
    using Declaration = boost::shared_ptr<NQORVYX20::ICIMPropertyDecl const>;

    void PrepareClass();
    std::size_t ColumnOf(const Declaration& declaration);
    void AppendRow(NQORVYX20::ICIMInstance& instance);
    std::string CellOf(const NQORVYX20::ICIMInstance& instance, const Declaration& declaration,
                       const NQORVYX20::TCIMValue& value);
    void NoteUnit(const NQORVYX20::ICIMInstance& instance, std::size_t column, const Declaration& declaration,
                  const NQORVYX20::TCIMValue& value);

    struct Column {
        Declaration declaration;
        bool isNumber;
        bool hasUnit = false; ///< whether a value has told it
        std::string unit = {};
        std::string times = "1";
    };

    SelectedValues values_;
    ShownValue shown_;
    ValueTexts exact_; // numbers as they are, with their unit
    std::vector<Column> columns_;
    std::map<std::string, std::size_t> numbers_; // of the columns, by name in lower case
    std::vector<std::size_t> places_;            // of the columns, for the declarations of the class at hand
    bool hasNewColumns_ = true;
    TextBuffer rows_;
    std::size_t count_ = 0;
};

} // namespace cimhttp
