#pragma once

#include <boost/shared_ptr.hpp>

#include <cstddef>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

namespace NQORVYX20 {

/// The direct subclasses of a class in the order in which they came, one of each name.
template <typename Class>
class SubClassList {
  public:
    using TClasses = std::vector<boost::shared_ptr<Class>>;

    /// Adds a class at the end, or in the place of the one of that name. Letter case tells names apart.
    void Add(const std::string& name, const boost::shared_ptr<Class>& cls) {
        const auto [place, isNew] = places_.emplace(name, classes_.size());
        if (isNew) {
            classes_.push_back(cls);
        } else {
            classes_[place->second] = cls;
        }
    }

    const TClasses& Classes() const { return classes_; }

    /// Of a list that is not used any more.
    TClasses TakeClasses() && { return std::move(classes_); }

  private:
    TClasses classes_;
    std::unordered_map<std::string, std::size_t> places_;
};

} // namespace NQORVYX20
