#pragma once

#include <Pegasus/Client/CIMClientException.h>

#include <initializer_list>
#include <string>
#include <string_view>

namespace Pegasus::cimxml {

/// Throws CIMClientXmlException with a message put together from `parts`. Long parts are cut: they come from the peer.
[[noreturn]] void throwXmlError(std::initializer_list<std::string_view> parts);

/// The same for an answer that passes a limit of this library; the exception is an ExceedsLimit, too.
[[noreturn]] void throwPastLimit(std::initializer_list<std::string_view> parts);

} // namespace Pegasus::cimxml
