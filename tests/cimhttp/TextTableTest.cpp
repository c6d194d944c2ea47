#include "Options.h"
#include "commands/Command.h"
#include "commands/ListingWriter.h"
#include "host/TCIMReference.h"
#include "host/TCIMValue.h"
#include "output/Listing.h"
#include "output/ListingText.h"
#include "text/TerminalText.h"
#include "text/WrappedName.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>
#include <string>
#include <vector>

using cimhttp::Cell;
using cimhttp::DisplayWidth;
using cimhttp::Listing;
using cimhttp::Printable;
using cimhttp::TextStyle;
using cimhttp::Wrapped;
using cimhttp::WrappedName;

namespace {

constexpr auto kLeft = Listing::Align::kLeft;
constexpr auto kRight = Listing::Align::kRight;
constexpr auto kAsked = Listing::Importance::kAsked;

std::string Table(const Listing& listing, TextStyle style = {}) {
    std::ostringstream output;
    cimhttp::WriteTable(listing, style, output);
    return output.str();
}

std::vector<std::string> LeftOut(const Listing& listing, std::size_t width) {
    std::ostringstream output;
    return cimhttp::WriteTable(listing, {width, false}, output).columns;
}

std::string Lists(const Listing& listing, TextStyle style = {}) {
    std::ostringstream output;
    cimhttp::WriteLists(listing, style, output);
    return output.str();
}

std::size_t WidestLine(const std::string& text) {
    std::istringstream lines(text);
    std::size_t width = 0;
    for (std::string line; std::getline(lines, line);) {
        width = std::max(width, DisplayWidth(line));
    }
    return width;
}

Listing Disks() {
    Listing listing({Listing::Key("Name"), {"Size", kRight}});
    listing.AddRow({"sda", "7"});
    listing.AddRow({"nvme0", "12345"});
    return listing;
}

Listing WideListing() {
    Listing listing({Listing::Key("Key"), {"Same"}, {"Copy"}, {"Number", kRight}, {"Text"}});
    for (const char* key : {"a", "b", "c"}) {
        listing.AddRow({key, "always the same", key, std::string(10, *key),
                        std::string("some words to fold, ending with ") + key});
    }
    return listing;
}

/// A reference to a process of one of two systems.
Cell Process(const std::string& system, const std::string& handle) {
    NQORVYX20::TCIMReference reference({}, NQORVYX20::TCIMContext());
    reference.AddKeyValue("CSName", system);
    reference.AddKeyValue("Handle", handle);
    return {NQORVYX20::TCIMValue(reference), reference.GetPath()};
}

Listing Parents(const std::string& lastSystem) {
    Listing listing({Listing::Key("Parent"), Listing::Key("Child")});
    listing.AddRow({Process("one.example", "1"), Process("one.example", "27")});
    listing.AddRow({Process("one.example", "1"), Process(lastSystem, "31")});
    return listing;
}

} // namespace

// --- Tables ------------------------------------------------------------------------------------------------------

TEST(TextTable, AlignsTextsLeftAndNumbersRight) {
    EXPECT_EQ(Table(Disks()), "Name    Size\n"
                              "-----  -----\n"
                              "sda        7\n"
                              "nvme0  12345\n");
}

TEST(TextTable, ASingleRowIsAListWhereItWouldLoseColumns) {
    Listing listing({Listing::Key("Name"), {"Size", kRight}, {"Used", kRight}});
    listing.AddRow({"nvme0", "1234567890", "9876543210"});
    EXPECT_EQ(Table(listing, {20, false}), Lists(listing, {20, false}));
    EXPECT_TRUE(LeftOut(listing, 20).empty());
    EXPECT_EQ(Table(listing, {40, false}), "Name         Size        Used\n"
                                           "-----  ----------  ----------\n"
                                           "nvme0  1234567890  9876543210\n");
}

