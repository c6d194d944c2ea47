#include "client/CimHeaders.h"

#include <Pegasus/Client/CIMClientException.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using namespace Pegasus;
using namespace Pegasus::client;
using namespace Pegasus::http;
using ::testing::HasSubstr;

const Endpoint kEndpoint("server", 5988);

HttpHead GoodHead() {
    HttpHead head;
    head.status = 200;
    head.fields.add("CIMOperation", "MethodResponse");
    return head;
}

HttpHead HeadOfType(std::string_view contentType) {
    HttpHead head = GoodHead();
    head.fields.add("Content-Type", contentType);
    return head;
}

HttpFields Status(std::string_view code, std::string_view description) {
    HttpFields trailers;
    trailers.add("CIMStatusCode", code);
    trailers.add("CIMStatusCodeDescription", description);
    return trailers;
}

TEST(CimRequest, CarriesTheExtensionHeaders) {
    const HttpRequest request = makeCimRequest("GetClass", "root/cimv2", "<CIM/>");
    EXPECT_EQ(request.target, "/cimom");
    EXPECT_EQ(request.fields, "Content-Type: application/xml; charset=utf-8\r\nCIMOperation: MethodCall\r\n"
                              "CIMMethod: GetClass\r\nCIMObject: root%2Fcimv2\r\nTE: chunked, trailers\r\n");
    EXPECT_EQ(request.body, "<CIM/>");
}

TEST(CimAnswer, IsGoodWithXmlInUtf8OrWithoutContentType) {
    EXPECT_NO_THROW(checkCimAnswer(GoodHead(), kEndpoint));
    HttpHead oddCase = GoodHead();
    oddCase.fields = HttpFields();
    oddCase.fields.add("cimoperation", "METHODRESPONSE");
    EXPECT_NO_THROW(checkCimAnswer(oddCase, kEndpoint));
    for (const char* type :
         {"application/xml", "text/xml", "application/xml; charset=utf-8", "text/xml; charset=\"utf-8\"",
          "Application/XML;CHARSET=UTF-8", "text/xml ; x=y ; Charset = \"UTF-8\"", "application/xml;"}) {
        EXPECT_NO_THROW(checkCimAnswer(HeadOfType(type), kEndpoint)) << type;
    }
}

TEST(CimAnswer, IsMalformedWithAnyOtherContentType) {
    for (const char* type : {"text/html", "", "application/xmlx", "text/xml; charset=iso-8859-1",
                             "application/xml; charset=\"utf-16\"", "application/xml; charset=\"utf-8"}) {
        EXPECT_THROW(checkCimAnswer(HeadOfType(type), kEndpoint), CIMClientMalformedHTTPException) << type;
    }
}

TEST(CimAnswer, IsMalformedWithoutTheRightOperation) {
    HttpHead head = GoodHead();
    head.fields = HttpFields();
    EXPECT_THROW(checkCimAnswer(head, kEndpoint), CIMClientMalformedHTTPException);
    head.fields.add("CIMOPERATION", "MethodCall");
    EXPECT_THROW(checkCimAnswer(head, kEndpoint), CIMClientMalformedHTTPException);
}

TEST(CimAnswer, MayHaveItsHeadersWithThePrefixOfMPost) {
    HttpHead head;
    head.status = 200;
    head.fields.add("Ext", "");
    head.fields.add("Man", "http://www.dmtf.org/cim/mapping/http/v1.0 ; ns=73");
    head.fields.add("73-CIMOperation", "MethodResponse");
    EXPECT_NO_THROW(checkCimAnswer(head, kEndpoint));
    for (const char* name : {"7-CIMOperation", "730-CIMOperation", "AB-CIMOperation", "73CIMOperation"}) {
        HttpHead other;
        other.status = 200;
        other.fields.add(name, "MethodResponse");
        EXPECT_THROW(checkCimAnswer(other, kEndpoint), CIMClientMalformedHTTPException) << name;
    }
    head.status = 400;
    head.fields.add("73-CIMError", "request-not-valid");
    try {
        checkCimAnswer(head, kEndpoint);
        FAIL() << "no exception";
    } catch (const CIMClientHTTPErrorException& error) {
        EXPECT_EQ(error.getCIMError(), String("request-not-valid"));
    }
    HttpFields trailers;
    trailers.add("73-CIMStatusCode", "6");
    EXPECT_THROW(checkCimTrailers(trailers, kEndpoint), CIMException);
}

