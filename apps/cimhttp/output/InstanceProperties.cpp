#include "output/InstanceProperties.h"

#include "Failure.h"
#include "host/ICIMClass.h"
#include "host/ICIMInstance.h"
#include "host/ICIMProperty.h"
#include "host/ICIMPropertyDecl.h"
#include "host/ICIMQualifier.h"
#include "text/Names.h"
#include "text/NearestNames.h"

#include <algorithm>
#include <set>

namespace cimhttp {

namespace {

using namespace NQORVYX20;

/// `complaint` is about a name that none has, but for the name.
Properties ChosenOf(const std::string& complaint, const Properties& properties, const std::vector<std::string>& names) {
    ByName<boost::shared_ptr<ICIMPropertyDecl>> byName;
    for (const auto& property : properties) {
        byName.emplace(property->GetName(TCIMContext()), property);
    }
    Properties chosen;
    for (const std::string& name : names) {
        const auto found = byName.find(name);
        if (found == byName.end()) {
            throw Failure(Failure::kUsage, complaint + name + DidYouMean(NearestNames(name, NamesOf(properties))));
        }
        chosen.push_back(found->second);
    }
    return chosen;
}

} // namespace

Properties PropertiesOf(const ICIMClass& cls) {
    Properties properties;
    cls.EnumeratePropertyDecls(
        [&](const boost::shared_ptr<ICIMPropertyDecl>& property) {
            properties.push_back(property);
            return true;
        },
        TCIMContext());
    std::stable_partition(properties.begin(), properties.end(), [](const auto& property) { return IsKey(*property); });
    return properties;
}

Properties PropertiesOf(const ICIMInstance& instance) { return PropertiesOf(*instance.GetClass(TCIMContext())); }

Properties PropertiesOf(const Instances& instances) {
    Properties properties;
    std::set<boost::shared_ptr<ICIMClass>> classes;
    NameSet names;
    for (const auto& instance : instances) {
        const auto cls = instance->GetClass(TCIMContext());
        if (!classes.insert(cls).second) {
            continue;
        }
        for (const auto& property : PropertiesOf(*cls)) {
            if (names.insert(property->GetName(TCIMContext())).second) {
                properties.push_back(property);
            }
        }
    }
    return properties;
}

std::vector<std::string> NamesOf(const Properties& properties) {
    std::vector<std::string> names;
    names.reserve(properties.size());
    for (const auto& property : properties) {
        names.push_back(property->GetName(TCIMContext()));
    }
    return names;
}

Properties Chosen(const Properties& properties, const std::vector<std::string>& names, const std::string& className) {
    return ChosenOf("the class " + className + " has no property ", properties, names);
}

Properties ChosenOfAny(const Properties& properties, const std::vector<std::string>& names) {
    return ChosenOf("none of these instances has a property ", properties, names);
}

bool IsKey(const ICIMPropertyDecl& property) {
    bool isFound = false;
    const auto key = property.GetQualifier("Key", isFound, TCIMContext());
    return isFound && key->GetValue(TCIMContext()) == TCIMValue(true);
}

boost::shared_ptr<ICIMProperty> FindProperty(const ICIMInstance& instance, const std::string& name) {
    // Asking the instance for what its class does not declare is an error in the log.
    const bool isDeclared = instance.GetClass(TCIMContext())->GetPropertyDecl(name, TCIMContext()) != nullptr;
    return isDeclared ? instance.GetProperty(name, TCIMContext()) : boost::shared_ptr<ICIMProperty>();
}

std::string ClassNameOf(const ICIMInstance& instance) {
    return instance.GetClass(TCIMContext())->GetName(TCIMContext());
}

bool HaveSeveralClasses(const Instances& instances) {
    return std::any_of(instances.begin(), instances.end(), [&](const auto& instance) {
        return instance->GetClass(TCIMContext()) != instances.front()->GetClass(TCIMContext());
    });
}

std::string PathOf(const ICIMInstance& instance, const std::string& nameSpace) {
    const std::string path = instance.BuildPath(TCIMContext()).GetPath();
    return nameSpace.empty() ? path : nameSpace + ':' + path;
}

} // namespace cimhttp
