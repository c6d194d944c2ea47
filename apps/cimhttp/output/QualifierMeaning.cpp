#include "output/QualifierMeaning.h"

#include "output/DisplayText.h"
#include "text/Names.h"

#include <algorithm>

namespace cimhttp {

namespace {

using NQORVYX20::TCIMValue;

const RemoteQualifier* Find(const std::vector<RemoteQualifier>& qualifiers, const char* name) {
    const auto found = std::find_if(qualifiers.begin(), qualifiers.end(),
                                    [&](const RemoteQualifier& one) { return IsSameName(one.name, name); });
    return found == qualifiers.end() ? nullptr : &*found;
}

bool Is(bool value, const std::vector<RemoteQualifier>& qualifiers, const char* name) {
    const RemoteQualifier* const qualifier = Find(qualifiers, name);
    return qualifier != nullptr && qualifier->value == TCIMValue(value);
}

} // namespace

bool IsKey(const RemoteProperty& property) { return Is(true, property.qualifiers, "Key"); }

std::string DirectionOf(const RemoteParameter& parameter) {
    const bool isOut = Is(true, parameter.qualifiers, "Out");
    if (Is(false, parameter.qualifiers, "In")) {
        return isOut ? "out" : "";
    }
    return isOut ? "in out" : "in";
}

std::string SummaryOf(const std::vector<RemoteQualifier>& qualifiers) {
    const RemoteQualifier* const description = Find(qualifiers, "Description");
    if (description == nullptr) {
        return {};
    }
    const std::string text = PlainText(description->value);
    const std::size_t end = text.find_first_of(".\n");
    const bool isEnd = end + 1 == text.size() || text.find_first_of(" \n", end) == end + 1;
    return end != std::string::npos && (isEnd || text[end] == '\n') ? text.substr(0, end) : text;
}

} // namespace cimhttp