std::string MessageFor(unsigned status, const std::vector<const char*>& challenges) {
    HttpHead head;
    head.status = status;
    head.reason = "No";
    for (const char* challenge : challenges) {
        head.fields.add("WWW-Authenticate", challenge);
    }
    try {
        checkCimAnswer(head, kEndpoint);
        return "";
    } catch (const CIMClientHTTPErrorException& error) {
        return std::string(error.getMessage().view());
    }
}

TEST(CimAnswer, ThatIsAnHttpErrorNamesTheServer) {
    EXPECT_EQ(MessageFor(503, {"Basic"}), "HTTP error 503 No from server:5988");
}

TEST(CimAnswer, ThatWantsALoginNamesTheSchemes) {
    const std::string begin = "HTTP error 401 No from server:5988, which ";
    EXPECT_EQ(MessageFor(401, {}), begin + "names no scheme of logging in");
    EXPECT_EQ(MessageFor(401, {""}), begin + "names no scheme of logging in");
    EXPECT_EQ(MessageFor(401, {"Negotiate", "Digest realm=\"a, Basic\", nonce = \"b\", qop=auth"}),
              begin + "offers Negotiate, Digest");
    EXPECT_EQ(MessageFor(401, {"Basic realm=\"x\", Local \"root:1:2\""}), begin + "offers Basic, Local");
    EXPECT_EQ(MessageFor(401, {"Negotiate YWJj==, NTLM"}), begin + "offers Negotiate, NTLM");
}

TEST(CimTrailers, WithoutADescriptionSaySo) {
    try {
        checkCimTrailers(Status("6", ""), kEndpoint);
        FAIL() << "no exception";
    } catch (const CIMException& error) {
        EXPECT_EQ(error.getMessage(), String("CIM_ERR_NOT_FOUND: the server says no more than this"));
    }
}

TEST(CimAnswer, WithAnotherStatusIsAnHttpError) {
    HttpHead head;
    head.status = 400;
    head.reason = "Bad Request";
    head.fields.add("CIMError", "request-not-valid");
    head.fields.add("PGErrorDetail", "on%20line%201%3A%20bad");
    try {
        checkCimAnswer(head, kEndpoint);
        FAIL() << "no exception";
    } catch (const CIMClientHTTPErrorException& error) {
        EXPECT_EQ(error.getCode(), 400U);
        EXPECT_EQ(error.getCIMError(), String("request-not-valid"));
        EXPECT_EQ(error.getCIMErrorDetail(), String("on line 1: bad"));
    }
}

TEST(CimTrailers, SayNothingOrSuccess) {
    EXPECT_NO_THROW(checkCimTrailers(HttpFields(), kEndpoint));
    EXPECT_NO_THROW(checkCimTrailers(Status("0", ""), kEndpoint));
}

TEST(CimTrailers, ReportTheServersError) {
    for (const char* description : {"CIM_ERR_NOT_FOUND%3A%20X%2FY", "X%2FY"}) {
        try {
            checkCimTrailers(Status("6", description), kEndpoint);
            FAIL() << "no exception";
        } catch (const CIMException& error) {
            EXPECT_EQ(error.getCode(), CIM_ERR_NOT_FOUND);
            EXPECT_EQ(error.getMessage(), String("CIM_ERR_NOT_FOUND: X/Y"));
        }
    }
}

TEST(CimTrailers, ReportAnUnknownCodeAsAFailure) {
    for (const std::string code : {"18", "29", "4294967295"}) {
        try {
            checkCimTrailers(Status(code, "odd"), kEndpoint);
            FAIL() << "no exception";
        } catch (const CIMException& error) {
            EXPECT_EQ(error.getCode(), CIM_ERR_FAILED);
            EXPECT_EQ(error.getMessage(), String("CIM_ERR_FAILED: unknown status code " + code + ": odd"));
        }
    }
}

TEST(CimTrailers, AreMalformedWithACodeThatIsNoNumber) {
    for (const char* code : {"", "six", "6x", "-1", "99999999999999999999"}) {
        EXPECT_THROW(checkCimTrailers(Status(code, ""), kEndpoint), CIMClientMalformedHTTPException) << code;
    }
}

} // namespace
