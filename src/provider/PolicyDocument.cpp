#include "provider/PolicyDocument.h"

#include "provider/HostName.h"
#include "provider/JsonValue.h"
#include "provider/NearestName.h"
#include "provider/OptionRules.h"
#include "provider/PolicyFault.h"
#include "provider/PrintableText.h"

#include <algorithm>
#include <optional>

namespace NQORVYX20 {

namespace {

using Kind = JsonValue::Kind;

constexpr const char* kServers = "servers";
constexpr const char* kMatch = "match";
constexpr const char* kForce = "force";
constexpr const char* kDefault = "default";

std::string Quoted(const std::string& text) { return '\'' + PrintableText(text) + '\''; }

[[noreturn]] void Refuse(const std::string& place, const std::string& what) { throw PolicyFault(place + ' ' + what); }

void NeedObject(const JsonValue& value, const std::string& place) {
    if (value.kind != Kind::kObject) {
        Refuse(place, "is not an object");
    }
}

/// Checks that a value is an object with no other members than these; `place` names it.
void CheckMembers(const JsonValue& value, const std::string& place, const std::vector<std::string>& names) {
    NeedObject(value, place);
    for (const auto& [name, member] : value.members) {
        if (std::find(names.begin(), names.end(), name) == names.end()) {
            Refuse(place, "has a member that there is not: " + Quoted(name) + NearestNameHint(name, names));
        }
    }
}

std::string FaultOf(const OptionRule& rule, const std::optional<ConnectionOptions::Value>& value) {
    std::string fault = rule.FaultOf(value);
    if (fault.empty() && rule.kind == OptionRule::Kind::kPath && std::get<std::string>(*value).front() != '/') {
        fault = "is not an absolute path"; // where it leads would be up to each host
    }
    return fault;
}

std::vector<std::string> OptionNames() {
    std::vector<std::string> names;
    for (const OptionRule& rule : OptionRules()) {
        names.push_back(rule.Name());
    }
    return names;
}

ConnectionOptions OptionsIn(const JsonValue& entry, const char* member, const std::string& entryPlace) {
    ConnectionOptions options;
    const JsonValue* const said = entry.Member(member);
    if (said == nullptr) {
        return options;
    }
    const std::string place = entryPlace + ", " + member;
    CheckMembers(*said, place, OptionNames());
    for (const auto& [name, value] : said->members) {
        const OptionRule& rule = *FindOptionRule(kKeyPrefix + name);
        if (const std::string fault = FaultOf(rule, value.scalar); !fault.empty()) {
            Refuse(place + ": " + name, fault);
        }
        options.Set(rule.key, *value.scalar);
    }
    if (const std::string contradiction = ContradictionIn(options); !contradiction.empty()) {
        Refuse(place + ":", contradiction);
    }
    return options;
}

/// Refuses a text that cannot be a host's name, such as a URL.
HostPattern PatternOf(const JsonValue& value, const std::string& place) {
    const auto* const text = value.scalar ? std::get_if<std::string>(&*value.scalar) : nullptr;
    if (text == nullptr) {
        Refuse(place, "has a 'match' that is neither a pattern nor a list of patterns");
    }
    if (text->empty() || !IsPlainHost(*text) || text->find('/') != std::string::npos) {
        Refuse(place, "matches no host: " + Quoted(*text));
    }
    return HostPattern(*text);
}

std::vector<HostPattern> PatternsIn(const JsonValue& entry, const std::string& place) {
    const JsonValue* const match = entry.Member(kMatch);
    if (match == nullptr || match->kind != Kind::kArray) {
        return {PatternOf(match == nullptr ? JsonValue() : *match, place)};
    }
    std::vector<HostPattern> patterns;
    for (const JsonValue& pattern : match->elements) {
        patterns.push_back(PatternOf(pattern, place));
    }
    if (patterns.empty()) {
        Refuse(place, "matches nothing");
    }
    return patterns;
}

PolicyEntry EntryOf(const JsonValue& entry, const std::string& place) {
    CheckMembers(entry, place, {kMatch, kForce, kDefault});
    return {PatternsIn(entry, place), OptionsIn(entry, kForce, place), OptionsIn(entry, kDefault, place)};
}

} // namespace

PolicyDocument::PolicyDocument(const std::string& text) {
    const JsonValue document = ReadJson(text);
    CheckMembers(document, "the document", {kServers});
    const JsonValue* const servers = document.Member(kServers);
    if (servers == nullptr) {
        return;
    }
    if (servers->kind != Kind::kArray) {
        Refuse(Quoted(kServers), "is not a list");
    }
    for (const JsonValue& entry : servers->elements) {
        entries_.push_back(EntryOf(entry, "entry " + std::to_string(entries_.size() + 1)));
    }
}

} // namespace NQORVYX20
