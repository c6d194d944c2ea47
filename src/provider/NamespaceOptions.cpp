#include "provider/NamespaceOptions.h"

#include <limits>

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

/// The number in a value of an unsigned type; 0 for any other value.
std::uint64_t UnsignedIn(const TCIMValue& value) {
    if (value.IsNull()) {
        return 0;
    }
    switch (value.GetType()) {
    case ECIMType::eCIMUint8:
        return static_cast<unsigned char>(value);
    case ECIMType::eCIMUint16:
        return static_cast<unsigned short>(value);
    case ECIMType::eCIMUint32:
        return static_cast<unsigned int>(value);
    case ECIMType::eCIMUint64:
        return static_cast<unsigned long long>(value);
    default:
        return 0;
    }
}

/// The number under a key; empty when the key is absent.
template <typename Number>
std::optional<Number> NumberOf(const TCIMContext& context, const std::string& key) {
    const auto entry = context.find(key);
    if (entry == context.end()) {
        return std::nullopt;
    }
    const std::uint64_t number = UnsignedIn(entry->second);
    if (number == 0 || number > std::numeric_limits<Number>::max()) {
        Refuse(key, "is not an unsigned number from 1 to " + std::to_string(std::numeric_limits<Number>::max()));
    }
    return static_cast<Number>(number);
}

RemoteLimits LimitsIn(const TCIMContext& context) {
    RemoteLimits limits;
    limits.connectMilliseconds = NumberOf<std::uint32_t>(context, kConnectTimeoutKey);
    limits.requestMilliseconds = NumberOf<std::uint32_t>(context, kTimeoutKey);
    limits.answerBytes = NumberOf<std::uint64_t>(context, kLimitBytesKey);
    limits.answerObjects = NumberOf<std::uint64_t>(context, kLimitObjectsKey);
    limits.elements = NumberOf<std::uint64_t>(context, kLimitElementsKey);
    return limits;
}

} // namespace

NamespaceOptions::NamespaceOptions(const TCIMContext& context)
    : fPluginName(PluginNameOf(context)),
      fIsFaithful(IsFaithfulIn(context)),
      fRemoteNamespace(RemoteNamespaceOf(context)),
      fLimits(LimitsIn(context)) {}

} // namespace NQORVYX20
