#include "cimxml/NameCache.h"

#include "cimxml/Limits.h"
#include "cimxml/XmlError.h"

namespace Pegasus::cimxml {

CIMName NameCache::get(std::string_view text) {
    if (const auto known = names_.find(text); known != names_.end())
        return known->second;
    const String name(text);
    if (!CIMName::legal(name))
        throwXmlError({"not a name: \"", text, "\""});
    if (names_.size() >= kMaxSharedNames)
        names_.clear();
    return names_.emplace(name.view(), CIMName(name)).first->second;
}

} // namespace Pegasus::cimxml
