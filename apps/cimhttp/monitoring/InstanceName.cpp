#include "monitoring/InstanceName.h"

#include "host/ICIMInstance.h"
#include "host/ICIMProperty.h"
#include "host/ICIMPropertyDecl.h"
#include "host/TCIMReference.h"
#include "output/DisplayText.h"
#include "output/ShortReferences.h"
#include "text/Names.h"

#include <algorithm>
#include <array>

namespace cimhttp {

using namespace NQORVYX20;

namespace {

constexpr std::array<const char*, 3> kNames{"ElementName", "Name", "DeviceID"};

bool EndsWithName(const std::string& text, const std::string& name) {
    return text.size() >= name.size() && IsSameName(text.substr(text.size() - name.size()), name);
}

std::string ShortPathOf(TCIMReference path) {
    path.SetHost(std::string());
    path.SetNamespaceName(std::string());
    std::size_t own = 0;
    std::size_t all = 0;
    path.EnumerateKeyValues([&](const std::string& name, const TCIMValue&) {
        own += InstanceName::IsOwnKey(name) ? 1 : 0;
        ++all;
        return true;
    });
    return own == 0 || own == all
               ? path.GetPath()
               : TextWithKeys(path, [](const auto& name, const auto&) { return InstanceName::IsOwnKey(name); });
}

} // namespace

bool InstanceName::IsOwnKey(const std::string& key) {
    const std::array<const char*, 3> systems{"SystemName", "CSName", "OSName"};
    return !EndsWithName(key, "CreationClassName") &&
           std::none_of(systems.begin(), systems.end(), [&](const char* system) { return IsSameName(system, key); });
}

std::vector<std::string> InstanceName::PropertiesIn(const Properties& ofClass) {
    std::vector<std::string> found;
    for (const std::string& name : NamesOf(ofClass)) {
        if (std::any_of(kNames.begin(), kNames.end(), [&](const char* known) { return IsSameName(known, name); })) {
            found.push_back(name);
        }
    }
    return found;
}

InstanceName::InstanceName(const ICIMInstance& instance) {
    const TCIMReference path = instance.BuildPath(TCIMContext());
    shortPath_ = ShortPathOf(path);
    for (const char* const name : kNames) {
        const auto property = FindProperty(instance, name);
        AddName(property ? PlainText(property->GetValue(TCIMContext())) : std::string());
    }
    for (const char* const name : kNames) { // of a class that is read without its subclasses' properties
        AddName(PlainText(path.GetKeyValue(name)));
    }
    label_ = names_.empty() ? shortPath_ : names_.front();
    path.EnumerateKeyValues([&](const std::string&, const TCIMValue& value) {
        AddName(PlainText(value));
        return true;
    });
    for (const std::string& name : {shortPath_, PathOf(instance), ClassNameOf(instance)}) {
        AddName(name);
    }
}

void InstanceName::AddName(const std::string& name) {
    if (!name.empty()) {
        names_.push_back(name);
    }
}

bool InstanceName::Matches(const std::string& pattern) const {
    return std::any_of(names_.begin(), names_.end(),
                       [&](const std::string& name) { return cimhttp::Matches(pattern, name); });
}

} // namespace cimhttp
