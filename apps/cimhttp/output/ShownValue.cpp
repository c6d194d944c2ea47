#include "output/ShownValue.h"

#include "host/TCIMValue.h"
#include "output/Json.h"
#include "text/TextBuffer.h"

#include <vector>

namespace cimhttp {

using namespace NQORVYX20;

void ShownValue::TurnTo(const ICIMInstance& instance, const boost::shared_ptr<ICIMPropertyDecl const>& declaration,
                        const TCIMValue& value) {
    value_ = &value;
    maker_.Make(instance, declaration, value, memory_);
}

bool ShownValue::IsList() const { return value_->IsArray() && !value_->IsNull(); }

std::string_view ShownValue::Joined() {
    if (!IsList()) {
        return memory_.texts.front();
    }
    const std::vector<TCIMValue>& elements = *value_;
    auto element = elements.begin();
    line_.clear();
    for (const std::string_view text : memory_.texts) {
        line_ += element == elements.begin() ? "" : ", ";
        line_ += TextInList(text, (element++)->IsNull());
    }
    return line_;
}

void ShownValue::AppendJson(TextBuffer& json) const {
    if (!IsList()) {
        AppendJsonText(memory_.texts.front(), json);
        return;
    }
    char separator = '[';
    for (const std::string_view text : memory_.texts) {
        json.Add(separator);
        AppendJsonText(text, json);
        separator = ',';
    }
    json.Add(memory_.texts.empty() ? "[]" : "]");
}

} // namespace cimhttp
