#pragma once

#include <boost/beast/http/message.hpp>

#include <string>
#include <string_view>

namespace demo {

/// The method, target, version and headers of a request.
using RequestHead = boost::beast::http::request_header<>;

/// The value of a header, empty without it.
std::string HeaderOf(const RequestHead& head, std::string_view name);

/// The target without its query.
std::string PathOf(const RequestHead& head);

/// Whether the method is one of HTTP's, even one that this server does not serve.
bool IsKnownMethod(const RequestHead& head);

/// Whether the body is said to be XML.
bool IsXml(const RequestHead& head);

/// Whether the client waits to be told to send the body (RFC 9110, 10.1.1).
bool AwaitsContinue(const RequestHead& head);

/// Whether the client can read an answer in chunks.
bool TakesChunks(const RequestHead& head);

/// Whether the client wants headers after the body of an answer.
bool TakesTrailers(const RequestHead& head);

} // namespace demo
