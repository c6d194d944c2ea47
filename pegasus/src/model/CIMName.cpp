#include "model/NameCharacters.h"

#include <Pegasus/Common/CIMName.h>
#include <Pegasus/Common/Exception.h>

#include <string_view>

namespace Pegasus {
inline namespace bundled {

namespace {

bool isName(std::string_view text) noexcept { return !text.empty() && detail::nameSize(text) == text.size(); }

/// A namespace is often written with a slash before it.
std::string_view withoutLeadingSlash(std::string_view name) noexcept {
    return name.substr(!name.empty() && name.front() == '/' ? 1 : 0);
}

} // namespace

CIMName::CIMName(const String& name) : name_(name) {
    if (!legal(name_)) {
        throw InvalidNameException(name_);
    }
}

CIMName::CIMName(const char* name) : CIMName(String(name)) {}

Boolean CIMName::legal(const String& name) noexcept { return isName(name.view()); }

CIMNamespaceName::CIMNamespaceName(const String& name) : name_(name) {
    if (!legal(name)) {
        throw InvalidNamespaceNameException(name);
    }
    if (name.view().front() == '/') {
        name_ = String(withoutLeadingSlash(name.view()));
    }
}

CIMNamespaceName::CIMNamespaceName(const char* name) : CIMNamespaceName(String(name)) {}

Boolean CIMNamespaceName::legal(const String& name) noexcept {
    std::string_view rest = withoutLeadingSlash(name.view());
    for (auto slash = rest.find('/'); slash != std::string_view::npos; slash = rest.find('/')) {
        if (!isName(rest.substr(0, slash))) {
            return false;
        }
        rest.remove_prefix(slash + 1);
    }
    return isName(rest);
}

} // namespace bundled
} // namespace Pegasus
