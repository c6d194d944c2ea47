#pragma once

#include "access/RemoteModel.h"

#include <string>
#include <vector>

namespace cimhttp {

// What the qualifiers of CIM say of an element (DSP0004 5.6.3).

bool IsKey(const RemoteProperty& property);

/// `in`, `out` or `in out`, as the qualifiers In (true unless said) and Out (false unless said) tell.
std::string DirectionOf(const RemoteParameter& parameter);

/// The first sentence of the description.
std::string SummaryOf(const std::vector<RemoteQualifier>& qualifiers);

} // namespace cimhttp
