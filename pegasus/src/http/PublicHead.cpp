#include "http/PublicHead.h"

#include "http/HttpHead.h"
#include "text/Ascii.h"

#include <algorithm>
#include <array>

namespace Pegasus::http {

namespace {

constexpr std::string_view kLeftOut = " (left out)";

bool holdsCredentials(std::string_view line) {
    constexpr std::array<std::string_view, 4> kFields{"Authorization", "Proxy-Authorization", "Cookie", "Set-Cookie"};
    const std::string_view written = line.substr(0, line.find(':'));
    const std::string_view name = written.substr(0, written.find_last_not_of(" \t") + 1);
    return name.size() < line.size() && std::any_of(kFields.begin(), kFields.end(), [&](std::string_view field) {
               return text::equalIgnoringCase(name, field);
           });
}

/// Whether a line goes on with the value of the one before it.
bool isContinuation(std::string_view line) { return !line.empty() && (line.front() == ' ' || line.front() == '\t'); }

} // namespace

std::string withoutCredentials(std::string_view head) {
    std::string shown;
    bool leavesOut = false;
    while (!head.empty()) {
        const std::string_view line = head.substr(0, std::min(head.find('\n'), head.size() - 1) + 1);
        head.remove_prefix(line.size());
        if (leavesOut && isContinuation(line)) {
            continue;
        }
        leavesOut = holdsCredentials(line);
        if (leavesOut) {
            shown.append(line.substr(0, line.find(':') + 1)).append(kLeftOut).append("\r\n");
        } else {
            shown += line;
        }
    }
    return shown;
}

} // namespace Pegasus::http
