#include "server/Answer.h"

#include <utility>

namespace demo {

namespace {

/// The version of DSP0201 that has all that is sent: null elements of arrays, and the attribute EmbeddedObject.
constexpr const char* kDtdVersion = "2.3.0";

void StartResponse(XmlWriter& writer, const CimRequest& request) {
    const bool isExtrinsic = request.kind == CimRequest::Kind::kExtrinsic;
    writer.Declaration();
    writer.Start("CIM").Attribute("CIMVERSION", "2.0").Attribute("DTDVERSION", kDtdVersion);
    writer.Start("MESSAGE").Attribute("ID", request.messageId).Attribute("PROTOCOLVERSION", "1.0");
    writer.Start("SIMPLERSP");
    writer.Start(isExtrinsic ? "METHODRESPONSE" : "IMETHODRESPONSE").Attribute("NAME", request.method);
}

/// Executes the operation; on an error, closes what it has left open.
std::optional<CimError> Execute(const CimService& service, const CimRequest& request, XmlWriter& writer) {
    const std::size_t depth = writer.Depth();
    std::optional<CimError> error;
    try {
        service.Execute(request, writer);
    } catch (const OutputClosed&) {
        throw;
    } catch (const CimError& failure) {
        error = failure;
    } catch (const std::exception& failure) {
        error = CimError(CimStatus::kFailed, failure.what());
    }
    writer.EndTo(depth);
    return error;
}

std::string ErrorMessage(const CimRequest& request, const CimError& error) {
    std::string text;
    XmlWriter writer([&](std::string_view portion) { text += portion; });
    StartResponse(writer, request);
    writer.Start("ERROR").Attribute("CODE", error.Code()).Attribute("DESCRIPTION", error.what()).End();
    writer.EndTo(0);
    writer.Flush();
    return text;
}

} // namespace

std::optional<WholeAnswer> Answer(const CimService& service, const CimRequest& request, const MayHold& mayHold) {
    std::string text;
    try {
        auto error = StreamAnswer(service, request, [&](std::string_view portion) {
            if (mayHold && !mayHold(text.size() + portion.size())) {
                throw OutputClosed();
            }
            text += portion;
        });
        if (error) {
            text = ErrorMessage(request, *error);
        }
        return WholeAnswer{std::move(text), std::move(error)};
    } catch (const OutputClosed&) {
        return std::nullopt;
    }
}

std::optional<CimError> StreamAnswer(const CimService& service, const CimRequest& request, XmlWriter::Output output) {
    XmlWriter writer(std::move(output));
    StartResponse(writer, request);
    auto error = Execute(service, request, writer);
    writer.EndTo(0);
    writer.Flush();
    return error;
}

} // namespace demo
