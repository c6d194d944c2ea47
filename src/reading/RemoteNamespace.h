#pragma once

#include "cimhttp/ReadingIncidents.h"
#include "cimhttp/RemoteFailure.h"
#include "model/SchemaNamespace.h"
#include "reading/DefinitionBudget.h"
#include "reading/ReadingReport.h"

#include <memory>
#include <optional>
#include <string>

namespace NQORVYX20 {

class RemoteServer;

/// A namespace that is filled from a server, as a Reading works with it: what the namespace holds, the server, what
/// went wrong, and how much may be held.
class RemoteNamespace : public SchemaNamespace {
  public:
    RemoteNamespace(bool redefine, std::unique_ptr<RemoteServer> server);
    ~RemoteNamespace() override;

    RemoteServer& Server() { return *server_; }
    ReadingReport& Report() { return report_; }
    DefinitionBudget& Budget() { return budget_; }

    /// Why the newest operation that asked the server could not read it, or not all of it; empty when it could.
    const std::optional<RemoteFailure>& LastFailure() const { return report_.Failure(); }

    /// What could not be taken from the server's answers, since the namespace was made or TakeIncidents was called.
    const ReadingIncidents& Incidents();
    ReadingIncidents TakeIncidents();

    /// Puts the qualifiers PLUGINNAME and PLUGINVERSION on a class.
    void AddPluginQualifiers(ICIMClass& cls, TCIMContext context) const;

  protected:
    /// Declares the qualifiers PLUGINNAME and PLUGINVERSION. Classes get this name as the value of the first one.
    void DeclarePluginQualifiers(const std::string& pluginName);

  private:
    void Declare(const std::string& qualifierName, const std::string& defaultValue);
    void AddPluginQualifier(ICIMClass& cls, const std::string& name, const std::string& value,
                            TCIMContext context) const;

    std::unique_ptr<RemoteServer> server_;
    ReadingReport report_;
    DefinitionBudget budget_;
    std::string pluginName_;
};

} // namespace NQORVYX20
