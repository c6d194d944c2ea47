#pragma once

#include "operations/Parameters.h"
#include "operations/Repository.h"
#include "wire/XmlWriter.h"

#include <string_view>
#include <vector>

namespace demo {

/// An intrinsic method of DSP0200.
struct Operation {
    /// Writes the IRETURNVALUE. Throws CimError: before it has written anything if the request is at fault, perhaps in
    /// the middle if a provider is.
    using Execute = void (*)(const Repository& repository, const Parameters& parameters, XmlWriter& writer);

    std::string_view name;
    ParameterDeclarations parameters;
    Execute execute = nullptr;
};

using Operations = std::vector<Operation>;

} // namespace demo
