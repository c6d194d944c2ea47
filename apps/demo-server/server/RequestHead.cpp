#include "server/RequestHead.h"

#include "wire/PercentEncoding.h"

#include <boost/beast/core/string.hpp>
#include <boost/beast/http/rfc7230.hpp>

#include <algorithm>
#include <array>

namespace demo {

namespace beast = boost::beast;
namespace http = beast::http;

namespace {

constexpr unsigned kVersion11 = 11;

} // namespace

std::string HeaderOf(const RequestHead& head, std::string_view name) {
    return head[{name.data(), name.size()}].to_string();
}

std::string PathOf(const RequestHead& head) {
    const auto target = head.target();
    return PercentDecode(target.substr(0, target.find_first_of("?#")).to_string());
}

bool IsKnownMethod(const RequestHead& head) {
    using http::verb;
    constexpr std::array kKnown{verb::get,     verb::head,    verb::post,  verb::put,  verb::delete_,
                                verb::connect, verb::options, verb::trace, verb::patch};
    return std::find(kKnown.begin(), kKnown.end(), head.method()) != kKnown.end();
}

bool IsXml(const RequestHead& head) {
    const std::string type = HeaderOf(head, "Content-Type");
    const auto end = type.find_first_of("; \t");
    const beast::string_view essence(type.data(), std::min(end, type.size()));
    return beast::iequals(essence, "application/xml") || beast::iequals(essence, "text/xml");
}

bool AwaitsContinue(const RequestHead& head) {
    return TakesChunks(head) && beast::iequals(head[http::field::expect], "100-continue");
}

bool TakesChunks(const RequestHead& head) { return head.version() >= kVersion11; }

bool TakesTrailers(const RequestHead& head) {
    return TakesChunks(head) && http::ext_list(head[http::field::te]).exists("trailers");
}

} // namespace demo
