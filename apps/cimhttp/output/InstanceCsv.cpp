#include "output/InstanceCsv.h"

#include "access/PluginAccess.h"
#include "host/ICIMClass.h"
#include "host/ICIMInstance.h"
#include "host/ICIMPropertyDecl.h"
#include "output/CsvText.h"
#include "output/Json.h"
#include "output/TypeText.h"

#include <type_traits>
#include <utility>

namespace cimhttp {

using namespace NQORVYX20;

InstanceCsv::InstanceCsv(PropertySelector selector, const ValueTexts& texts, std::string nameSpace, bool isShown,
                         std::string first)
    : values_(std::move(selector)),
      shown_(texts),
      nameSpace_(std::move(nameSpace)),
      isShown_(isShown),
      first_(std::move(first)) {}

void InstanceCsv::Append(ICIMInstance& instance, TextBuffer& csv) {
    if (values_.TurnTo(instance)) {
        PrepareClass();
    }
    begin_.Clear();
    begin_.Add(first_);
    AppendCsvText(PathOf(instance, nameSpace_), isShown_, begin_);
    values_.Visit([&](std::size_t place, const TCIMValue& value) { AppendRecord(instance, place, value, csv); });
}

void InstanceCsv::AppendRecord(const ICIMInstance& instance, std::size_t place, const TCIMValue& value,
                               TextBuffer& csv) {
    const Field& field = fields_[place];
    csv.Add(begin_.Text());
    csv.Add(field.head);
    const std::size_t begin = csv.Size();
    AppendValue(value, csv);
    const std::size_t end = csv.Size();
    csv.Add(',');
    if (field.showsAsItIs && ShowsAsItIs(value)) {
        csv.AddAgain(begin, end);
    } else {
        shown_.TurnTo(instance, values_.Declarations()[place], value);
        AppendCsvText(shown_.Joined(), isShown_, csv);
    }
    csv.Add(kCsvRecordEnd);
}

void InstanceCsv::AppendValue(const TCIMValue& value, TextBuffer& csv) {
    value.Visit([&](const auto& content) {
        using Content = std::decay_t<decltype(content)>;
        if constexpr (std::is_same_v<Content, std::string>) {
            AppendCsvText(content, isShown_, csv);
        } else if constexpr (std::is_same_v<Content, std::vector<TCIMValue>>) {
            json_.Clear();
            AppendJsonValue(value, json_);
            AppendCsvText(json_.Text(), isShown_, csv);
        } else if constexpr (std::is_arithmetic_v<Content>) {
            AppendPlainText(value, csv); // which needs no quotes
        } else if constexpr (!std::is_same_v<Content, TCIMValue::TCIMType>) {
            AppendCsvText(PlainText(value), isShown_, csv);
        }
    });
}

void InstanceCsv::PrepareClass() {
    fields_.clear();
    for (const auto& declaration : values_.Declarations()) {
        Field field{",", shown_.Access().ShowsAsItIs(*declaration)};
        AppendCsvText(declaration->GetName(TCIMContext()), isShown_, field.head);
        field.head += ',';
        AppendCsvText(TypeText(declaration->GetType(TCIMContext())), isShown_, field.head);
        field.head += ',';
        fields_.push_back(std::move(field));
    }
}

} // namespace cimhttp
