#include "access/RemotePaths.h"

#include "convert/HostValues.h"
#include "convert/RemoteText.h"

#if __has_include(<Pegasus/Client/ServerProbe.h>)
#include <Pegasus/Client/FailureMarks.h>
#define CIMHTTP_HAS_PATH_MARKS 1
#endif

#include <algorithm>
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

#ifdef CIMHTTP_HAS_PATH_MARKS

using Malformed = Pegasus::MalformedPath;

const char* ExpectedText(Malformed::Expected expected) {
    switch (expected) {
    case Malformed::NAMESPACE:
        return "a namespace such as root/cimv2";
    case Malformed::CLASS_NAME:
        return "the name of a class";
    case Malformed::KEYS:
        return "a point and the keys";
    case Malformed::KEY_NAME:
        return "the name of a key";
    case Malformed::EQUALS_SIGN:
        return "an equals sign";
    case Malformed::VALUE:
        return "a text in double quotes (which a shell takes away unless single ones are around them), a number, true "
               "or false";
    case Malformed::CLOSING_QUOTE:
        return "the quote that ends the text";
    case Malformed::COMMA_OR_END:
        return "a comma or the end";
    default:
        return "the end";
    }
}

/// What the client library, which has read the usual form of the text, expected where in the text itself.
std::string FaultText(const std::string& text, std::size_t usualSize, const Malformed& malformed) {
    const std::size_t rest = usualSize - std::min<std::size_t>(malformed.getPosition(), usualSize);
    const std::size_t position = text.size() - std::min(rest, text.size());
    const std::string should = std::string(" there should be ") + ExpectedText(malformed.getExpected());
    if (malformed.getExpected() == Malformed::NAMESPACE && rest > 0) {
        return "before '" + text.substr(position) + "'" + should;
    }
    return (position == 0 ? "at its begin" : "behind '" + text.substr(0, position) + "'") + should;
}

#endif

} // namespace

Pegasus::CIMObjectPath ParsedPath(const std::string& text) {
    const std::string usual = UsualForm(text);
    try {
        return {usual.c_str()};
    } catch (const Pegasus::Exception& failure) {
#ifdef CIMHTTP_HAS_PATH_MARKS
        if (const auto* const malformed = dynamic_cast<const Malformed*>(&failure)) {
            throw std::invalid_argument("is not an object path: " + FaultText(text, usual.size(), *malformed));
        }
#endif
        throw std::invalid_argument("cannot be read: " + ToStdString(failure.getMessage()));
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
