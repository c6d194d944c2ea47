#pragma once

#include "cimhttp/RemoteFailure.h"

#include <string>
#include <vector>

namespace cimhttp {

/// The names under which servers have their Interop namespace, in which they tell of themselves: those of DSP1033, and
/// one that is older.
const std::vector<std::string>& InteropNames();

/// Whether the server says that it does not have something: a namespace, a class, an instance or the operation.
bool SaysThatThereIsNone(const NQORVYX20::RemoteFailure& failure);

/// Whether it says that it does not have the operation.
bool IsUnsupported(const NQORVYX20::RemoteFailure& failure);

/// Where something was looked for and not found, and why.
class VainAttempts {
  public:
    void Add(const std::string& className, const std::string& nameSpace, const std::string& reason);

    /// One line, `CIM_Namespace in interop: …; …`.
    const std::string& Text() const { return text_; }

  private:
    std::string text_;
};

} // namespace cimhttp
