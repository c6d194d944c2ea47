#pragma once

#include <Pegasus/Common/CIMOperationType.h>

#include <string_view>

namespace Pegasus {
inline namespace bundled {
namespace detail {

/// The operation of that name, which is one of the client's.
CIMOperationType operationTypeOf(std::string_view name) noexcept;

} // namespace detail
} // namespace bundled
} // namespace Pegasus
