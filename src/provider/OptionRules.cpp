#include "provider/OptionRules.h"

#include "cimhttp/ContextKeys.h"
#include "convert/RemoteText.h"
#include "provider/PrintableText.h"

#include <Pegasus/Client/CIMClient.h>

#include <algorithm>
#include <cctype>
#include <cstring>
#include <iterator>
#include <limits>

namespace NQORVYX20 {

namespace {

using Kind = OptionRule::Kind;

constexpr const char* kVerification = "verification";
constexpr const char* kClientCertificate = "client certificate";

std::string NumberFault(std::optional<std::uint64_t> number, std::uint64_t greatest) {
    if (number && *number > 0 && *number <= greatest) {
        return {};
    }
    return "is not an unsigned number from 1 to " + std::to_string(greatest);
}

bool IsNamespaceName(const std::string& text) {
    try {
        const Pegasus::CIMNamespaceName name(ToRemoteText(text));
        return true;
    } catch (const Pegasus::Exception&) {
        return false;
    }
}

/// 32 pairs of hexadecimal digits, all of them with colons between them, or none.
bool IsFingerprint(const std::string& text) {
    constexpr std::size_t kPairs = 32;
    const std::size_t step = text.size() == 2 * kPairs ? 2 : 3;
    if (text.size() != kPairs * step - (step - 2)) {
        return false;
    }
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto character = static_cast<unsigned char>(text[i]);
        if (i % step == 2 ? character != ':' : std::isxdigit(character) == 0) {
            return false;
        }
    }
    return true;
}

std::string TextFault(Kind kind, const std::string& text) {
    if (text.empty()) {
        return "is empty";
    }
    if (text.find('\0') != std::string::npos) {
        return "holds a null character";
    }
    if (kind == Kind::kNamespace && !IsNamespaceName(text)) {
        return "is '" + PrintableText(text) + "', which is no name of a namespace";
    }
    if (kind == Kind::kFingerprint && !IsFingerprint(text)) {
        return "is '" + PrintableText(text) + "', which is not a SHA-256 of 64 hexadecimal digits";
    }
    return {};
}

template <typename Type>
std::optional<Type> As(const std::optional<ConnectionOptions::Value>& value) {
    const Type* const held = value ? std::get_if<Type>(&*value) : nullptr;
    return held == nullptr ? std::nullopt : std::optional<Type>(*held);
}

} // namespace

std::string OptionRule::Name() const { return key.substr(std::strlen(kKeyPrefix)); }

std::string OptionRule::FaultOf(const std::optional<ConnectionOptions::Value>& value) const {
    switch (kind) {
    case Kind::kFlag:
        return As<bool>(value) ? "" : "is neither true nor false";
    case Kind::kMilliseconds:
        return NumberFault(As<std::uint64_t>(value), std::numeric_limits<std::uint32_t>::max());
    case Kind::kCount:
        return NumberFault(As<std::uint64_t>(value), std::numeric_limits<std::uint64_t>::max());
    default:
        const auto text = As<std::string>(value);
        return text ? TextFault(kind, *text) : "is not a text";
    }
}

const std::vector<OptionRule>& OptionRules() {
    static const std::vector<OptionRule> kRules{
        {kNamespaceKey, Kind::kNamespace, kNamespaceKey},
        {kTlsKey, Kind::kFlag, kTlsKey},
        {kTrustKey, Kind::kPath, kVerification},
        {kFingerprintKey, Kind::kFingerprint, kVerification},
        {kClientCertificateKey, Kind::kPath, kClientCertificate},
        {kClientKeyKey, Kind::kPath, kClientCertificate},
        {kConnectTimeoutKey, Kind::kMilliseconds, kConnectTimeoutKey},
        {kTimeoutKey, Kind::kMilliseconds, kTimeoutKey},
        {kLimitBytesKey, Kind::kCount, kLimitBytesKey},
        {kLimitObjectsKey, Kind::kCount, kLimitObjectsKey},
        {kLimitElementsKey, Kind::kCount, kLimitElementsKey},
        {kTraceKey, Kind::kPath, kTraceKey},
    };
    return kRules;
}

const OptionRule* FindOptionRule(const std::string& key) {
    const auto& rules = OptionRules();
    const auto found = std::find_if(rules.begin(), rules.end(), [&](const auto& rule) { return rule.key == key; });
    return found == rules.end() ? nullptr : &*found;
}

std::vector<std::string> KeysThatNeedTls(const ConnectionOptions& options) {
    std::vector<std::string> keys{kTrustKey, kFingerprintKey, kClientCertificateKey, kClientKeyKey};
    keys.erase(std::remove_if(keys.begin(), keys.end(), [&](const auto& key) { return !options.Has(key); }),
               keys.end());
    return keys;
}

std::string ContradictionIn(const ConnectionOptions& options) {
    if (options.Has(kClientKeyKey) && !options.Has(kClientCertificateKey)) {
        return std::string(kClientKeyKey) + " is the key of no certificate: " + kClientCertificateKey + " is not there";
    }
    if (const auto keys = KeysThatNeedTls(options); !keys.empty() && options.Flag(kTlsKey) == false) {
        return keys.front() + " cannot be kept where " + kTlsKey + " is false";
    }
    return {};
}

} // namespace NQORVYX20