TEST(TextTable, AlignsWideAndCombiningCharacters) {
    Listing listing({{"Ort"}, {"X"}});
    listing.AddRow({"K\xc3\xb6ln", "1"});
    listing.AddRow({"Ko\xcc\x88ln", "2"});             // o and a combining diaeresis
    listing.AddRow({"\xe6\x9d\xb1\xe4\xba\xac", "3"}); // two wide characters
    listing.AddRow({"\xf0\x9f\x98\x80", "4"});         // an emoji
    EXPECT_EQ(Table(listing), "Ort   X\n----  -\n"
                              "K\xc3\xb6ln  1\n"
                              "Ko\xcc\x88ln  2\n"
                              "\xe6\x9d\xb1\xe4\xba\xac  3\n"
                              "\xf0\x9f\x98\x80    4\n");
}

TEST(TextTable, LeavesNoBlanksAtTheEndOfALine) {
    Listing listing({{"Name"}, {"Empty"}});
    listing.AddRow({"a", ""});
    EXPECT_EQ(Table(listing), "Name  Empty\n----  -----\na\n");
}

TEST(TextTable, MarksNullAndTellsItFromAnEmptyText) {
    Listing listing({{"Name"}, {"X"}});
    listing.AddRow({"a", Cell::Null()});
    listing.AddRow({"b", ""});
    EXPECT_EQ(Table(listing), "Name  X\n----  -\na     –\nb\n");
}

TEST(TextTable, SendsNoControlCharactersToTheTerminal) {
    Listing listing({{"Na\x1bme"}});
    listing.AddRow({"a\nb\x1b[31m\x7f\xc2\x9b"
                    "2J\xe2\x80\xae\xff"}); // a C1 control, a change of direction, a stray byte
    EXPECT_EQ(Table(listing), "Na\xe2\x90\x9bme\n"
                              "--------------\n"
                              "a b\xe2\x90\x9b[31m\xe2\x90\xa1\xef\xbf\xbd"
                              "2J\xef\xbf\xbd\xef\xbf\xbd\n");
}

TEST(TextTable, FoldsLongTextsAtBlanks) {
    Listing listing({Listing::Key("Name"), {"Text"}});
    listing.AddRow({"a", "one two three four five six seven"});
    EXPECT_EQ(Table(listing, {30, false}), "Name  Text\n"
                                           "----  ------------------------\n"
                                           "a     one two three four five\n"
                                           "      six seven\n");
}

TEST(TextTable, GivesAFoldedTextTheRoomThatOthersLeave) {
    Listing listing({Listing::Key("Name"), {"Text"}, {"Size", kRight}});
    listing.AddRow({"a", "one two three four five six seven", "12345"});
    EXPECT_EQ(Table(listing, {43, false}), "Name  Text                             Size\n"
                                           "----  ------------------------------  -----\n"
                                           "a     one two three four five six     12345\n"
                                           "      seven\n");
}

TEST(TextTable, FoldsHeadingsBetweenTheirWordsWhereThereIsNoRoom) {
    Listing listing({Listing::Key("Name"), {"FileSystemSize", kRight}, {"EnabledState"}});
    listing.AddRow({"a", "12345", "Enabled"});
    listing.AddRow({"b", "7", "Disabled"});
    EXPECT_EQ(Table(listing, {34, false}), "Name  FileSystemSize  EnabledState\n"
                                           "----  --------------  ------------\n"
                                           "a              12345  Enabled\n"
                                           "b                  7  Disabled\n");
    EXPECT_EQ(Table(listing, {33, false}), "                      Enabled\n"
                                           "Name  FileSystemSize  State\n"
                                           "----  --------------  --------\n"
                                           "a              12345  Enabled\n"
                                           "b                  7  Disabled\n");
    EXPECT_EQ(Table(listing, {26, false}), "      FileSystem  Enabled\n"
                                           "Name        Size  State\n"
                                           "----  ----------  --------\n"
                                           "a          12345  Enabled\n"
                                           "b              7  Disabled\n");
    EXPECT_EQ(LeftOut(listing, 26), std::vector<std::string>());
}

