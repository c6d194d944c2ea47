#include "provider/ConnectionPolicy.h"

#include "provider/HostName.h"
#include "provider/PolicyFault.h"
#include "provider/PrintableText.h"

#include <algorithm>

namespace NQORVYX20 {

ConnectionPolicy::ConnectionPolicy(const PolicyFile& file) : path_(file.Path()) {
    try {
        Read(file);
    } catch (const PolicyFault& fault) {
        throw PolicyFault(Name() + ": " + fault.what());
    }
}

void ConnectionPolicy::Read(const PolicyFile& file) {
    if (const auto text = file.Read()) {
        entries_ = PolicyDocument(*text).Entries();
    }
}

std::vector<ConnectionPolicy::Match> ConnectionPolicy::MatchesFor(const std::string& host) const {
    if (!entries_.empty() && !IsPlainHost(host)) {
        throw PolicyFault(Name() + ": it cannot be told which entries count for the host '" + PrintableText(host) +
                          "'");
    }
    std::vector<Match> matches;
    for (std::size_t i = 0; i < entries_.size(); ++i) {
        const auto& patterns = entries_[i].patterns;
        const auto found = std::find_if(patterns.begin(), patterns.end(),
                                        [&](const HostPattern& pattern) { return pattern.Matches(host); });
        if (found != patterns.end()) {
            matches.push_back(
                {&entries_[i], "entry " + std::to_string(i + 1) + " ('" + PrintableText(found->Text()) + "')"});
        }
    }
    return matches;
}

} // namespace NQORVYX20
