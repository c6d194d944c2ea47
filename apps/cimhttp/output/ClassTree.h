#pragma once

#include "access/RemoteModel.h"
#include "text/Names.h"

#include <string>
#include <vector>

namespace cimhttp {

/// Classes as a hierarchy, the subclasses of a class in alphabetical order. A class whose superclass is not among them
/// is a top class; so is one of every circle that a broken server makes of its classes.
class ClassTree {
  public:
    /// Names are matched without regard to case; of two classes of one name the first counts.
    explicit ClassTree(const std::vector<RemoteClassName>& classes);

    std::vector<std::string> TopClasses() const { return SubclassesOf({}); }

    /// The direct subclasses.
    std::vector<std::string> SubclassesOf(const std::string& name) const;

    /// The name as the server writes it; empty when there is no such class.
    std::string Find(const std::string& name) const;

  private:
    using Names = ByName<std::string>; // from a name to another

    void Link(const Names& superclasses);

    Names names_;
    /// The empty name stands above the top classes.
    ByName<std::vector<std::string>> subclasses_;
};

} // namespace cimhttp