TEST(TextTable, LeavesOutFirstWhatTellsNothingAndKeysLast) {
    EXPECT_EQ(LeftOut(WideListing(), 0), std::vector<std::string>());
    EXPECT_EQ(LeftOut(WideListing(), 68), std::vector<std::string>());
    EXPECT_EQ(LeftOut(WideListing(), 60), (std::vector<std::string>{"Copy", "Same"}));
    EXPECT_EQ(LeftOut(WideListing(), 20), (std::vector<std::string>{"Text", "Copy", "Same"}));
    EXPECT_EQ(LeftOut(WideListing(), 4), (std::vector<std::string>{"Number", "Text", "Copy", "Same"}));
}

TEST(TextTable, KeepsColumnsWithManyDifferentTextsForTheirWidth) {
    Listing listing({Listing::Key("Key"), {"Two"}, {"Wide"}, {"Many"}});
    for (const char letter : {'a', 'b', 'c', 'd'}) {
        const std::string name(1, letter);
        listing.AddRow(
            {name, letter < 'c' ? "one of two" : "another", std::string(22, letter), name + " is different"});
    }
    EXPECT_EQ(LeftOut(listing, 45), (std::vector<std::string>{"Two"}));
    EXPECT_EQ(LeftOut(listing, 35), (std::vector<std::string>{"Wide"})); // room for Two, but not for Wide
    EXPECT_EQ(LeftOut(listing, 20), (std::vector<std::string>{"Wide", "Two"}));
}

TEST(TextTable, LeavesOutATextThatWouldBeFoldedOverManyLinesUnlessItIsImportant) {
    const auto listingWith = [](Listing::Column column) {
        Listing listing({{"Name"}, std::move(column)});
        for (const char* name : {"a", "b"}) {
            listing.AddRow({name, name + std::string(" and many more words").append(200, '.')});
        }
        return listing;
    };
    EXPECT_EQ(LeftOut(listingWith({"Text"}), 60), (std::vector<std::string>{"Text"}));
    EXPECT_EQ(LeftOut(listingWith({"Text"}), 90), std::vector<std::string>());
    EXPECT_EQ(LeftOut(listingWith({"Text", kLeft, Listing::Importance::kHigh}), 60), std::vector<std::string>());
}

TEST(TextTable, ImportantColumnsAreLeftOutLaterAndThoseWithOneTextAreShownWhereThereIsRoom) {
    constexpr auto kHigh = Listing::Importance::kHigh;
    Listing listing({Listing::Key("Key"), {"Health", kLeft, kHigh}, {"Enabled", kLeft, kHigh}, {"Same"}, {"Number"}});
    for (const char* key : {"a", "b", "c"}) {
        listing.AddRow({key, *key == 'a' ? "Degraded" : "OK", "Yes", "always the same", "number " + std::string(key)});
    }
    EXPECT_EQ(LeftOut(listing, 13), (std::vector<std::string>{"Number", "Enabled", "Same"}));
    EXPECT_EQ(LeftOut(listing, 23), (std::vector<std::string>{"Enabled", "Same"}));
    EXPECT_EQ(LeftOut(listing, 32), (std::vector<std::string>{"Same"}));
}

TEST(TextTable, ImportantColumnsThatRepeatEachOtherAreShownWhereThereIsRoom) {
    constexpr auto kHigh = Listing::Importance::kHigh;
    Listing listing({Listing::Key("Key"), {"Health", kLeft, kHigh}, {"Status", kLeft, kHigh}, {"Same"}});
    for (const char* key : {"a", "b"}) {
        listing.AddRow({key, "OK", "OK", "always the same text"});
    }
    EXPECT_EQ(LeftOut(listing, 30), (std::vector<std::string>{"Same"}));
}

TEST(TextTable, KeepsOneColumnAlsoWhenAllAreTheSameOrTooWide) {
    Listing twins({{"A"}, {"B"}});
    Listing texts({{"Text"}});
    for (const char* word : {"one", "two"}) {
        twins.AddRow({"always the same", "all the way"});
        texts.AddRow({word + std::string(20, '.')});
    }
    EXPECT_EQ(Table(twins, {20, false}), "A\n---------------\nalways the same\nalways the same\n");
    EXPECT_EQ(Table(texts, {12, false}), "Text\n------------\none.........\n...........\ntwo.........\n...........\n");
}

