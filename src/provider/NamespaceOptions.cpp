#include "provider/NamespaceOptions.h"

#include "cimhttp/ContextKeys.h"
#include "convert/CoreLog.h"
#include "convert/StatusCodes.h"
#include "host/TCIMValue.h"
#include "host/TVYXException.h"

namespace NQORVYX20 {

namespace {

using ECIMType = TCIMValue::TCIMType::ECIMType;

constexpr const char* kPluginNameKey = "pluginNameQualDeclValue";

[[noreturn]] void Refuse(const std::string& key, const std::string& what) {
    LogError("TCimHTTPNamespace: the context value '" + key + "' " + what);
    throw TVYXException(kTypeMismatch);
}

/// The text under a key; empty when the key is absent.
std::optional<std::string> TextOf(const TCIMContext& context, const std::string& key) {
    const auto entry = context.find(key);
    if (entry == context.end()) {
        return std::nullopt;
    }
    if (entry->second.IsNull() || entry->second.GetType() != ECIMType::eCIMString) {
        Refuse(key, "is not a text");
    }
    return static_cast<std::string>(entry->second);
}

std::string PluginNameOf(const TCIMContext& context) {
    const auto entry = context.find(kPluginNameKey);
    if (entry == context.end()) {
        LogError("TCIMHTTPNamespace: 'pluginNameQualDeclValue' not passed via context");
        throw TVYXException(kContextValueMissing);
    }
    return static_cast<std::string>(entry->second);
}

bool IsFaithfulIn(const TCIMContext& context) {
    const std::string reading = TextOf(context, kReadingKey).value_or(kCompatibleReading);
    if (reading != kFaithfulReading && reading != kCompatibleReading) {
        Refuse(kReadingKey,
               "is '" + reading + "', which is neither '" + kCompatibleReading + "' nor '" + kFaithfulReading + "'");
    }
    return reading == kFaithfulReading;
}

std::optional<Pegasus::CIMNamespaceName> RemoteNamespaceOf(const TCIMContext& context) {
    const auto name = TextOf(context, kNamespaceKey);
    if (!name) {
        return std::nullopt;
    }
    try {
        return Pegasus::CIMNamespaceName(name->c_str());
    } catch (const Pegasus::Exception&) {
        Refuse(kNamespaceKey, "is '" + *name + "', which is no name of a namespace");
    }
}

} // namespace

NamespaceOptions::NamespaceOptions(const TCIMContext& context)
    : fPluginName(PluginNameOf(context)),
      fIsFaithful(IsFaithfulIn(context)),
      fRemoteNamespace(RemoteNamespaceOf(context)) {}

} // namespace NQORVYX20
