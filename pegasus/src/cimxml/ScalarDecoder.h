#pragma once

#include <Pegasus/Common/CIMDateTime.h>
#include <Pegasus/Common/CIMType.h>
#include <Pegasus/Common/Char16.h>
#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/String.h>

#include <optional>
#include <string_view>

namespace Pegasus::cimxml {

/// The value that the text of a VALUE element stands for (DSP0201, 5.2.3.2): booleans in either case; integers in base
/// 10, or 16 after "0x"; reals as C writes them, infinite where they are too large for the type; a char16 is one
/// character. White space around all but texts and characters is ignored. Throws DecodingError for any other text, and
/// for an integer out of range.
template <class T>
T decodeScalar(std::string_view text);

/// The boolean that a text stands for; nothing where it stands for none.
std::optional<Boolean> readBoolean(std::string_view text);
/// Whether a text stands for a number of some type.
bool isNumber(std::string_view text);

/// The type of a TYPE attribute's name, around which there may be white space.
CIMType decodeType(std::string_view name);

} // namespace Pegasus::cimxml
