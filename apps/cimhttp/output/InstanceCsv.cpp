#include "output/InstanceCsv.h"

#include "host/ICIMClass.h"
#include "host/ICIMInstance.h"
#include "host/ICIMProperty.h"
#include "host/ICIMPropertyDecl.h"
#include "output/CsvText.h"
#include "output/Json.h"
#include "output/TypeText.h"

namespace cimhttp {

using namespace NQORVYX20;

void InstanceCsv::Append(const ICIMInstance& instance, std::string& csv) {
    std::string begin = first_;
    AppendCsvText(PathOf(instance, nameSpace_), isShown_, begin);
    for (const Field& field : FieldsOf(instance)) {
        const auto property = instance.GetProperty(field.name, TCIMContext());
        const TCIMValue& value = property->GetValue(TCIMContext());
        csv += begin;
        csv += field.text;
        AppendValue(value, csv);
        csv += ',';
        AppendCsvText(texts_.Of(instance, *property).Joined(), isShown_, csv);
        csv += kCsvRecordEnd;
    }
}

void InstanceCsv::AppendValue(const TCIMValue& value, std::string& csv) const {
    if (!value.IsNull()) {
        AppendCsvText(value.IsArray() ? JsonValue(value) : PlainText(value), isShown_, csv);
    }
}

const std::vector<InstanceCsv::Field>& InstanceCsv::FieldsOf(const ICIMInstance& instance) {
    auto cls = instance.GetClass(TCIMContext());
    if (cls != lastClass_) {
        fields_.clear();
        for (const auto& declaration : selector_.PropertiesFor(instance)) {
            Field field{declaration->GetName(TCIMContext()), ","};
            AppendCsvText(field.name, isShown_, field.text);
            field.text += ',';
            AppendCsvText(TypeText(declaration->GetType(TCIMContext())), isShown_, field.text);
            field.text += ',';
            fields_.push_back(std::move(field));
        }
        lastClass_ = std::move(cls);
    }
    return fields_;
}

} // namespace cimhttp
