#pragma once

#include <yaml-cpp/yaml.h>

#include <functional>
#include <map>
#include <string>
#include <vector>

namespace cimhttp {

/// A YAML document that a user writes. Complaints are Failure(kUsage) with its name and the line.
class YamlDocument {
  public:
    /// What to do with each member of a mapping.
    using Members = std::map<std::string, std::function<void(const YAML::Node&)>>;

    /// Parses the text. `name` is what complaints begin with.
    YamlDocument(const std::string& text, std::string name);

    /// Null for an empty document.
    const YAML::Node& Root() const { return root_; }

    [[noreturn]] void Fail(const YAML::Node& node, const std::string& what) const;

    /// Calls for each member of a mapping what `members` has for its name. Complains about another name, and about one
    /// that is there twice; `what` says what the mapping is.
    void ForMembers(const YAML::Node& node, const std::string& what, const Members& members) const;

    /// The members of a mapping with their names, each once.
    std::vector<std::pair<std::string, YAML::Node>> MembersOf(const YAML::Node& node, const std::string& what) const;

    /// Calls `take` for each item of a list.
    void ForItems(const YAML::Node& node, const std::string& what,
                  const std::function<void(const YAML::Node&)>& take) const;

    std::string Text(const YAML::Node& node, const std::string& what) const;
    bool Truth(const YAML::Node& node, const std::string& what) const;

  private:
    std::string name_;
    YAML::Node root_;
};

} // namespace cimhttp
