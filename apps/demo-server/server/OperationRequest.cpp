#include "server/OperationRequest.h"

#include "schema/Names.h"
#include "wire/CimError.h"
#include "wire/PercentEncoding.h"

namespace demo {

namespace {

constexpr int kBadRequest = 400;
constexpr int kNotImplemented = 501;

void CheckOperationHeader(const RequestHead& head) {
    const std::string operation = HeaderOf(head, "CIMOperation");
    if (!SameName(operation, "MethodCall")) {
        throw HttpError(kBadRequest, "unsupported-operation",
                        "the header CIMOperation must be MethodCall, not \"" + operation + '"');
    }
}

/// The header is optional; without it, the version in the body is all that is to be known.
void CheckProtocolVersion(const RequestHead& head) {
    const std::string version = HeaderOf(head, "CIMProtocolVersion");
    if (!version.empty() && version.rfind("1.", 0) != 0) {
        throw HttpError(kNotImplemented, "unsupported-protocol-version",
                        "CIMProtocolVersion " + version + " is not supported");
    }
}

void CheckRepeated(const RequestHead& head, const char* name, const std::string& inBody) {
    if (head.count(name) == 0) {
        throw HttpError(kBadRequest, "header-mismatch", std::string("the header ") + name + " is missing");
    }
    const std::string inHeader = PercentDecode(HeaderOf(head, name));
    if (!SameName(inHeader, inBody)) {
        throw HttpError(kBadRequest, "header-mismatch",
                        std::string("the header ") + name + " is \"" + inHeader + "\", the request says \"" + inBody +
                            '"');
    }
}

} // namespace

CimRequest ReadOperation(const RequestHead& head, const std::string& body) {
    CheckOperationHeader(head);
    CheckProtocolVersion(head);
    CimRequest operation = ReadRequest(body);
    CheckRepeated(head, "CIMMethod", operation.method);
    // That of an extrinsic method is an object path, which can be written in many ways.
    if (operation.kind == CimRequest::Kind::kIntrinsic) {
        CheckRepeated(head, "CIMObject", operation.nameSpace);
    }
    return operation;
}

} // namespace demo
