// What the live view computes from readings, and draws of it, without a server and a terminal.

#include "live/LiveView.h"

#include "live/CounterRates.h"
#include "live/History.h"
#include "live/KnownMaximum.h"
#include "live/LiveKeys.h"
#include "live/LivePicture.h"
#include "text/TerminalText.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>

using namespace cimhttp;
using std::chrono::seconds;
using testing::ElementsAre;

namespace {

using Kind = Key::Kind;

LiveCell Number(double number) {
    LiveCell cell;
    cell.text = std::to_string(std::lround(number));
    cell.width = cell.text.size();
    cell.number = number;
    cell.places = PlacesOf(NQORVYX20::TCIMValue(number));
    return cell;
}

LiveCell Text(const std::string& text) {
    LiveCell cell;
    cell.text = text;
    cell.width = DisplayWidth(text);
    cell.places = PlacesOf(NQORVYX20::TCIMValue(text));
    return cell;
}

LiveCell Null() {
    LiveCell cell;
    cell.text = "–";
    cell.width = 1;
    cell.isNull = true;
    return cell;
}

History::Time At(int second) { return History::Time(seconds(1000000 + second)); } // a multiple of the span

std::shared_ptr<LiveReading> ReadingOf(const std::vector<std::pair<std::string, LiveCell>>& rows, int second = 0) {
    auto reading = std::make_shared<LiveReading>();
    reading->time = At(second);
    reading->timeOfDay = "08:39:00";
    reading->columns = {{"Name", Column::Importance::kKey, false, false},
                        {"Speed", Column::Importance::kUsual, true, false}};
    for (const auto& [name, number] : rows) {
        reading->rows.push_back({"TEST_Fan." + name, {Text(name), number}});
    }
    reading->count = rows.size();
    return reading;
}

LiveView ViewOf(const std::shared_ptr<LiveReading>& reading, LiveView::Settings settings = {"fans", seconds(5)}) {
    LiveView view(std::move(settings));
    view.SetSize({80, 24});
    view.Take(reading);
    return view;
}

std::vector<std::string> NamesShown(const LiveView& view) {
    std::vector<std::string> names;
    for (const std::size_t row : view.Rows()) {
        names.push_back(view.Reading()->rows[row].cells[0].text);
    }
    return names;
}

Key Character(const std::string& character) { return {Kind::kCharacter, character}; }

} // namespace

TEST(LiveViewTest, SortsByTheFirstColumnAtFirst) {
    const auto view = ViewOf(ReadingOf({{"b", Number(1)}, {"a", Number(3)}, {"c", Number(2)}}));
    EXPECT_THAT(NamesShown(view), ElementsAre("a", "b", "c"));
}

TEST(LiveViewTest, NullComesLastInEitherDirection) {
    auto view = ViewOf(ReadingOf({{"a", Null()}, {"b", Number(9)}, {"c", Number(10)}}));
    view.MoveSort(1);
    EXPECT_THAT(NamesShown(view), ElementsAre("c", "b", "a"));
    view.Reverse();
    EXPECT_THAT(NamesShown(view), ElementsAre("b", "c", "a"));
}

TEST(LiveViewTest, EqualRowsKeepTheirOrder) {
    auto view = ViewOf(ReadingOf({{"c", Number(1)}, {"a", Number(1)}, {"b", Number(1)}}));
    view.MoveSort(1);
    EXPECT_THAT(NamesShown(view), ElementsAre("c", "a", "b"));
}

TEST(LiveViewTest, TheOrderEndsAtTheOutermostColumns) {
    auto view = ViewOf(ReadingOf({{"a", Number(1)}}));
    view.MoveSort(5);
    EXPECT_EQ(view.SortColumn(), 1U);
    view.MoveSort(-5);
    EXPECT_EQ(view.SortColumn(), 0U);
}

TEST(LiveViewTest, TheFilterIsKeptForLaterReadings) {
    auto view = ViewOf(ReadingOf({{"Left", Number(1)}, {"right", Number(2)}}));
    view.SetFilter("LEF");
    EXPECT_THAT(NamesShown(view), ElementsAre("Left"));
    view.Take(ReadingOf({{"left2", Number(1)}, {"right", Number(2)}}));
    EXPECT_THAT(NamesShown(view), ElementsAre("left2"));
    view.SetFilter("");
    EXPECT_EQ(view.Rows().size(), 2U);
}

TEST(LiveViewTest, TheLimitIsForTheRowsInTheirOrder) {
    LiveView::Settings settings{"fans", seconds(5)};
    settings.sortColumn = "speed";
    settings.isGreatestFirst = true;
    settings.limit = 2;
    const auto view = ViewOf(ReadingOf({{"a", Number(1)}, {"b", Number(3)}, {"c", Number(2)}}), settings);
    EXPECT_THAT(NamesShown(view), ElementsAre("b", "c"));
    EXPECT_EQ(view.RowsWithoutLimit(), 3U);
}