TEST(TextTable, ColumnsThatWereAskedForAreFoldedAsFarAsItTakes) {
    Listing listing({{"Name", kLeft, kAsked}, {"Text", kLeft, kAsked}, {"Same", kLeft, kAsked}});
    listing.AddRow({"a", "several words to fold", "always"});
    listing.AddRow({"b", "others", "always"});
    EXPECT_EQ(Table(listing, {17, false}), "Name  Text  Same\n"
                                           "----  ----  -----\n"
                                           "a     seve  alway\n"
                                           "      ral   s\n"
                                           "      word\n"
                                           "      s to\n"
                                           "      fold\n"
                                           "b     othe  alway\n"
                                           "      rs    s\n");
    EXPECT_EQ(LeftOut(listing, 17), std::vector<std::string>());
}

TEST(TextTable, NumbersThatWereAskedForAreCutOffWhereThereIsNoRoom) {
    Listing listing({{"Name", kLeft, kAsked}, {"Size", kRight, kAsked}});
    listing.AddRow({"a", "1234567890"});
    listing.AddRow({"b", "123456 Bytes"});
    listing.AddRow({"c", "12 Bytes"});
    std::ostringstream output;
    EXPECT_TRUE(cimhttp::WriteTable(listing, {12, false}, output).digits);
    EXPECT_EQ(output.str(), "Name    Size\n"
                            "----  ------\n"
                            "a     12345…\n"
                            "b     123456\n"
                            "       Bytes\n"
                            "c         12\n"
                            "       Bytes\n");
    std::ostringstream wide;
    EXPECT_FALSE(cimhttp::WriteTable(listing, {18, false}, wide).digits);
}

TEST(TextTable, ColumnsThatWereAskedForAreAListWhereNotEvenCutNumbersFit) {
    Listing listing({{"One", kLeft, kAsked}, {"Two", kRight, kAsked}, {"Three", kRight, kAsked}});
    for (const char* row : {"first", "second"}) {
        listing.AddRow({row, "1234567890", "1234567890"});
    }
    EXPECT_NE(Table(listing, {16, false}).find("----  ----  ----\n"), std::string::npos);
    EXPECT_EQ(Table(listing, {15, false}), Lists(listing, {15, false}));
}

TEST(TextTable, ASingleRowIsAListWhereItWouldLoseDigits) {
    Listing listing({{"One", kRight, kAsked}, {"Two", kRight, kAsked}});
    listing.AddRow({"1234567890", "1234567890"});
    EXPECT_EQ(Table(listing, {20, false}), Lists(listing, {20, false}));
}

TEST(TextTable, ColumnsThatWereAskedForAreKeptLongerThanKeys) {
    Listing listing({Listing::Key("Key"), {"Asked", kLeft, kAsked}});
    for (const char* key : {"a", "b"}) {
        listing.AddRow({key + std::string(30, 'k'), "always the same"});
    }
    EXPECT_EQ(LeftOut(listing, 12), std::vector<std::string>{"Key"});
}

TEST(TextTable, ReferencesLoseTheKeysThatAllRowsShareWhereThereIsNoRoom) {
    const Listing parents = Parents("one.example");
    const auto write = [&](std::size_t width) {
        std::ostringstream output;
        EXPECT_EQ(cimhttp::WriteTable(parents, {width, false}, output).keys, width < 70);
        return output.str();
    };
    const std::string same = "CSName=\"one.example\",Handle=\"1\"";
    EXPECT_EQ(write(70), "Parent                           Child\n"
                         "-------------------------------  --------------------------------\n" +
                             same + "  CSName=\"one.example\",Handle=\"27\"\n" + same +
                             "  CSName=\"one.example\",Handle=\"31\"\n");
    EXPECT_EQ(write(50), "Parent                           Child\n"
                         "-------------------------------  -------------\n" +
                             same + "  …,Handle=\"27\"\n" + same + "  …,Handle=\"31\"\n");
}

