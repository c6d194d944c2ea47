#pragma once

#include <Pegasus/Common/CIMName.h>

#include <string_view>
#include <unordered_map>

namespace Pegasus::cimxml {

/// Gives out one shared CIMName for the same text. The instances of a class all have the same property names, which are
/// checked and stored once so.
class NameCache {
  public:
    /// Throws CIMClientXmlException for an illegal name.
    CIMName get(std::string_view text);

  private:
    std::unordered_map<std::string_view, CIMName> names_; // the keys point into the names
};

} // namespace Pegasus::cimxml
