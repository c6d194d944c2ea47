#pragma once

#include "operations/Parameters.h"
#include "operations/Repository.h"
#include "wire/XmlWriter.h"

#include <functional>
#include <string_view>
#include <vector>

namespace demo {

/// An intrinsic method of DSP0200.
struct Operation {
    /// Writes the IRETURNVALUE and what comes after it. Throws CimError: before it has written anything if the request
    /// is at fault, perhaps in the middle if a provider is.
    using Execute = std::function<void(const Repository& repository, const Parameters& parameters, XmlWriter& writer)>;

    std::string_view name;
    ParameterDeclarations parameters;
    Execute execute;
    /// Executing the operation again would not give the same answer, so that the client must get it whole.
    bool isOnce = false;
};

using Operations = std::vector<Operation>;

} // namespace demo
