#pragma once

#include <Pegasus/Common/CIMDateTime.h>
#include <Pegasus/Common/CIMType.h>
#include <Pegasus/Common/Char16.h>
#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/String.h>

#include <string_view>

namespace Pegasus::cimxml {

/// The value that the text of a VALUE element stands for (DSP0201, 5.2.3.2): booleans in either case; integers in base
/// 10, or 16 behind "0x"; reals as C writes them; a char16 is one character. White space around all but texts and
/// characters is ignored. Throws CIMClientXmlException for a text that is none, and for a number out of range.
template <class T>
T decodeScalar(std::string_view text);

/// The type of a TYPE attribute's name.
CIMType decodeType(std::string_view name);

} // namespace Pegasus::cimxml
