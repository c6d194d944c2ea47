#include "browse/BrowserGate.h"

#include "PasswordHash.h"
#include "text/Ascii.h"
#include "text/Unguessable.h"

#include <algorithm>
#include <sstream>

namespace cimhttp {

namespace {

constexpr const char* kEntrance = "/enter";
constexpr int kWebPort = 80; // which addresses leave out

WebAnswer Refused(const std::string& reason) { return {403, "text/plain; charset=utf-8", reason + '\n'}; }

std::string HeaderOf(const WebRequest& request, const char* name) {
    const auto found = request.headers.find(name);
    return found == request.headers.end() ? std::string() : AsciiLower(found->second);
}

std::vector<std::string> HostsOf(const std::string& address, int port) {
    const std::string quoted = address.find(':') == std::string::npos ? address : '[' + address + ']';
    std::vector<std::string> hosts;
    for (const std::string& name : {quoted, std::string("localhost")}) {
        hosts.push_back(name + ':' + std::to_string(port));
        if (port == kWebPort) {
            hosts.push_back(name);
        }
    }
    return hosts;
}

} // namespace

BrowserGate::BrowserGate(const std::string& address, int port)
    : hosts_(HostsOf(address, port)),
      token_(UnguessableText()),
      cookieName_("cimhttp-" + std::to_string(port)), // browsers send cookies to all ports of a host
      cookie_(UnguessableText()) {}

std::string BrowserGate::Entrance() const { return std::string(kEntrance) + "?token=" + token_; }

bool BrowserGate::IsEntrance(const WebRequest& request) { return request.path == kEntrance && !request.isPost; }

std::optional<WebAnswer> BrowserGate::Refusal(const WebRequest& request) const {
    if (!IsForThisServer(request)) {
        return Refused("This server is not called so.");
    }
    if (IsEntrance(request)) {
        return std::nullopt;
    }
    if (!IsFromThisServer(request)) {
        return Refused("Another site may not ask this.");
    }
    if (!HasCookie(request)) {
        return Refused("Open the address that the program has printed, in this browser.");
    }
    return std::nullopt;
}

WebAnswer BrowserGate::Enter(const WebRequest& request, const std::string& page) {
    const auto given = request.parameters.find("token");
    if (given == request.parameters.end() || !password_hash::AreEqualInConstantTime(given->second, token_)) {
        return Refused("This is not the address that the program has printed.");
    }
    const std::lock_guard<std::mutex> lock(mutex_);
    if (isUsed_) {
        return Refused("This address lets in once, and has done so. End the program and start it again for another.");
    }
    isUsed_ = true;
    // A page that leads on, not a redirection: behind a link on another site, that would come without the cookie.
    return {200,
            "text/html; charset=utf-8",
            "<!DOCTYPE html><html lang=\"en\"><head><meta http-equiv=\"refresh\" content=\"0; url=" + page +
                "\"><title>cimhttp</title></head><body><p><a href=\"" + page + "\">Go on</a></p></body></html>\n",
            {{"Set-Cookie", cookieName_ + '=' + cookie_ + "; Path=/; HttpOnly; SameSite=Strict"}}};
}

bool BrowserGate::IsForThisServer(const WebRequest& request) const {
    return std::find(hosts_.begin(), hosts_.end(), HeaderOf(request, "host")) != hosts_.end();
}

bool BrowserGate::IsFromThisServer(const WebRequest& request) const {
    const std::string site = HeaderOf(request, "sec-fetch-site");
    const std::string origin = HeaderOf(request, "origin");
    const bool isOrigin = origin == "http://" + HeaderOf(request, "host");
    return (site.empty() || site == "same-origin" || site == "none") &&
           (isOrigin || (origin.empty() && !request.isPost));
}

bool BrowserGate::HasCookie(const WebRequest& request) const {
    std::istringstream cookies(HeaderOf(request, "cookie")); // the cookie has no capital letters
    for (std::string cookie; std::getline(cookies >> std::ws, cookie, ';');) {
        if (cookie.compare(0, cookieName_.size() + 1, cookieName_ + '=') == 0 &&
            password_hash::AreEqualInConstantTime(cookie.substr(cookieName_.size() + 1), cookie_)) {
            return true;
        }
    }
    return false;
}

} // namespace cimhttp
