#include "HttpExchange.h"
#include "providers/LiveProviders.h"
#include "schema/SchemaReader.h"
#include "server/Answer.h"
#include "server/HttpListener.h"
#include "support/LoopbackAddress.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <pugixml.hpp>

namespace {

constexpr int kPort = 5988;

/// Fails after its first instance.
class BrokenProvider : public demo::InstanceProvider {
  public:
    std::string_view ClassName() const override { return "DEMO_AllTypes"; }
    void Enumerate(const Visitor& visit) const override {
        visit({"DEMO_AllTypes", {{"InstanceID", demo::Value::Text("only")}}});
        throw std::runtime_error("the disk is on fire");
    }
};

demo::CimService BrokenService() {
    demo::InstanceProviders providers;
    providers.push_back(std::make_unique<BrokenProvider>());
    return {demo::BuiltInSchema(), std::move(providers), "demo.example"};
}

demo::CimRequest EnumerateInstances(const std::string& className) {
    demo::CimRequest request;
    request.method = "EnumerateInstances";
    request.nameSpace = "root/cimv2";
    request.parameters = {{"ClassName", "CLASSNAME", demo::Value::Reference({className, {}})}};
    return request;
}

exchange::Response AskOverHttp(const std::string& method, const std::string& parameters, bool wantsTrailers) {
    auto headers = exchange::OperationHeaders(method);
    if (wantsTrailers) {
        headers["TE"] = "trailers";
    }
    return exchange::Send(exchange::Post(headers, exchange::OperationBody(method, parameters)));
}

TEST(Answers, AFailureInTheMiddleLeavesAStreamedAnswerWellFormed) {
    const demo::CimService service = BrokenService();
    const auto request = EnumerateInstances("DEMO_AllTypes");
    std::string text;
    const auto error = demo::StreamAnswer(service, request, [&](std::string_view portion) { text += portion; });
    ASSERT_TRUE(error);
    EXPECT_EQ(error->Code(), "1");
    EXPECT_STREQ(error->what(), "CIM_ERR_FAILED: the disk is on fire");
    pugi::xml_document document;
    EXPECT_TRUE(document.load_string(text.c_str()));
    EXPECT_NE(text.find("VALUE.NAMEDINSTANCE"), std::string::npos);

    const std::string whole = demo::Answer(service, request)->text;
    EXPECT_EQ(whole.find("VALUE.NAMEDINSTANCE"), std::string::npos);
    EXPECT_NE(whole.find("ERROR CODE=\"1\""), std::string::npos);
}

TEST(Answers, AFailureInTheMiddleReachesTheClientInTheTrailersOrInsteadOfTheAnswer) {
    const demo::CimService service = BrokenService();
    const demo::Users users;
    const demo::HttpListener listener(service, users, nullptr, support::LoopbackAddress(), kPort, nullptr);
    for (const char* const method : {"EnumerateInstances", "EnumerateInstanceNames"}) {
        const auto streamed = AskOverHttp(method, exchange::ClassName("DEMO_AllTypes"), true);
        EXPECT_THAT(streamed.body, testing::HasSubstr("<KEYVALUE VALUETYPE=\"string\">only</KEYVALUE>"));
        EXPECT_EQ(streamed.trailers.at("cimstatuscode"), "1");
        EXPECT_EQ(streamed.trailers.at("cimstatuscodedescription"), "CIM_ERR_FAILED%3A%20the%20disk%20is%20on%20fire");
        const auto plain = AskOverHttp(method, exchange::ClassName("DEMO_AllTypes"), false);
        EXPECT_THAT(plain.body, testing::HasSubstr("<ERROR CODE=\"1\""));
        EXPECT_THAT(plain.body, testing::Not(testing::HasSubstr("only")));
    }
}

TEST(Answers, AClosedOutputEndsTheOperation) {
    auto schema = demo::BuiltInSchema();
    auto providers = demo::LiveProviders(schema, demo::SystemFiles("/"), 1'000'000);
    const demo::CimService service(std::move(schema), std::move(providers), "demo.example");
    int portions = 0;
    EXPECT_THROW(demo::StreamAnswer(service, EnumerateInstances("DEMO_StorageVolume"),
                                    [&](std::string_view) {
                                        if (++portions == 3) {
                                            throw demo::OutputClosed();
                                        }
                                    }),
                 demo::OutputClosed);
    EXPECT_EQ(portions, 3);
}

constexpr const char* kNumberedClass = R"(<CIM CIMVERSION="2.0" DTDVERSION="2.0"><DECLARATION><DECLGROUP>
<VALUE.OBJECT><QUALIFIER.DECLARATION NAME="Key" TYPE="boolean"><SCOPE PROPERTY="true"/></QUALIFIER.DECLARATION></VALUE.OBJECT>
<VALUE.OBJECT><CLASS NAME="Numbered">
  <PROPERTY NAME="Number" TYPE="uint16"><QUALIFIER NAME="Key" TYPE="boolean"><VALUE>TRUE</VALUE></QUALIFIER></PROPERTY>
  <PROPERTY NAME="Even" TYPE="boolean"><QUALIFIER NAME="Key" TYPE="boolean"><VALUE>TRUE</VALUE></QUALIFIER></PROPERTY>
</CLASS></VALUE.OBJECT></DECLGROUP></DECLARATION></CIM>)";

