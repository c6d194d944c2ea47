#include "output/ObjectLabels.h"

#include "output/DisplayText.h"
#include "output/ObjectGraph.h"
#include "output/ShortReferences.h"
#include "text/Names.h"

#include <algorithm>
#include <cstddef>
#include <map>

namespace cimhttp {

namespace {

using NQORVYX20::TCIMReference;
using NQORVYX20::TCIMValue;

bool EndsWithName(const std::string& text, const std::string& name) {
    return text.size() >= name.size() && IsSameName(text.substr(text.size() - name.size()), name);
}

bool NamesAClass(const std::string& key) { return EndsWithName(key, "CreationClassName"); }

class Labeller {
  public:
    explicit Labeller(const ObjectGraph& graph) : home_(graph.objects.front().path.GetNamespaceName()) {
        for (const auto& object : graph.objects) {
            Count(object.path);
        }
    }

    std::string LabelOf(TCIMReference path) const {
        const ClassKeys& keys = classes_.at(path.GetClassName());
        if (IsSameName(path.GetNamespaceName(), home_) && path.GetHost().empty()) {
            path.SetNamespaceName(std::string());
        }
        const auto isWanted = keys.objectCount > 1
                                  ? Wish([&](const auto& name, const auto&) { return keys.Tells(name); })
                                  : Wish([&](const auto& name, const auto& value) {
                                        return !NamesAClass(name) && !IsElsewhere(name, value, path.GetClassName());
                                    });
        return LabelWith(path, isWanted);
    }

  private:
    using Wish = KeyPredicate;

    /// What there is of a key in the objects of a class.
    struct ClassKeys {
        std::size_t objectCount = 0;
        ByName<std::map<std::string, std::size_t>> values; // how many objects have it, by key and value

        /// Whether the key is not the same in all of them.
        bool Tells(const std::string& name) const {
            const auto& counts = values.at(name);
            return counts.size() > 1 || counts.begin()->second < objectCount;
        }
    };

    void Count(const TCIMReference& path) {
        ClassKeys& keys = classes_[path.GetClassName()];
        ++keys.objectCount;
        path.EnumerateKeyValues([&](const std::string& name, const TCIMValue& value) {
            const std::string text = PlainText(value);
            ++keys.values[name][text];
            owners_[text][name].insert(path.GetClassName());
            return true;
        });
    }

    /// Whether an object of another class has the same key, or is what the key names: `Name` of a system is
    /// `SystemName` of what it contains.
    bool IsElsewhere(const std::string& name, const TCIMValue& value, const std::string& className) const {
        const auto& owners = owners_.at(PlainText(value));
        return std::any_of(owners.begin(), owners.end(), [&](const auto& owner) {
            const auto& [key, classes] = owner;
            return EndsWithName(name, key) && (classes.size() > 1 || classes.count(className) == 0);
        });
    }

    /// With the keys that are wished; where that leaves none, with those that name no class, or all.
    static std::string LabelWith(const TCIMReference& path, const Wish& isWanted) {
        const Wish namesNoClass = [](const std::string& name, const TCIMValue&) { return !NamesAClass(name); };
        for (const Wish& wish : {isWanted, namesNoClass}) {
            const std::size_t left = CountKeys(path, wish);
            if (left > 0) {
                return left == CountKeys(path, {}) ? path.GetPath() : TextWithKeys(path, wish);
            }
        }
        return path.GetPath();
    }

    static std::size_t CountKeys(const TCIMReference& path, const Wish& wish) {
        std::size_t count = 0;
        path.EnumerateKeyValues([&](const std::string& name, const TCIMValue& value) {
            count += !wish || wish(name, value) ? 1 : 0;
            return true;
        });
        return count;
    }

    std::string home_;
    ByName<ClassKeys> classes_;
    std::map<std::string, ByName<NameSet>> owners_; // by value and key, the classes whose objects have them
};

} // namespace

std::vector<std::string> LabelsOf(const ObjectGraph& graph) {
    std::vector<std::string> labels;
    if (graph.objects.empty()) {
        return labels;
    }
    const Labeller labeller(graph);
    labels.reserve(graph.objects.size());
    for (const auto& object : graph.objects) {
        labels.push_back(labeller.LabelOf(object.path));
    }
    return labels;
}

} // namespace cimhttp
