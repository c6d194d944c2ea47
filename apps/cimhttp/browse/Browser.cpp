#include "browse/Browser.h"

#include "browse/PageFiles.h"
#include "web/QueryText.h"

namespace cimhttp {

namespace {

/// Nothing that a page is made of comes from elsewhere or runs because a text says so, and no other page has it inside.
const std::vector<std::pair<std::string, std::string>>& Protection() {
    static const std::vector<std::pair<std::string, std::string>> headers{
        {"Content-Security-Policy",
         "default-src 'none'; script-src 'self'; style-src 'self'; img-src 'self' data: blob:; connect-src 'self'; "
         "base-uri 'none'; form-action 'none'; frame-ancestors 'none'"},
        {"Cross-Origin-Opener-Policy", "same-origin"},
        {"Cross-Origin-Resource-Policy", "same-origin"},
        {"Referrer-Policy", "no-referrer"},
        {"X-Frame-Options", "DENY"}};
    return headers;
}

WebAnswer Page(const std::string& path) {
    const PageFile* const file = FindPageFile(path == "/" ? "index.html" : path.substr(1));
    return file == nullptr ? WebAnswer{404, "text/plain; charset=utf-8", "There is nothing here.\n"}
                           : WebAnswer{200, MediaTypeOf(file->name), std::string(file->content)};
}

} // namespace

Browser::Browser(const Plugin& plugin, const Options& options, const std::string& address, int port)
    : gate_(address, port), api_(plugin, options) {}

WebAnswer Browser::Answer(const WebRequest& request) {
    WebAnswer answer = Unprotected(request);
    answer.headers.insert(answer.headers.end(), Protection().begin(), Protection().end());
    return answer;
}

WebAnswer Browser::Unprotected(const WebRequest& request) {
    if (auto refusal = gate_.Refusal(request)) {
        return *refusal;
    }
    if (BrowserGate::IsEntrance(request)) {
        return gate_.Enter(request, FirstPage());
    }
    auto parts = PathParts(request.path);
    if (!parts.empty() && parts.front() == "api") {
        parts.erase(parts.begin());
        return api_.Answer(parts, request);
    }
    return Page(request.path);
}

/// That of the server that the command line names, if it names one.
std::string Browser::FirstPage() const {
    const std::string server = api_.Servers().NameOfFirst();
    return server.empty() ? "/" : "/#/s/" + PercentEncoded(server);
}

} // namespace cimhttp
