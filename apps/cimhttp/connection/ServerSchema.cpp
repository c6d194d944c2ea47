#include "connection/ServerSchema.h"

#include "connection/RemoteReason.h"
#include "host/ICIMClass.h"
#include "host/ICIMNamespace.h"
#include "host/TVYXException.h"
#include "text/NearestNames.h"

namespace cimhttp {

namespace {

using namespace NQORVYX20;

/// Reads; what goes wrong remotely becomes a Failure about `thing`.
template <typename Operation>
auto Remotely(const Session& session, const std::string& thing, const Operation& operation) {
    try {
        return session.Awaited(thing, operation);
    } catch (const RemoteError& error) {
        session.Failures().Fail(thing + " cannot be read from " + session.Place(), error.Failure());
    }
}

} // namespace

Failure NoSuchClass(const std::string& name, const std::string& server, const std::vector<std::string>& classes) {
    const std::string suggestion = DidYouMean(NearestNames(name, classes));
    return {Failure::kNotFound, "there is no class " + name + " on " + server +
                                    (suggestion.empty() ? "; 'cimhttp classes' lists all" : suggestion)};
}

Failure NotAClassName(const std::string& name) { return {Failure::kUsage, "'" + name + "' is not a class name"}; }

std::vector<std::string> ServerSchema::ClassNames() const {
    try {
        return ClassNamesIn(session_.Namespace());
    } catch (const RemoteError& error) {
        session_.Failures().Fail("the classes of " + session_.Place() + " cannot be listed", error.Failure());
    }
}

std::vector<std::string> ServerSchema::KnownClassNames(ICIMNamespace& nameSpace) const {
    try {
        return ClassNamesIn(nameSpace);
    } catch (const RemoteError&) {
        return {};
    }
}

std::vector<std::string> ServerSchema::ClassNamesIn(ICIMNamespace& nameSpace) const {
    return session_.Awaited("the names of the classes", [&] { return session_.Access().ClassNames(nameSpace); });
}

std::vector<RemoteClassName> ServerSchema::Hierarchy() const {
    return Remotely(session_, "the hierarchy of classes",
                    [&] { return session_.Access().ReadHierarchy(session_.Namespace()); });
}

boost::shared_ptr<ICIMClass> ServerSchema::Class(const std::string& name) const {
    if (name.empty()) { // which would be the root of all classes
        throw NotAClassName(name);
    }
    ICIMNamespace& nameSpace = session_.Namespace();
    try {
        return session_.Awaited("the class " + name, [&] { return nameSpace.GetClass(name, TCIMContext()); });
    } catch (const TVYXException& exception) {
        if (exception.GetStatusCode().GetCode() == TVYXStatusCode::eInvalidName) {
            throw NotAClassName(name);
        }
        FailAboutClass(name, nameSpace, session_.Failures().ReasonOf(exception, nameSpace));
    }
}

RemoteClass ServerSchema::Definition(const std::string& name) const {
    return ReadingClass("the class " + name, name,
                        [&] { return session_.Access().ReadClass(session_.Namespace(), name); });
}

std::vector<RemoteQualifierDeclaration> ServerSchema::QualifierDeclarations() const {
    return Remotely(session_, "the qualifiers",
                    [&] { return session_.Access().ReadQualifierDeclarations(session_.Namespace()); });
}

std::vector<RemoteQualifierDeclaration> ServerSchema::KnownQualifiers() const {
    try {
        return session_.Awaited("the qualifiers",
                                [&] { return session_.Access().ReadQualifierDeclarations(session_.Namespace()); });
    } catch (const RemoteError& error) {
        if (error.Failure().kind == RemoteFailure::Kind::kLimit) { // there are some, too many to be read
            session_.Failures().Fail("the qualifiers cannot be read from " + session_.Place(), error.Failure());
        }
        return {};
    }
}

void ServerSchema::FailAboutClass(const std::string& name, ICIMNamespace& nameSpace,
                                  const RemoteFailure& failure) const {
    if (RemoteReason(failure, session_.Target()).Status() != Failure::kNotFound) {
        session_.Failures().Fail("the class " + name + " cannot be read from " + session_.Place(), failure);
    }
    throw NoSuchClass(name, session_.Place(), KnownClassNames(nameSpace));
}

} // namespace cimhttp