TEST(LiveViewTest, ScrollingEndsAtTheLastRow) {
    std::vector<std::pair<std::string, LiveCell>> rows;
    rows.reserve(100);
    for (int i = 0; i < 100; ++i) {
        rows.emplace_back("fan" + std::to_string(100 + i), Number(i));
    }
    auto view = ViewOf(ReadingOf(rows)); // 24 lines have room for 20 rows
    PressKey({Kind::kEnd}, view);
    EXPECT_EQ(view.Top(), 80U);
    PressKey({Kind::kPageUp}, view);
    EXPECT_EQ(view.Top(), 60U);
    view.SetFilter("fan11");
    EXPECT_EQ(view.Top(), 0U);
    PressKey({Kind::kDown}, view);
    EXPECT_EQ(view.Top(), 0U) << "all ten rows are seen";
}

TEST(LiveViewTest, TheLastColumnStays) {
    auto view = ViewOf(ReadingOf({{"a", Number(1)}}));
    view.ToggleColumn();
    EXPECT_THAT(view.Columns(), ElementsAre(1U));
    view.MoveCursor(1);
    view.ToggleColumn();
    EXPECT_THAT(view.Columns(), ElementsAre(1U));
}

TEST(LiveViewTest, AColumnThatIsNotShownIsNotSortedBy) {
    auto view = ViewOf(ReadingOf({{"a", Number(1)}, {"b", Number(2)}}));
    view.MoveSort(1);
    view.MoveCursor(1);
    view.ToggleColumn();
    EXPECT_EQ(view.SortColumn(), 0U);
}

TEST(LiveViewTest, WithoutInstancesThereIsNothingToSortAndNoFault) {
    auto view = ViewOf(ReadingOf({}));
    for (const char* const key : {">", "r", "c", " ", " ", "c", "/", "x"}) {
        EXPECT_TRUE(PressKey(Character(key), view));
        PictureOf(view);
    }
    view.Take(ReadingOf({{"xa", Number(1)}}));
    EXPECT_THAT(NamesShown(view), ElementsAre("xa"));
}

TEST(LiveKeysTest, TheKeyThatQuitsIsALetterOfTheFilter) {
    auto view = ViewOf(ReadingOf({{"quick", Number(1)}, {"slow", Number(1)}}));
    PressKey(Character("/"), view);
    EXPECT_TRUE(PressKey(Character("q"), view));
    EXPECT_THAT(NamesShown(view), ElementsAre("quick"));
    EXPECT_FALSE(PressKey({Kind::kInterrupt}, view));
    PressKey({Kind::kEnter}, view);
    EXPECT_FALSE(PressKey(Character("q"), view));
}

TEST(LiveKeysTest, TheFilterIsRubbedOutByWholeCharacters) {
    auto view = ViewOf(ReadingOf({{"a", Number(1)}}));
    for (const Key& key : {Character("/"), Character("x"), Character("漢"), Key{Kind::kBackspace}}) {
        PressKey(key, view);
    }
    EXPECT_EQ(view.Filter(), "x");
    PressKey({Kind::kEraseLine}, view);
    EXPECT_EQ(view.Filter(), "");
}

TEST(CounterRatesTest, ARateNeedsTwoReadings) {
    CounterRates rates;
    rates.Begin(At(0));
    EXPECT_EQ(rates.Rate("fan", "Turns", 100), std::nullopt);
    rates.Begin(At(2));
    EXPECT_EQ(rates.Rate("fan", "Turns", 150), 25.0L);
    EXPECT_EQ(rates.Rate("other", "Turns", 150), std::nullopt);
    EXPECT_EQ(rates.Restarts(), 0U);
}

TEST(CounterRatesTest, ACounterThatIsLessThanBeforeHasNoRateAndIsCounted) {
    CounterRates rates;
    rates.Begin(At(0));
    rates.Rate("fan", "Turns", 18446744073709551615.0L);
    rates.Begin(At(1));
    EXPECT_EQ(rates.Rate("fan", "Turns", 5), std::nullopt);
    EXPECT_EQ(rates.Restarts(), 1U);
    rates.Begin(At(2));
    EXPECT_EQ(rates.Rate("fan", "Turns", 8), 3.0L);
    EXPECT_EQ(rates.Restarts(), 1U) << "so that nobody misses it";
}

TEST(CounterRatesTest, NoDigitIsLostOfCountersOf64Bits) {
    CounterRates rates;
    rates.Begin(At(0));
    rates.Rate("fan", "Turns", 18446744073709551614.0L);
    rates.Begin(At(1));
    EXPECT_EQ(rates.Rate("fan", "Turns", 18446744073709551615.0L), 1.0L);
}

TEST(CounterRatesTest, AnInstanceThatWasAwayBeginsAnew) {
    CounterRates rates;
    rates.Begin(At(0));
    rates.Rate("fan", "Turns", 1);
    rates.Begin(At(1));
    rates.Begin(At(2));
    EXPECT_EQ(rates.Rate("fan", "Turns", 100), std::nullopt);
}