TEST(TextTable, ReferencesKeepTheKeysThatTellRowsApart) {
    EXPECT_EQ(Table(Parents("two.example"), {50, false}), "Parent                    Child\n"
                                                          "------------------------  ------------------------\n"
                                                          "CSName=\"one.example\",     CSName=\"one.example\",\n"
                                                          "Handle=\"1\"                Handle=\"27\"\n"
                                                          "CSName=\"one.example\",     CSName=\"two.example\",\n"
                                                          "Handle=\"1\"                Handle=\"31\"\n");
}

TEST(TextTable, NoLineIsWiderThanAllowed) {
    Listing listing({Listing::Key("AVeryLongHeading"), {"Number", kRight}, {"Text"}});
    listing.AddRow({std::string(70, 'x'), "1", "\xe6\x9d\xb1\xe4\xba\xac \xe6\x9d\xb1\xe4\xba\xac"});
    listing.AddRow({"short", "123456789", std::string(300, 'y')});
    std::vector<Listing::Column> columns = listing.Columns();
    for (Listing::Column& column : columns) {
        column.importance = kAsked;
    }
    Listing asked(columns);
    for (const auto& row : listing.Rows()) {
        asked.AddRow(row);
    }
    for (std::size_t width = 2; width < 250; ++width) {
        EXPECT_LE(WidestLine(Table(listing, {width, false})), width);
        EXPECT_LE(WidestLine(Table(WideListing(), {width, false})), width);
        EXPECT_LE(WidestLine(Table(asked, {width + 2, false})), width + 2);
        EXPECT_LE(WidestLine(Lists(listing, {width + 2, false})), width + 2);
    }
}

TEST(TextTable, ColoursHeadingsAndNullsWhenAllowed) {
    Listing listing({{"A"}, {"B"}});
    listing.AddRow({Cell::Null(), "x"});
    EXPECT_EQ(Table(listing, {0, true}), "\x1b[1mA\x1b[0m  \x1b[1mB\x1b[0m\n"
                                         "\x1b[2m-\x1b[0m  \x1b[2m-\x1b[0m\n"
                                         "\x1b[2m–\x1b[0m  x\n");
}

// --- Lists -------------------------------------------------------------------------------------------------------

TEST(TextTable, ListsHaveALineForEachTextAndAnEmptyOneBetweenRows) {
    EXPECT_EQ(Lists(Disks()), "Name  sda\nSize  7\n\nName  nvme0\nSize  12345\n");
}

TEST(TextTable, ListsFoldTextsBelowThemselves) {
    Listing listing({{"Name"}, {"Text"}});
    listing.AddRow({"a", "one two three four"});
    EXPECT_EQ(Lists(listing, {16, false}), "Name  a\nText  one two\n      three four\n");
}

// --- Texts -------------------------------------------------------------------------------------------------------

TEST(TerminalText, FoldsAWordThatIsTooLongAnywhere) {
    EXPECT_EQ(Wrapped("abcdef", 4), (std::vector<std::string>{"abcd", "ef"}));
    EXPECT_EQ(Wrapped("ab abcdef", 4), (std::vector<std::string>{"ab", "abcd", "ef"}));
    EXPECT_EQ(Wrapped("", 4), (std::vector<std::string>{""}));
    EXPECT_EQ(Wrapped("a   ", 2), (std::vector<std::string>{"a"}));
}

TEST(TerminalText, FoldsALongWordAtItsSeparatorsUnlessTheyLeaveMostOfALineEmpty) {
    EXPECT_EQ(Wrapped("media_store_raw", 10), (std::vector<std::string>{"media_", "store_raw"}));
    EXPECT_EQ(Wrapped("/usr/lib/cmake", 9), (std::vector<std::string>{"/usr/lib/", "cmake"}));
    EXPECT_EQ(Wrapped("a_bcdefghijk", 8), (std::vector<std::string>{"a_bcdefg", "hijk"}));
}

