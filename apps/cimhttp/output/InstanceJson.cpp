#include "output/InstanceJson.h"

#include "host/ICIMInstance.h"
#include "host/ICIMProperty.h"
#include "host/ICIMPropertyDecl.h"
#include "output/DisplayText.h"
#include "output/Json.h"
#include "output/TypeText.h"

namespace cimhttp {

namespace {

using namespace NQORVYX20;

/// A property up to its value.
std::string Head(const ICIMPropertyDecl& declaration) {
    return JsonText(declaration.GetName(TCIMContext())) +
           ":{\"type\":" + JsonText(ElementTypeText(declaration.GetType(TCIMContext()))) + ",\"value\":";
}

void AppendText(const DisplayText& text, std::string& json) {
    if (text.IsList()) {
        AppendJsonTexts(text.Texts(), json);
    } else {
        AppendJsonText(text.Texts().front(), json);
    }
}

} // namespace

InstanceJson::InstanceJson(const std::vector<boost::shared_ptr<ICIMPropertyDecl>>& properties,
                           const PluginAccess& access)
    : access_(access) {
    const char* separator = "";
    for (const auto& declaration : properties) {
        members_.push_back({declaration->GetName(TCIMContext()), separator + Head(*declaration)});
        separator = ",";
    }
}

void InstanceJson::Append(const ICIMInstance& instance, std::string& json) const {
    json += "{\"path\":";
    AppendJsonText(instance.BuildPath(TCIMContext()).GetPath(), json);
    json += ",\"properties\":{";
    for (const Member& member : members_) {
        const auto property = instance.GetProperty(member.name, TCIMContext());
        json += member.head;
        AppendJsonValue(property->GetValue(TCIMContext()), json);
        json += ",\"text\":";
        AppendText(DisplayText(access_, *property), json);
        json += '}';
    }
    json += "}}";
}

} // namespace cimhttp