TEST(HistoryTest, HasTheMeansOfSpansOfFiveSeconds) {
    History history(seconds(1));
    history.Add(*ReadingOf({{"a", Number(1)}}, 0));
    history.Add(*ReadingOf({{"a", Number(3)}}, 4));
    history.Add(*ReadingOf({{"a", Number(7)}}, 5));
    const auto means = history.Of("TEST_Fan.a", "Speed");
    EXPECT_EQ(means[11], 7.0);
    EXPECT_EQ(means[10], 2.0);
    EXPECT_EQ(means[9], std::nullopt);
}

TEST(HistoryTest, ANumberCountsUntilTheNextReadingAndNoLonger) {
    History history(seconds(10));
    history.Add(*ReadingOf({{"a", Number(1)}}, 0));
    history.Add(*ReadingOf({{"a", Number(2)}}, 30)); // after readings that failed
    const auto means = history.Of("TEST_Fan.a", "Speed");
    EXPECT_EQ(means[11], 2.0);
    EXPECT_EQ(means[10], std::nullopt);
    EXPECT_EQ(means[9], std::nullopt);
    EXPECT_EQ(means[8], 1.0);
    EXPECT_EQ(means[5], 1.0);
}

TEST(HistoryTest, ForgetsWhatIsOlderThanAMinuteAndInstancesThatHaveGone) {
    History history(seconds(1));
    history.Add(*ReadingOf({{"a", Number(1)}, {"b", Number(5)}}, 0));
    history.Add(*ReadingOf({{"a", Number(2)}}, 600));
    const auto means = history.Of("TEST_Fan.a", "Speed");
    EXPECT_EQ(means[11], 2.0);
    for (std::size_t i = 0; i < 11; ++i) {
        EXPECT_EQ(means[i], std::nullopt) << i;
    }
    history.Add(*ReadingOf({{"b", Number(6)}}, 605));
    EXPECT_EQ(history.Of("TEST_Fan.b", "Speed")[0], std::nullopt);
    EXPECT_EQ(history.Of("TEST_Fan.b", "Speed")[11], 6.0);
}

TEST(LivePictureTest, BarsGoToAnEighthOfACharacter) {
    EXPECT_EQ(BarText(0, 4, true), "");
    EXPECT_EQ(BarText(0.5, 4, true), "██");
    EXPECT_EQ(BarText(0.53125, 4, true), "██▏");
    EXPECT_EQ(BarText(7.0 / 32, 4, true), "▉");
    EXPECT_EQ(BarText(1, 4, true), "████");
    EXPECT_EQ(BarText(0.5, 4, false), "##");
}

TEST(LivePictureTest, BlocksAreAsHighAsTheirNumbers) {
    History::Means means;
    means[9] = 0;
    means[10] = 50;
    means[11] = 100;
    EXPECT_EQ(BlocksText(means, 0, 100, true), "         ▁▅█");
    EXPECT_EQ(BlocksText(means, 0, 0, true), "         ▁▁▁");
    EXPECT_EQ(BlocksText(means, 0, 100, false), "         _=#");
}

TEST(LivePictureTest, NothingGoesBeyondAScreenOfAnySize) {
    auto reading = ReadingOf({{"漢字漢字漢字漢字", Number(123456789)}, {std::string(300, 'w'), Null()}});
    reading->rows[0].cells[1].share = 0.4;
    reading->columns[1].name = "漢字 heading that is rather long";
    auto view = ViewOf(reading);
    view.SetRemarks({std::string(500, '!'), "漢字漢字漢字"});
    for (const auto mode :
         {LiveView::Mode::kRows, LiveView::Mode::kFilter, LiveView::Mode::kColumns, LiveView::Mode::kHelp}) {
        view.SetMode(mode);
        for (const std::size_t lines : {0, 1, 2, 3, 5, 30}) {
            for (std::size_t columns = 0; columns < 100; ++columns) {
                view.SetSize({columns, lines});
                const Picture picture = PictureOf(view);
                ASSERT_LE(picture.lines.size(), std::max<std::size_t>(lines, 1));
                for (const auto& line : picture.lines) {
                    for (const auto& span : line) {
                        ASSERT_LE(span.column + DisplayWidth(span.text), columns) << span.text;
                    }
                }
            }
        }
    }
}

TEST(LivePictureTest, TheColumnThatIsSortedByIsSeen) {
    auto view = ViewOf(ReadingOf({{std::string(40, 'n'), Number(5)}}));
    view.SetSize({30, 10});
    view.MoveSort(1);
    const Picture picture = PictureOf(view);
    std::string headings;
    for (const auto& span : picture.lines.at(2)) {
        headings += span.text;
    }
    EXPECT_THAT(headings, testing::HasSubstr("Speed▼"));
}

TEST(KnownMaximumTest, NamesTheOtherPropertyInAnyCase) {
    EXPECT_EQ(MaximumOf("availablespace"), "FileSystemSize");
    EXPECT_EQ(MaximumOf("Name"), "");
}