TEST(TerminalText, FoldsALongWordAtItsStrongestSeparators) {
    EXPECT_EQ(Wrapped("Name=\"a_b\",Handle=\"c_d\"", 20),
              (std::vector<std::string>{"Name=\"a_b\",", "Handle=\"c_d\""}));
    EXPECT_EQ(Wrapped("/srv/media_store_raw", 14), (std::vector<std::string>{"/srv/", "media_store_", "raw"}));
}

TEST(WrappedName, IsBrokenBetweenItsWords) {
    EXPECT_EQ(WrappedName("OSCreationClassName", 10), (std::vector<std::string>{"OSCreation", "ClassName"}));
    EXPECT_EQ(WrappedName("OSCreationClassName", 9), (std::vector<std::string>{"OS", "Creation", "ClassName"}));
    EXPECT_EQ(WrappedName("CPU_load", 6), (std::vector<std::string>{"CPU_", "load"}));
    EXPECT_EQ(WrappedName("Availability", 8), (std::vector<std::string>{"Availabi", "lity"}));
    EXPECT_EQ(WrappedName("", 8), (std::vector<std::string>{""}));
}

TEST(WrappedName, NeedsOnlyTheWidthOfItsTwoLines) {
    EXPECT_EQ(cimhttp::WidthOfTwoLines("FileSystemSize"), 10U);                // FileSystem, Size
    EXPECT_EQ(cimhttp::WidthOfTwoLines("ActiveMaximumTransmissionUnit"), 16U); // ActiveMaximum, TransmissionUnit
    EXPECT_EQ(cimhttp::WidthOfTwoLines("Name"), 4U);
}

TEST(TerminalText, KeepsACombiningMarkWithItsLetter) {
    EXPECT_EQ(Wrapped("ao\xcc\x88g", 2), (std::vector<std::string>{"ao\xcc\x88", "g"}));
}

TEST(TerminalText, GivesACharacterWiderThanTheLineALineOfItsOwn) {
    EXPECT_EQ(Wrapped("\xe6\x9d\xb1\xe4\xba\xac", 1), (std::vector<std::string>{"\xe6\x9d\xb1", "\xe4\xba\xac"}));
}

TEST(TerminalText, ReplacesWhatIsNotUtf8) {
    const std::string replacement = "\xef\xbf\xbd";
    EXPECT_EQ(Printable("\xc0\xaf"), replacement + replacement);                   // an overlong form
    EXPECT_EQ(Printable("\xed\xa0\x80"), replacement + replacement + replacement); // a surrogate
    EXPECT_EQ(Printable("\xe2\x82"), replacement + replacement);                   // a character cut short
    EXPECT_EQ(Printable("\xf4\x90\x80\x80").size(), 4 * replacement.size());       // beyond Unicode
    EXPECT_EQ(Printable("\xf0\x9f\x98\x80 \xe2\x82\xac"), "\xf0\x9f\x98\x80 \xe2\x82\xac");
}

// --- Sizes that only a hostile server sends: what takes time in proportion to their square does not end.
// ------

namespace {

constexpr std::size_t kMegabyte = std::size_t{1} << 20U;
constexpr std::size_t kLongestCell = std::size_t{64} << 10U;

/// Columns whose texts are all different, but for every tenth, which repeats the one before.
Listing ManyColumns(std::size_t count, Listing::Importance importance = Listing::Importance::kUsual) {
    std::vector<Listing::Column> columns;
    std::vector<std::vector<Cell>> rows(2);
    for (std::size_t i = 0; i < count; ++i) {
        columns.push_back({"Property" + std::to_string(i), kLeft, importance});
        for (std::size_t row = 0; row < rows.size(); ++row) {
            rows[row].emplace_back(std::to_string((i % 10 == 9 ? i - 1 : i) * rows.size() + row));
        }
    }
    Listing listing(columns);
    for (auto& row : rows) {
        listing.AddRow(std::move(row));
    }
    return listing;
}

} // namespace

TEST(TerminalText, FoldsAWordOfManyMegabytes) {
    const std::string word(16 * kMegabyte, 'x');
    EXPECT_EQ(Wrapped(word, 16).size(), kMegabyte);
}

