#include "access/RemotePaths.h"

#include "convert/HostValues.h"
#include "convert/RemoteText.h"

#include <stdexcept>

namespace cimhttp {

using namespace NQORVYX20;

namespace {

bool BeginsWith(const std::string& text, const std::string& begin) { return text.compare(0, begin.size(), begin) == 0; }

/// The forms of a path that other clients print, in the one that the client library reads:
/// `//host/namespace:Class.key`.
std::string UsualForm(const std::string& path) {
    for (const std::string scheme : {"http:", "https:"}) {
        if (BeginsWith(path, scheme + "//")) {
            return path.substr(scheme.size());
        }
    }
    if (BeginsWith(path, "/") && !BeginsWith(path, "//")) {
        return path.substr(1);
    }
    // `host:port/namespace:Class`: a port, and a namespace after it, before the first key
    const std::string head = path.substr(0, path.find('='));
    const auto port = head.find(':');
    const auto slash = head.find('/');
    const bool hasPort = port != std::string::npos && slash != std::string::npos && port < slash &&
                         head.find(':', slash) != std::string::npos && !BeginsWith(path, "//");
    return hasPort ? "//" + path : path;
}

} // namespace

Pegasus::CIMObjectPath ParsedPath(const std::string& text) {
    try {
        return {UsualForm(text).c_str()};
    } catch (const Pegasus::Exception& failure) {
        throw std::invalid_argument(ToStdString(failure.getMessage()));
    }
}

void CheckName(const std::string& text) {
    if (!Pegasus::CIMName::legal(Pegasus::String(text.c_str()))) {
        throw std::invalid_argument(text);
    }
}

std::vector<TCIMReference> HostReferences(const Pegasus::Array<Pegasus::CIMObjectPath>& paths) {
    std::vector<TCIMReference> references;
    references.reserve(paths.size());
    for (Pegasus::Uint32 i = 0; i < paths.size(); ++i) {
        references.push_back(ToHostReference(paths[i]));
    }
    return references;
}

std::string NameText(const Pegasus::CIMName& name) { return name.isNull() ? std::string() : ToStdString(name); }

std::string NameText(const Pegasus::CIMNamespaceName& name) {
    return name.isNull() ? std::string() : ToStdString(name.getString());
}

} // namespace cimhttp
