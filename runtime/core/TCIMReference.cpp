#include "host/TCIMReference.h"

#include "../NameCase.h"
#include "host/TCIMValue.h"

#include <algorithm>
#include <string_view>

namespace NQORVYX20 {

namespace {

constexpr std::size_t kMaxSearched = 32; // more keys than that get an index
constexpr std::size_t kUsualKeys = 4;
constexpr std::size_t kUsualPath = 256; // bytes

bool IsNameBefore(std::string_view left, std::string_view right) {
    return std::lexicographical_compare(left.begin(), left.end(), right.begin(), right.end(),
                                        [](char a, char b) { return names::ToLower(a) < names::ToLower(b); });
}

bool IsWrittenBare(TCIMValue::TCIMType type) {
    return type >= TCIMValue::TCIMType::eCIMBoolean && type <= TCIMValue::TCIMType::eCIMReal64;
}

void AppendQuoted(std::string& path, std::string_view text) {
    path += '"';
    const auto isEscaped = [](char c) { return c == '"' || c == '\\'; };
    auto plain = text.begin(); // what is escaped goes with the plain characters that follow it
    for (auto next = std::find_if(plain, text.end(), isEscaped); next != text.end();
         next = std::find_if(next + 1, text.end(), isEscaped)) {
        path.append(plain, next) += '\\';
        plain = next;
    }
    path.append(plain, text.end()) += '"';
}

void AppendScalar(std::string& path, const TCIMValue& value) {
    if (value.IsNull()) {
        path += "NULL";
    } else if (IsWrittenBare(value.GetType())) {
        path += value.ToString(10);
    } else {
        AppendQuoted(path, value.ToString(10));
    }
}

void AppendValue(std::string& path, const TCIMValue& value) {
    if (value.IsNull() || !value.IsArray()) {
        return AppendScalar(path, value);
    }
    const char* separator = "{";
    const std::vector<TCIMValue>& elements = value;
    for (const TCIMValue& element : elements) {
        path += separator;
        AppendScalar(path, element);
        separator = ",";
    }
    path += elements.empty() ? "{}" : "}";
}

} // namespace

TCIMReference::TCIMReference(boost::shared_ptr<ICIMNamespace> nameSpace, TCIMContext keys)
    : namespace_(nameSpace), keyValues_(keys.begin(), keys.end()) {
    ExtendIndex();
}

TCIMReference::~TCIMReference() = default;

void TCIMReference::AddKeyValue(const std::string& name, const TCIMValue& value) {
    const std::size_t place = FindKey(name);
    if (place < keyValues_.size()) {
        keyValues_[place].second = value;
        return;
    }
    if (keyValues_.size() == 1) {
        keyValues_.reserve(kUsualKeys); // most paths have one key, or a few
    }
    keyValues_.emplace_back(name, value);
    ExtendIndex();
}

TCIMValue TCIMReference::GetKeyValue(const std::string& name) const {
    const std::size_t place = FindKey(name);
    return place < keyValues_.size() ? keyValues_[place].second : TCIMValue();
}

std::size_t TCIMReference::FindKey(const std::string& name) const {
    if (keyValues_.size() > kMaxSearched) {
        const auto found = index_.find(names::LowerCase(name));
        return found == index_.end() ? keyValues_.size() : found->second;
    }
    const auto found = std::find_if(keyValues_.begin(), keyValues_.end(), [&name](const TKeyValue& keyValue) {
        return names::IsSameName(keyValue.first, name);
    });
    return static_cast<std::size_t>(found - keyValues_.begin());
}

// Keys that the constructor got in several spellings share an entry, so that the index may be shorter than the list.
void TCIMReference::ExtendIndex() {
    if (keyValues_.size() <= kMaxSearched) {
        return;
    }
    for (std::size_t place = index_.size(); place < keyValues_.size(); ++place) {
        index_.emplace(names::LowerCase(keyValues_[place].first), place);
    }
}

void TCIMReference::EnumerateKeyValues(
    const boost::function<bool(const std::string&, const TCIMValue&)>& callback) const {
    for (const auto& [key, keyValue] : keyValues_) {
        if (!callback(key, keyValue)) {
            return;
        }
    }
}

std::string TCIMReference::GetPath() const {
    std::vector<const TKeyValue*> sorted;
    sorted.reserve(keyValues_.size());
    for (const TKeyValue& keyValue : keyValues_) {
        sorted.push_back(&keyValue);
    }
    std::sort(sorted.begin(), sorted.end(),
              [](const TKeyValue* left, const TKeyValue* right) { return IsNameBefore(left->first, right->first); });

    std::string path;
    path.reserve(kUsualPath);
    if (!host_.empty()) {
        path.append("//").append(host_).append("/");
    }
    if (!namespaceName_.empty()) {
        path.append(namespaceName_).append(":");
    }
    path.append(className_);
    const char* separator = className_.empty() ? "" : ".";
    for (const TKeyValue* keyValue : sorted) {
        if (!keyValue->first.empty()) {
            path.append(separator).append(keyValue->first);
        }
        path.append("=");
        AppendValue(path, keyValue->second);
        separator = ",";
    }
    return path;
}

bool operator==(const TCIMReference& left, const TCIMReference& right) { return left.GetPath() == right.GetPath(); }

bool operator<(const TCIMReference& left, const TCIMReference& right) { return left.GetPath() < right.GetPath(); }

} // namespace NQORVYX20