TEST(WrappedName, IsBrokenHoweverLongItIs) {
    std::string name;
    for (std::size_t i = 0; i < kMegabyte; ++i) {
        name += "Ab";
    }
    EXPECT_EQ(WrappedName(name, kMegabyte), (std::vector<std::string>(2, name.substr(0, kMegabyte))));
}

TEST(TextList, ShowsAWordOfManyMegabytesAsAWhole) {
    Listing listing({{"Name"}});
    listing.AddRow({std::string(4 * kMegabyte, 'x')});
    const std::string lists = Lists(listing, {38, false});
    EXPECT_EQ(std::count(lists.begin(), lists.end(), 'x'), static_cast<std::ptrdiff_t>(4 * kMegabyte));
    EXPECT_EQ(std::count(lists.begin(), lists.end(), '\n'), static_cast<std::ptrdiff_t>(4 * kMegabyte / 32));
}

TEST(TextTable, CutsOffATextBeyond64KiBAndSaysHowMuchIsMissing) {
    Listing listing({Listing::Key("Name"), {"Text"}});
    listing.AddRow({"a", std::string(kLongestCell, 'x')});
    EXPECT_EQ(Table(listing).find("more bytes"), std::string::npos);
    listing.AddRow({"b", std::string(kLongestCell - 1, 'y') + "\xc3\xa9zzz"}); // not within the character
    std::ostringstream output;
    EXPECT_TRUE(cimhttp::WriteTable(listing, {}, output).texts);
    EXPECT_NE(output.str().find("a     " + std::string(kLongestCell, 'x') + '\n'), std::string::npos);
    EXPECT_NE(output.str().find("b     " + std::string(kLongestCell - 1, 'y') + "… (5 more bytes)\n"),
              std::string::npos);
}

TEST(TextTable, CutsOffAHeadingBeyond64KiB) {
    Listing listing({{std::string(kLongestCell, 'N') + "ame"}});
    listing.AddRow({"a"});
    EXPECT_EQ(Table(listing).substr(0, kLongestCell + 20), std::string(kLongestCell, 'N') + "… (3 more bytes)\n-");
}

TEST(TextTable, SaysNothingOfLongTextsThatAListShowsAsAWhole) {
    Listing listing({Listing::Key("Name"), {"Size", kRight}});
    listing.AddRow({std::string(2 * kLongestCell, 'x'), "12345678901234567890"});
    std::ostringstream output;
    EXPECT_FALSE(cimhttp::WriteTable(listing, {20, false}, output).texts);
    const std::string list = output.str();
    EXPECT_EQ(std::count(list.begin(), list.end(), 'x'), static_cast<std::ptrdiff_t>(2 * kLongestCell));
}

TEST(TextTable, ChoosesAmongAHundredThousandColumns) {
    constexpr std::size_t kColumns = 100000;
    const Listing listing = ManyColumns(kColumns);
    std::ostringstream output;
    const auto leftOut = cimhttp::WriteTable(listing, {200, false}, output).columns;
    EXPECT_LE(WidestLine(output.str()), 200U);
    EXPECT_GT(leftOut.size(), kColumns - 200 / 3);
    EXPECT_LT(leftOut.size(), kColumns);
}

TEST(TextTable, SqueezesAHundredThousandColumnsThatWereAskedFor) {
    constexpr std::size_t kColumns = 100000;
    constexpr std::size_t kWidth = kColumns * 8; // six for each column, and two between them
    std::ostringstream output;
    EXPECT_TRUE(cimhttp::WriteTable(ManyColumns(kColumns, kAsked), {kWidth, false}, output).columns.empty());
    EXPECT_EQ(WidestLine(output.str()), kWidth);
}

