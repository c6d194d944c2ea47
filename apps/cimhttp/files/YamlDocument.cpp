#include "files/YamlDocument.h"

#include "Failure.h"
#include "text/WordList.h"

#include <set>
#include <utility>

namespace cimhttp {

namespace {

std::string Quoted(const std::string& name) { return '\'' + name + '\''; }

std::string Place(const std::string& name, const YAML::Mark& mark) {
    return mark.is_null() ? name + ": " : name + ", line " + std::to_string(mark.line + 1) + ": ";
}

} // namespace

YamlDocument::YamlDocument(const std::string& text, std::string name) : name_(std::move(name)) {
    try {
        root_ = YAML::Load(text);
    } catch (const YAML::Exception& exception) {
        throw Failure(Failure::kUsage, Place(name_, exception.mark) + exception.msg);
    }
}

void YamlDocument::Fail(const YAML::Node& node, const std::string& what) const {
    throw Failure(Failure::kUsage, Place(name_, node.Mark()) + what);
}

std::vector<std::pair<std::string, YAML::Node>> YamlDocument::MembersOf(const YAML::Node& node,
                                                                        const std::string& what) const {
    if (!node.IsMap()) {
        Fail(node, what + " has to be a mapping, lines of the form 'name: value'");
    }
    std::vector<std::pair<std::string, YAML::Node>> members;
    std::set<std::string> names;
    for (const auto& member : node) {
        const std::string name = Text(member.first, "a name in " + what);
        if (!names.insert(name).second) {
            Fail(member.first, Quoted(name).append(" is there twice in ").append(what));
        }
        members.emplace_back(name, member.second);
    }
    return members;
}

void YamlDocument::ForMembers(const YAML::Node& node, const std::string& what, const Members& members) const {
    for (const auto& [name, value] : MembersOf(node, what)) {
        const auto known = members.find(name);
        if (known == members.end()) {
            std::vector<std::string> names;
            for (const auto& member : members) {
                names.push_back(member.first);
            }
            Fail(value,
                 Quoted(name).append(" is not known in ").append(what).append(", which may have ") + Listed(names));
        }
        known->second(value);
    }
}

void YamlDocument::ForItems(const YAML::Node& node, const std::string& what,
                            const std::function<void(const YAML::Node&)>& take) const {
    if (!node.IsSequence()) {
        Fail(node, what + " has to be a list");
    }
    for (const auto& item : node) {
        take(item);
    }
}

std::string YamlDocument::Text(const YAML::Node& node, const std::string& what) const {
    if (!node.IsScalar() || node.Scalar().empty()) {
        Fail(node, what + " has to be a text");
    }
    return node.Scalar();
}

bool YamlDocument::Truth(const YAML::Node& node, const std::string& what) const {
    const std::string text = Text(node, what);
    if (text != "true" && text != "false") {
        Fail(node, what + " is '" + text + "', neither true nor false");
    }
    return text == "true";
}

} // namespace cimhttp
