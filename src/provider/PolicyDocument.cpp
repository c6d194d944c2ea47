#include "provider/PolicyDocument.h"

#include <algorithm>
#include <cstdint>
#include <functional>
#include <nlohmann/json.hpp>
#include <optional>
#include <set>
#include <utility>

#include "provider/HostName.h"
#include "provider/NearestName.h"
#include "provider/OptionRules.h"
#include "provider/PolicyFault.h"
#include "provider/PrintableText.h"

namespace NQORVYX20 {

namespace {

using nlohmann::json;

constexpr const char* kServers = "servers";
constexpr const char* kMatch = "match";
constexpr const char* kForce = "force";
constexpr const char* kDefault = "default";

std::string Quoted(const std::string& text) { return '\'' + PrintableText(text) + '\''; }

// --- Reading -----------------------------------------------------------------------------------------------------

/// Looks at a document while it is read, for what its tree no longer shows or should not have to hold.
class ReadingCheck {
  public:
    bool operator()(int depth, json::parse_event_t event, const json& parsed) {
        if (depth > kMaxDepth) {
            throw PolicyFault("is nested too deeply for a policy");
        }
        if (event == json::parse_event_t::object_start) {
            fNames.emplace_back();
        } else if (event == json::parse_event_t::object_end) {
            fNames.pop_back();
        } else if (event == json::parse_event_t::key) {
            CheckName(parsed.get_ref<const std::string&>());
        }
        return true;
    }

  private:
    static constexpr int kMaxDepth = 8; // a policy has 4

    void CheckName(const std::string& name) {
        if (!fNames.back().insert(name).second) {
            throw PolicyFault("has the member " + Quoted(name) + " twice in one object");
        }
    }

    std::vector<std::set<std::string>> fNames; ///< of the members so far, of each object that is open
};

/// What the parser says, without the part that is for programmers: "[json.exception.parse_error.101] parse error at
/// line 1, column 2: ..."
std::string Complaint(const json::exception& error) {
    const std::string what = error.what();
    const auto end = what.find("] ");
    return PrintableText(end == std::string::npos ? what : what.substr(end + 2));
}

json Parse(const std::string& text) {
    ReadingCheck check;
    try {
        return json::parse(text, std::ref(check));
    } catch (const json::exception& error) {
        throw PolicyFault("is no JSON: " + Complaint(error));
    }
}

// --- Understanding -----------------------------------------------------------------------------------------------

[[noreturn]] void Refuse(const std::string& place, const std::string& what) { throw PolicyFault(place + ' ' + what); }

void NeedObject(const json& value, const std::string& place) {
    if (!value.is_object()) {
        Refuse(place, "is not an object");
    }
}

/// An object that has no other members than these; `place` names it.
void CheckMembers(const json& value, const std::string& place, const std::vector<std::string>& names) {
    NeedObject(value, place);
    for (const auto& [name, member] : value.items()) {
        if (std::find(names.begin(), names.end(), name) == names.end()) {
            Refuse(place, "has a member that there is not: " + Quoted(name) + NearestNameHint(name, names));
        }
    }
}

std::optional<ConnectionOptions::Value> OptionValueOf(const json& value) {
    if (value.is_boolean()) {
        return value.get<bool>();
    }
    if (value.is_number_unsigned()) {
        return value.get<std::uint64_t>();
    }
    if (value.is_string()) {
        return value.get<std::string>();
    }
    return std::nullopt;
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

ConnectionOptions OptionsIn(const json& entry, const char* member, const std::string& entryPlace) {
    ConnectionOptions options;
    const auto found = entry.find(member);
    if (found == entry.end()) {
        return options;
    }
    const std::string place = entryPlace + ", " + member;
    CheckMembers(*found, place, OptionNames());
    for (const auto& [name, value] : found->items()) {
        const OptionRule& rule = *FindOptionRule(kKeyPrefix + name);
        const auto optionValue = OptionValueOf(value);
        if (const std::string fault = FaultOf(rule, optionValue); !fault.empty()) {
            Refuse(place + ": " + name, fault);
        }
        options.Set(rule.key, *optionValue);
    }
    if (const std::string contradiction = ContradictionIn(options); !contradiction.empty()) {
        Refuse(place + ":", contradiction);
    }
    return options;
}

/// Refuses what can be no host's, such as an address of the web.
HostPattern PatternOf(const json& value, const std::string& place) {
    if (!value.is_string()) {
        Refuse(place, "has a 'match' that is neither a pattern nor a list of patterns");
    }
    const auto text = value.get<std::string>();
    if (text.empty() || !IsPlainHost(text) || text.find('/') != std::string::npos) {
        Refuse(place, "matches no host: " + Quoted(text));
    }
    return HostPattern(text);
}

std::vector<HostPattern> PatternsIn(const json& entry, const std::string& place) {
    const json match = entry.value(kMatch, json());
    if (!match.is_array()) {
        return {PatternOf(match, place)};
    }
    std::vector<HostPattern> patterns;
    for (const json& pattern : match) {
        patterns.push_back(PatternOf(pattern, place));
    }
    if (patterns.empty()) {
        Refuse(place, "matches nothing");
    }
    return patterns;
}

PolicyEntry EntryOf(const json& entry, const std::string& place) {
    CheckMembers(entry, place, {kMatch, kForce, kDefault});
    return {PatternsIn(entry, place), OptionsIn(entry, kForce, place), OptionsIn(entry, kDefault, place)};
}

} // namespace

PolicyDocument::PolicyDocument(const std::string& text) {
    const json document = Parse(text);
    CheckMembers(document, "the document", {kServers});
    const json servers = document.value(kServers, json::array());
    if (!servers.is_array()) {
        Refuse(Quoted(kServers), "is not a list");
    }
    for (const json& entry : servers) {
        fEntries.push_back(EntryOf(entry, "entry " + std::to_string(fEntries.size() + 1)));
    }
}

} // namespace NQORVYX20