TEST(TextTable, SqueezesTheWidestColumnsAndOfEqualOnesTheLeftmost) {
    Listing listing({{"A", kLeft, kAsked}, {"B", kLeft, kAsked}, {"C", kLeft, kAsked}, {"D", kLeft, kAsked}});
    listing.AddRow({std::string(9, 'a'), std::string(9, 'b'), "cc", std::string(9, 'd')});
    listing.AddRow({"1", "2", "3", "4"});
    EXPECT_EQ(Table(listing, {24, false}), "A      B      C   D\n"
                                           "-----  -----  --  ------\n"
                                           "aaaaa  bbbbb  cc  dddddd\n"
                                           "aaaa   bbbb       ddd\n"
                                           "1      2      3   4\n");
}

TEST(TextTable, NamesAsManyOfAHundredThousandColumnsThatAreLeftOutAsALineHolds) {
    cimhttp::Options options;
    options.width = 80;
    std::ostringstream output;
    std::ostringstream errors;
    cimhttp::WriteListing(ManyColumns(100000), cimhttp::OutputFormat::kTable, {options, output, errors});
    EXPECT_EQ(errors.str(), "cimhttp: left out: Property7, Property8 and 99991 more; -o plain shows all\n");
}

TEST(TextTable, SaysWhatShowsATextThatIsCutOff) {
    Listing listing({{"Text"}});
    listing.AddRow({std::string(kLongestCell + 1, 'x')});
    const cimhttp::Options options;
    std::ostringstream output;
    std::ostringstream errors;
    cimhttp::WriteListing(listing, cimhttp::OutputFormat::kTable, {options, output, errors});
    EXPECT_EQ(errors.str(), "cimhttp: texts of more than 64 KiB are cut off; -o plain shows all\n");
    for (const auto whole :
         {cimhttp::OutputFormat::kPlain, cimhttp::OutputFormat::kCsv, cimhttp::OutputFormat::kJson}) {
        output.str("");
        cimhttp::WriteListing(listing, whole, {options, output, errors});
        EXPECT_NE(output.str().find(std::string(kLongestCell + 1, 'x')), std::string::npos);
    }
}

// --- Tables that grow --------------------------------------------------------------------------------------------

namespace {

Listing OneDisk(const char* name, const char* size) {
    Listing listing({Listing::Key("Name"), {"Size", kRight}});
    listing.AddRow({name, size});
    return listing;
}

std::string Grown(const Listing& later, std::size_t width) {
    std::ostringstream output;
    cimhttp::GrowingTable table(Disks(), {width, false}, output);
    output.str({});
    table.Add(later);
    return output.str();
}

} // namespace

TEST(GrowingTable, BeginsAsTheTableOfItsFirstRows) {
    std::ostringstream output;
    const cimhttp::GrowingTable table(Disks(), {}, output);
    EXPECT_EQ(output.str(), Table(Disks()));
}

TEST(GrowingTable, PutsLaterRowsIntoTheSameColumns) {
    EXPECT_EQ(Grown(OneDisk("sdb", "11"), 0), "sdb       11\n");
    EXPECT_EQ(Grown(OneDisk("sdb", "11"), 40), "sdb       11\n");
}

TEST(GrowingTable, FoldsLaterTextsThatAreWiderWhereLinesHaveAWidth) {
    EXPECT_EQ(Grown(OneDisk("mapper/root", "1"), 14), "mappe      1\nr/\nroot\n");
    EXPECT_EQ(Grown(OneDisk("mapper/root", "1"), 0), "mapper/root      1\n");
}

TEST(GrowingTable, SaysThatLaterNumbersAreCut) {
    std::ostringstream output;
    cimhttp::GrowingTable table(Disks(), {13, false}, output);
    EXPECT_FALSE(table.Omissions().digits);
    table.Add(OneDisk("sdb", "12345678"));
    EXPECT_TRUE(table.Omissions().digits);
    EXPECT_THAT(output.str(), testing::EndsWith("sdb    12345…\n"));
}

TEST(GrowingTable, IsAListWhereTheFirstRowsHaveNoRoom) {
    std::ostringstream output;
    cimhttp::GrowingTable table(OneDisk("a name that is wider than a line is", "1"), {10, false}, output);
    table.Add(OneDisk("sdb", "2"));
    EXPECT_THAT(output.str(), testing::HasSubstr("\n\nName"));
}