class NumberedProvider : public demo::InstanceProvider {
  public:
    std::string_view ClassName() const override { return "Numbered"; }
    void Enumerate(const Visitor& visit) const override {
        for (int number = 0; number < 100; ++number) {
            visit({"Numbered",
                   {{"Number", demo::Value::Number(number)}, {"Even", demo::Value::Boolean(number % 2 == 0)}}});
        }
    }
};

TEST(Answers, KeysThatAreNoTextsAreComparedByValue) {
    demo::InstanceProviders providers;
    providers.push_back(std::make_unique<NumberedProvider>());
    const demo::CimService service(demo::ReadSchema(kNumberedClass), std::move(providers), "demo.example");
    const demo::Users users;
    const demo::HttpListener listener(service, users, nullptr, support::LoopbackAddress(), kPort, nullptr);
    const auto get = [](const std::string& number, const std::string& even) {
        const auto key = [](const std::string& name, const std::string& value) {
            return "<KEYBINDING NAME=\"" + name + "\"><KEYVALUE>" + value + "</KEYVALUE></KEYBINDING>";
        };
        const auto response =
            AskOverHttp("GetInstance",
                        "<IPARAMVALUE NAME=\"InstanceName\"><INSTANCENAME CLASSNAME=\"Numbered\">" +
                            key("Number", number) + key("Even", even) + "</INSTANCENAME></IPARAMVALUE>",
                        true);
        const auto code = response.trailers.find("cimstatuscode");
        return code == response.trailers.end() ? "0" : code->second;
    };
    EXPECT_EQ(get("16", "TRUE"), "0");
    EXPECT_EQ(get("0x10", "true"), "0");
    EXPECT_EQ(get("+0016", "True"), "0");
    EXPECT_EQ(get("16", "false"), "6");
    EXPECT_EQ(get("100", "true"), "6");
    EXPECT_EQ(get("65536", "true"), "4");
    EXPECT_EQ(get("-1", "true"), "4");
    EXPECT_EQ(get("sixteen", "true"), "4");
    EXPECT_EQ(get("16", "yes"), "4");

    const auto names = AskOverHttp("EnumerateInstanceNames", exchange::ClassName("Numbered"), false).body;
    EXPECT_THAT(names, testing::HasSubstr("<KEYVALUE VALUETYPE=\"numeric\">16</KEYVALUE>"));
    EXPECT_THAT(names, testing::HasSubstr("<KEYVALUE VALUETYPE=\"boolean\">TRUE</KEYVALUE>"));
}

TEST(LiveProviders, GiveOnlyDeclaredPropertiesWithValuesOfTheirTypesAndNoKeyIsNull) {
    const auto schema = demo::BuiltInSchema();
    std::size_t instances = 0;
    for (const auto& provider : demo::LiveProviders(schema, demo::SystemFiles("/"), 3)) {
        const auto* const declaration = schema.FindClass(provider->ClassName());
        ASSERT_TRUE(declaration) << provider->ClassName();
        EXPECT_FALSE(declaration->Is("Abstract"));
        provider->Enumerate([&](const demo::Instance& instance) {
            ++instances;
            for (const auto& [name, value] : instance.values) {
                const auto* const property = declaration->FindProperty(name);
                ASSERT_TRUE(property) << declaration->name << '.' << name;
                ASSERT_TRUE(value.IsNull() || (value.AsArray() != nullptr) == property->isArray) << name;
                if (const auto* const reference = value.AsReference()) {
                    EXPECT_TRUE(schema.IsA(reference->className, property->referenceClass)) << name;
                }
                if (value.AsText()) {
                    EXPECT_TRUE(demo::IsValueOf(property->type, *value.AsText())) << name << ": " << *value.AsText();
                }
                for (const auto& item : value.AsArray() ? *value.AsArray() : demo::Value::Items()) {
                    EXPECT_TRUE(!item || demo::IsValueOf(property->type, *item)) << name << ": " << *item;
                }
            }
            for (const auto& key : demo::PathOf(*declaration, instance).keys) {
                EXPECT_FALSE(key.value.IsNull()) << declaration->name << '.' << key.name;
            }
        });
    }
    EXPECT_GE(instances, 10U);
}

} // namespace
