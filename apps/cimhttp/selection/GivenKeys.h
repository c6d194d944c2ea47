#pragma once

#include "text/Names.h"

#include <string>
#include <vector>

namespace cimhttp {

/// Keys of an instance as a user gives them, such as `Name=eth0`.
class GivenKeys {
  public:
    /// Throws Failure(kUsage) for a text without a name or a sign, and for a key that is given twice.
    explicit GivenKeys(const std::vector<std::string>& texts);

    /// The values by the names of the keys.
    const ByName<std::string>& Values() const { return values_; }

    /// Throws Failure(kUsage) for a key that is none of these; `className` is for the complaint.
    void Check(const std::vector<std::string>& names, const std::string& className) const;

    /// ` with Name=eth0, Number=3`, or nothing.
    std::string Text() const;

  private:
    ByName<std::string> values_;
};

} // namespace cimhttp
