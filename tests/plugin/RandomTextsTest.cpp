#include "PropertyTest.h"
#include "display/DisplayQualifiers.h"
#include "display/FaithfulTexts.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <sstream>

// The texts of the faithful reading against second implementations, which are slow and as plain as can be.

using namespace NQORVYX20;

namespace {

constexpr int kMaps = 400;
constexpr int kNumbers = 4000;

/// One entry of a value map as the test makes it up: its text, and what it claims.
struct TEntry {
    std::string text;
    int low;
    int high;
    bool claimsTheRest;
};

class RandomTextsTest : public PropertyTest {
  protected:
    FaithfulTexts Texts(TCIMValue::TCIMType type, const Qualifiers& qualifiers) {
        return {{}, type, TCimHTTPPropertyDecl::DisplayQualifiersOf(Declare(NullOf(type), qualifiers))};
    }

    int Random(int low, int high) { return std::uniform_int_distribution<int>(low, high)(random_); }

    /// A number in one of the forms that the standard has.
    std::string Written(int number) {
        std::ostringstream text;
        text << (number < 0 ? "-" : Random(0, 9) == 0 ? "+" : "");
        const int size = std::abs(number);
        const int form = Random(0, 3);
        if (form == 1) {
            text << "0x" << std::hex << size;
        } else if (form == 2) {
            text << '0' << std::oct << size;
        } else if (form == 3) {
            text << Binary(size) << 'b';
        } else {
            text << size;
        }
        return text.str();
    }

    static std::string Binary(int number) {
        return number < 2 ? std::string(1, static_cast<char>('0' + number))
                          : Binary(number / 2) + static_cast<char>('0' + number % 2);
    }

    TEntry MakeEntry(int least, int greatest) {
        const int low = Random(least, greatest);
        const int high = Random(low, greatest);
        switch (Random(0, 8)) {
        case 0:
            return {"..", 0, 0, true};
        case 1:
            return {Written(low) + "..", low, greatest, false};
        case 2:
            return {".." + Written(high), least, high, false};
        case 3:
        case 4:
            return {Written(low) + ".." + Written(high), low, high, false};
        default:
            return {Written(low), low, low, false};
        }
    }

    static std::string Expected(int number, const std::vector<TEntry>& entries) {
        for (const bool isForTheRest : {false, true}) {
            for (std::size_t i = 0; i < entries.size(); ++i) {
                const TEntry& entry = entries[i];
                const bool claims = isForTheRest ? entry.claimsTheRest
                                                 : !entry.claimsTheRest && entry.low <= number && number <= entry.high;
                if (claims) {
                    return "text " + std::to_string(i);
                }
            }
        }
        return std::to_string(number);
    }

    template <typename Number>
    void CompareMap(int least, int greatest) {
        std::vector<TEntry> entries;
        std::vector<std::string> texts;
        std::vector<std::string> names;
        for (int i = Random(1, 12); i > 0; --i) {
            names.push_back("text " + std::to_string(entries.size()));
            entries.push_back(MakeEntry(least, greatest));
            texts.push_back(entries.back().text);
        }
        const FaithfulTexts shown =
            Texts(TCIMValue(Number()).GetType(), {{"ValueMap", ArrayOf(texts)}, {"Values", ArrayOf(names)}});
        for (int number = least; number <= greatest; ++number) {
            ASSERT_EQ(shown.Of(TCIMValue(static_cast<Number>(number)), {}), Expected(number, entries))
                << number << " in " << ArrayOf(texts).ToString(10);
        }
    }

    /// A number of any length.
    unsigned long long RandomNumber() {
        return std::uniform_int_distribution<unsigned long long>()(random_) >> Random(0, 63);
    }

