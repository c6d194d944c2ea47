#include "connection/PathReader.h"

#include "access/ReferenceKeys.h"
#include "connection/Session.h"
#include "text/Names.h"

#include <stdexcept>

namespace cimhttp {

std::string WithoutLeadingSlash(const std::string& name) {
    return !name.empty() && name.front() == '/' ? name.substr(1) : name;
}

Failure NotAPath(const std::string& path, const std::string& reason) {
    return {Failure::kUsage, "'" + path + "' " + reason};
}

std::string PathReader::NamespaceIn(const std::string& path) const {
    try {
        const std::string name = WithoutLeadingSlash(session_.Access().NamespaceOf(path));
        return IsSameName(name, session_.NamespaceName()) ? std::string() : name;
    } catch (const std::invalid_argument& error) {
        throw NotAPath(path, error.what());
    }
}

std::string PathReader::ClassIn(const std::string& path) const {
    return session_.Access().ParsePath(path).GetClassName();
}

NQORVYX20::TCIMReference PathReader::ReferenceTo(const std::string& path) const {
    try {
        NQORVYX20::TCIMReference reference = session_.Access().ParsePath(path);
        const std::string name = NamespaceIn(path);
        if (!HasKeys(reference)) {
            throw std::invalid_argument("cannot be read: it names a class, and not an instance");
        }
        reference.SetHost(std::string());
        reference.SetNamespaceName(name.empty() ? session_.NamespaceName() : name);
        return reference;
    } catch (const std::invalid_argument& error) {
        throw NotAPath(path, error.what());
    }
}

} // namespace cimhttp
