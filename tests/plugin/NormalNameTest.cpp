#include "convert/NormalName.h"

#include "PluginTest.h"
#include "support/ProgramRun.h"
#include "support/TemporaryDirectory.h"

#include <clocale>
#include <cstdlib>

using namespace NQORVYX20;
using testing::ElementsAre;

namespace {

/// C's locale with letters beyond ASCII in one byte each, for the time of its life. It is made from its source, since
/// machines have none ready.
class Latin1Locale {
  public:
    Latin1Locale() {
        const auto run =
            support::RunProgram(support::FindProgram("localedef"), {"--no-archive", "--quiet", "-i", "en_US", "-f",
                                                                    "ISO-8859-1", (locales_.Path() / kName).string()});
        EXPECT_EQ(run.status, 0) << run.errors;
        ::setenv("LOCPATH", locales_.Path().c_str(), 1);
        EXPECT_STREQ(std::setlocale(LC_CTYPE, kName), kName);
    }
    ~Latin1Locale() {
        std::setlocale(LC_CTYPE, "C");
        ::unsetenv("LOCPATH");
    }
    Latin1Locale(const Latin1Locale&) = delete;
    Latin1Locale& operator=(const Latin1Locale&) = delete;

  private:
    static constexpr const char* kName = "en_US.ISO-8859-1";
    const support::TemporaryDirectory locales_;
};

using NormalNameTest = PluginTest;

} // namespace

TEST_F(NormalNameTest, OtherCharactersThanAsciiAreLettersWhereTheLocaleSaysSo) {
    const std::string name = "Gr\xd6\xdf"
                             "e_1";
    EXPECT_EQ(StatusOf([&] { NormalizeName(name); }), TVYXStatusCode::eInvalidName)
        << "they are none in the locale of C";
    const Latin1Locale latin1;
    EXPECT_EQ(NormalizeName(name), "gr\xf6\xdf"
                                   "e_1");
    EXPECT_EQ(NormalizeName("\xd6l"), "\xf6l");
    EXPECT_EQ(TCimHTTPNamespace::NormalizeName("\xd6l"), "\xf6l");
    for (const std::string noName : {"Gr\xd7\xdf", "\xb2nd", "A\xa0"}) {
        log_->Forget();
        EXPECT_EQ(StatusOf([&] { NormalizeName(noName); }), TVYXStatusCode::eInvalidName) << noName;
        EXPECT_THAT(log_->Errors(), ElementsAre("CimHTTP: CIM name '" + noName + "' is invalid"));
    }
}

TEST_F(NormalNameTest, EveryAsciiCharacterIsWhatCsLocaleSaysOfIt) {
    for (int code = 1; code < 0x80; ++code) {
        const char letter = static_cast<char>(code);
        const bool begins = std::isalpha(code) != 0 || letter == '_';
        const bool follows = begins || std::isdigit(code) != 0;
        EXPECT_EQ(StatusOf([&] { NormalizeName(std::string(1, letter)); }),
                  begins ? TVYXStatusCode::eSuccess : TVYXStatusCode::eInvalidName)
            << code;
        EXPECT_EQ(StatusOf([&] { NormalizeName(std::string("a") + letter); }),
                  follows ? TVYXStatusCode::eSuccess : TVYXStatusCode::eInvalidName)
            << code;
        if (begins) {
            EXPECT_EQ(NormalizeName(std::string(1, letter)), std::string(1, static_cast<char>(std::tolower(code))));
        }
    }
    EXPECT_EQ(StatusOf([] { NormalizeName(std::string("a\0b", 3)); }), TVYXStatusCode::eInvalidName);
}
