#include "reading/RemoteNamespace.h"

#include "host/ICIMClass.h"
#include "host/ICIMQualifier.h"
#include "model/TCimHTTPQualifierDecl.h"
#include "reading/RemoteServer.h"

#include <utility>

namespace NQORVYX20 {

namespace {

constexpr const char* kPluginNameQualifier = "PLUGINNAME";
constexpr const char* kPluginVersionQualifier = "PLUGINVERSION";
constexpr const char* kPluginVersion = "1.0";

} // namespace

RemoteNamespace::RemoteNamespace(bool redefine, std::unique_ptr<RemoteServer> server)
    : SchemaNamespace(redefine), server_(std::move(server)) {}

RemoteNamespace::~RemoteNamespace() = default;

const ReadingIncidents& RemoteNamespace::Incidents() {
    server_->MoveFindingsTo(report_);
    return report_.Incidents();
}

ReadingIncidents RemoteNamespace::TakeIncidents() {
    server_->MoveFindingsTo(report_);
    return report_.TakeIncidents();
}

void RemoteNamespace::DeclarePluginQualifiers(const std::string& pluginName) {
    pluginName_ = pluginName;
    Declare(kPluginNameQualifier, "CIMXML");
    Declare(kPluginVersionQualifier, "");
}

void RemoteNamespace::Declare(const std::string& qualifierName, const std::string& defaultValue) {
    AddQualifierDecl(boost::dynamic_pointer_cast<TCimHTTPQualifierDecl>(
        AllocateQualifierDecl(qualifierName, TCIMValue(defaultValue), ICIMQualifierDecl::eScopeNone,
                              ICIMQualifierDecl::eFlavorNone, TCIMContext())));
}

void RemoteNamespace::AddPluginQualifiers(ICIMClass& cls, TCIMContext context) const {
    AddPluginQualifier(cls, kPluginNameQualifier, pluginName_, context);
    AddPluginQualifier(cls, kPluginVersionQualifier, kPluginVersion, context);
}

void RemoteNamespace::AddPluginQualifier(ICIMClass& cls, const std::string& name, const std::string& value,
                                         TCIMContext context) const {
    const auto declaration = GetQualifierDecl(name, TCIMContext());
    cls.AddQualifier(cls.AllocateQualifier(declaration, TCIMValue(value), context), context);
}

} // namespace NQORVYX20
