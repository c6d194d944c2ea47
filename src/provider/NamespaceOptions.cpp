#include "provider/NamespaceOptions.h"

#include "cimhttp/ContextKeys.h"
#include "convert/CoreLog.h"
#include "convert/UnsignedNumber.h"
#include "host/TCIMValue.h"
#include "host/TVYXException.h"
#include "provider/NearestName.h"
#include "provider/OptionRules.h"
#include "provider/PrintableText.h"
#include "provider/TlsOptions.h"

#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

namespace NQORVYX20 {

namespace {

using ECIMType = TCIMValue::TCIMType::ECIMType;

[[noreturn]] void RefuseContext(const std::string& why) {
    LogError("TCimHTTPNamespace: " + why);
    throw TVYXException(TVYXStatusCode::eTypeMismatch);
}

[[noreturn]] void Refuse(const std::string& key, const std::string& what) {
    RefuseContext("the context value '" + key + "' " + what);
}

std::string PluginNameOf(const TCIMContext& context) {
    const auto entry = context.find(kPluginNameKey);
    if (entry == context.end()) {
        LogError("TCIMHTTPNamespace: 'pluginNameQualDeclValue' not passed via context");
        throw TVYXException(TVYXStatusCode::eContextValueMissing);
    }
    return static_cast<std::string>(entry->second);
}

bool IsFaithfulIn(const TCIMContext& context) {
    const auto entry = context.find(kReadingKey);
    if (entry == context.end()) {
        return false;
    }
    if (entry->second.IsNull() || entry->second.GetType() != ECIMType::eCIMString) {
        Refuse(kReadingKey, "is not a text");
    }
    const auto reading = static_cast<std::string>(entry->second);
    if (reading != kFaithfulReading && reading != kCompatibleReading) {
        Refuse(kReadingKey, "is '" + PrintableText(reading) + "', which is neither '" + kCompatibleReading + "' nor '" +
                                kFaithfulReading + "'");
    }
    return reading == kFaithfulReading;
}

bool IsLenientIn(const TCIMContext& context, bool isFaithful) {
    const auto entry = context.find(kLenientKey);
    if (entry == context.end()) {
        return false;
    }
    if (entry->second.IsNull() || entry->second.GetType() != ECIMType::eCIMBoolean) {
        Refuse(kLenientKey, "is neither true nor false");
    }
    const bool isLenient = static_cast<bool>(entry->second);
    if (isLenient && !isFaithful) {
        Refuse(kLenientKey, std::string("is true, which the reading '") + kCompatibleReading + "' does not have");
    }
    return isLenient;
}

/// The host's value as that of an option; empty when options have no such type.
std::optional<ConnectionOptions::Value> OptionValueOf(const TCIMValue& value) {
    if (value.IsNull()) {
        return std::nullopt;
    }
    switch (value.GetType()) {
    case ECIMType::eCIMBoolean:
        return static_cast<bool>(value);
    case ECIMType::eCIMString:
        return static_cast<std::string>(value);
    default:
        const auto number = UnsignedNumber(value);
        return number ? std::optional<ConnectionOptions::Value>(*number) : std::nullopt;
    }
}

[[noreturn]] void RefuseUnknown(const std::string& key) {
    std::vector<std::string> keys{kReadingKey, kLenientKey};
    for (const OptionRule& rule : OptionRules()) {
        keys.push_back(rule.key);
    }
    RefuseContext("there is no context key '" + PrintableText(key) + "'" + NearestNameHint(key, keys));
}

void TakeOption(const std::string& key, const TCIMValue& value, ConnectionOptions& options) {
    const OptionRule* const rule = FindOptionRule(key);
    if (rule == nullptr) {
        RefuseUnknown(key);
    }
    auto optionValue = OptionValueOf(value);
    if (const std::string fault = rule->FaultOf(optionValue); !fault.empty()) {
        Refuse(key, fault);
    }
    options.Set(key, *std::move(optionValue));
}

ConnectionOptions ConnectionIn(const TCIMContext& context) {
    ConnectionOptions options;
    for (const auto& [key, value] : context) {
        if (key.rfind(kKeyPrefix, 0) == 0 && key != kReadingKey && key != kLenientKey) {
            TakeOption(key, value, options);
        }
    }
    if (const std::string contradiction = ContradictionIn(options); !contradiction.empty()) {
        RefuseContext(contradiction);
    }
    if (const std::string unsupported = UnsupportedIn(options); !unsupported.empty()) {
        RefuseContext(unsupported);
    }
    return options;
}

} // namespace

NamespaceOptions::NamespaceOptions(const TCIMContext& context)
    : pluginName_(PluginNameOf(context)),
      isFaithful_(IsFaithfulIn(context)),
      isLenient_(IsLenientIn(context, isFaithful_)),
      connection_(ConnectionIn(context)) {}

} // namespace NQORVYX20
