#pragma once

#include "http/Endpoint.h"
#include "http/HttpConnection.h"
#include "http/HttpHead.h"

#include <Pegasus/Common/AcceptLanguageList.h>
#include <Pegasus/Common/ContentLanguageList.h>

#include <optional>
#include <string>
#include <string_view>

namespace Pegasus::client {

/// A CIM operation as an HTTP request: its extension headers repeat what the body says (DSP0200, CIM extension
/// headers). The languages are those that the texts in the answer should be in.
http::HttpRequest makeCimRequest(std::string_view method, std::string_view nameSpace, std::string body,
                                 const AcceptLanguageList& languages = AcceptLanguageList());

/// Checks that an answer is that of a CIM operation. Throws CIMClientHTTPErrorException for a status other than 200 and
/// CIMClientMalformedHTTPException when the CIMOperation header or the content type is not right.
void checkCimAnswer(const http::HttpHead& head, const http::Endpoint& endpoint);

/// Throws the CIMException that the trailers report, if any: a server that has begun to send its answer can tell of an
/// error only there. Throws CIMClientMalformedHTTPException for a status that is not a number.
void checkCimTrailers(const http::HttpFields& trailers, const http::Endpoint& endpoint);

/// What the fields of an answer tell of it apart from its status.
struct AnswerRemarks {
    std::optional<Uint64> serverMicroseconds; ///< the processing time that the server states
    ContentLanguageList languages;
};

/// Adds what the fields of a head, or trailers, say. What cannot be understood is left out.
void addRemarks(const http::HttpFields& fields, AnswerRemarks& remarks);

} // namespace Pegasus::client
