#include "DemoAnswer.h"

#include "Require.h"
#include "cimxml/ResponseDecoder.h"
#include "server/Answer.h"

#include <cstdio>
#include <string>
#include <string_view>

using namespace Pegasus;

namespace {

/// Takes whatever comes.
struct AnySink : cimxml::ReturnValueSink {
    void onClass(const CIMClass& /*cimClass*/) override {}
    void onInstance(const CIMInstance& /*instance*/) override {}
    void onObject(const CIMObject& /*object*/) override {}
    void onClassName(const CIMName& /*name*/) override {}
    void onInstanceName(const CIMObjectPath& /*name*/) override {}
    void onObjectPath(const CIMObjectPath& /*path*/) override {}
    void onQualifierDecl(const CIMQualifierDecl& /*declaration*/) override {}
};

/// The code of the error in an answer: 0 for none.
int Decode(const demo::CimRequest& request, const std::string& text) {
    AnySink sink;
    cimxml::ResponseDecoder decoder(request.messageId, request.method, sink);
    try {
        decoder.feed(text);
        decoder.finish();
    } catch (const CIMException& exception) {
        return static_cast<int>(exception.getCode());
    } catch (const Exception& exception) {
        std::fprintf(stderr, "%s\nin the answer:\n%s\n", std::string(exception.getMessage().view()).c_str(),
                     text.c_str());
        Require(false, "the client can read what the server answers");
    }
    return 0;
}

} // namespace

void CheckAnswer(const demo::CimService& service, const demo::CimRequest& request) {
    const auto answer = demo::Answer(service, request);
    Require(answer.has_value(), "there is an answer without a limit to its length");
    if (request.kind == demo::CimRequest::Kind::kExtrinsic) {
        Require(answer->error.has_value(), "no method of a class is invoked");
        return;
    }
    const int code = Decode(request, answer->text);
    Require(code == (answer->error ? static_cast<int>(answer->error->Status()) : 0),
            "the client finds the server's error in the answer");
}
