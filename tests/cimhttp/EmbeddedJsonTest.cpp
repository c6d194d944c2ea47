// JSON as it stands in a page.

#include "report/EmbeddedJson.h"

#include <gtest/gtest.h>

#include <string>

using cimhttp::EmbeddedJson;

namespace {

std::string Embedded(const std::string& json) {
    EmbeddedJson embedded;
    std::string text = embedded.Take(json);
    return text + embedded.End();
}

} // namespace

TEST(EmbeddedJson, BeginsNoTag) {
    EXPECT_EQ(Embedded(R"({"<b>":"</script><!-- & >"})"), R"({"\u003cb>":"\u003c/script>\u003c!-- & >"})");
}

TEST(EmbeddedJson, KeepsIntegersThatAScriptCannotHoldAsTexts) {
    EXPECT_EQ(Embedded("[999999999999999,18446744073709551615,-9223372036854775808]"),
              R"([999999999999999,"18446744073709551615","-9223372036854775808"])");
    EXPECT_EQ(Embedded("18446744073709551615"), R"("18446744073709551615")");
}

TEST(EmbeddedJson, LeavesAllElseAsItIs) {
    for (const std::string json : {R"({"a":[true,false,null,1.7976931348623157e+308,-0.1,2.2250738585072014E-308]})",
                                   R"(["123456789012345678901","a\"18446744073709551615\\","\\\"1"])", "", "{}", "7"}) {
        EXPECT_EQ(Embedded(json), json);
    }
}

TEST(EmbeddedJson, IsTheSameInWhateverPiecesItComes) {
    const std::string json = R"({"a<\\\"":[18446744073709551615,"<",1e3],"b":-12345678901234567})";
    EmbeddedJson embedded;
    std::string text;
    for (const char character : json) {
        text += embedded.Take(std::string(1, character));
    }
    EXPECT_EQ(text + embedded.End(), Embedded(json));
}