    std::mt19937 random_{20261122};
};

/// The shortest exact text of a number of bytes, or the one with one decimal place: every prefix and number of decimal
/// places is tried.
std::string PlainlyWritten(unsigned long long number, unsigned long long step, const char* const* prefixes,
                           const std::string& unit) {
    __extension__ using TWide = unsigned __int128;
    std::vector<TWide> sizes{1};
    for (int i = 1; i < 7; ++i) {
        sizes.push_back(sizes.back() * step);
    }
    for (std::size_t i = sizes.size(); i-- > 0;) {
        TWide ten = 1;
        for (int places = 0; places <= 3 && number >= sizes[i]; ++places, ten *= 10) {
            const TWide digits = number * ten / sizes[i];
            if (number * ten % sizes[i] == 0 && digits <= 9999) {
                std::string text = std::to_string(static_cast<unsigned>(digits));
                if (places > 0) {
                    text.insert(text.size() - static_cast<std::size_t>(places), ".");
                }
                return text + ' ' + prefixes[i] + unit;
            }
        }
    }
    std::size_t i = sizes.size() - 1;
    while (number < sizes[i]) {
        --i;
    }
    TWide tenths = (number * TWide{10} + sizes[i] / 2) / sizes[i];
    if (tenths == step * 10) {
        tenths = 10;
        ++i;
    }
    const auto shown = static_cast<unsigned long long>(tenths);
    return std::to_string(shown / 10) + '.' + std::to_string(shown % 10) + ' ' + prefixes[i] + unit;
}

/// Days, hours, minutes and seconds of a whole number of seconds, one off after the other.
std::string PlainSpan(unsigned long long seconds) {
    if (seconds < 60) {
        return std::to_string(seconds) + " s";
    }
    if (seconds < 3600 && seconds % 60 == 0) {
        return std::to_string(seconds / 60) + " min";
    }
    if (seconds < 86400 && seconds % 3600 == 0) {
        return std::to_string(seconds / 3600) + " h";
    }
    if (seconds % 86400 == 0) {
        return std::to_string(seconds / 86400) + " d";
    }
    char clock[16];
    std::snprintf(clock, sizeof clock, "%02u:%02u:%02u", static_cast<unsigned>(seconds % 86400 / 3600),
                  static_cast<unsigned>(seconds % 3600 / 60), static_cast<unsigned>(seconds % 60));
    return (seconds < 86400 ? "" : std::to_string(seconds / 86400) + " d ") + clock;
}

} // namespace

TEST_F(RandomTextsTest, ValueMapsOfUnsignedNumbersClaimWhatTheirEntriesSay) {
    for (int i = 0; i < kMaps; ++i) {
        CompareMap<unsigned char>(0, 255);
        ASSERT_FALSE(HasFatalFailure());
    }
}

TEST_F(RandomTextsTest, ValueMapsOfSignedNumbersClaimWhatTheirEntriesSay) {
    for (int i = 0; i < kMaps; ++i) {
        CompareMap<signed char>(-128, 127);
        ASSERT_FALSE(HasFatalFailure());
    }
}

TEST_F(RandomTextsTest, SizesAreTheShortestExactTextOrOneDecimalPlace) {
    constexpr const char* kPrefixes[]{"", "Ki", "Mi", "Gi", "Ti", "Pi", "Ei"};
    const FaithfulTexts bytes = Texts(TCIMValue::TCIMType::eCIMUint64, {{"PUnit", TCIMValue("byte")}});
    for (int i = 0; i < kNumbers; ++i) {
        const unsigned long long number = std::max(1ULL, RandomNumber());
        ASSERT_EQ(bytes.Of(Uint64(number), {}), PlainlyWritten(number, 1024, kPrefixes, "B")) << number;
    }
}

TEST_F(RandomTextsTest, RatesAreTheShortestExactTextOrOneDecimalPlace) {
    constexpr const char* kPrefixes[]{"", "k", "M", "G", "T", "P", "E"};
    const FaithfulTexts hertz = Texts(TCIMValue::TCIMType::eCIMUint64, {{"PUnit", TCIMValue("hertz")}});
    for (int i = 0; i < kNumbers; ++i) {
        unsigned long long number = std::max(1ULL, RandomNumber());
        for (int zeros = Random(0, 12); zeros > 0 && number < 100000000ULL; --zeros) {
            number *= 10;
        }
        ASSERT_EQ(hertz.Of(Uint64(number), {}), PlainlyWritten(number, 1000, kPrefixes, "Hz")) << number;
    }
}

TEST_F(RandomTextsTest, SpansAreWrittenAsTheirParts) {
    const FaithfulTexts seconds = Texts(TCIMValue::TCIMType::eCIMUint64, {{"Units", TCIMValue("Seconds")}});
    for (int i = 0; i < kNumbers; ++i) {
        const unsigned long long number = RandomNumber();
        ASSERT_EQ(seconds.Of(Uint64(number), {}), PlainSpan(number)) << number;
    }
}
