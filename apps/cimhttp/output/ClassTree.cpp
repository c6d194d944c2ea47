#include "output/ClassTree.h"

#include <algorithm>

namespace cimhttp {

ClassTree::ClassTree(const std::vector<RemoteClassName>& classes) {
    Names superclasses;
    for (const RemoteClassName& cls : classes) {
        if (names_.emplace(cls.name, cls.name).second) {
            superclasses.emplace(cls.name, cls.superclass);
        }
    }
    Link(superclasses);
}

void ClassTree::Link(const Names& superclasses) {
    NameSet linked; // classes known to hang below a top class
    for (const auto& [name, superclass] : superclasses) {
        // Upwards from a class until a linked one, a top class, or where the way began.
        NameSet way;
        std::string current = name;
        while (linked.count(current) == 0) {
            way.insert(current);
            const std::string& above = superclasses.at(current);
            if (superclasses.count(above) == 0 || way.count(above) > 0) {
                subclasses_[{}].push_back(names_.at(current));
                break;
            }
            subclasses_[above].push_back(names_.at(current));
            current = above;
        }
        linked.insert(way.begin(), way.end());
    }
    for (auto& [name, subclasses] : subclasses_) {
        std::sort(subclasses.begin(), subclasses.end(), NameBefore());
    }
}

std::vector<std::string> ClassTree::SubclassesOf(const std::string& name) const {
    const auto found = subclasses_.find(name);
    return found == subclasses_.end() ? std::vector<std::string>() : found->second;
}

std::string ClassTree::Find(const std::string& name) const {
    const auto found = names_.find(name);
    return found == names_.end() ? std::string() : found->second;
}

} // namespace cimhttp
