#include "TextTable.h"

#include <gtest/gtest.h>

#include <sstream>

using cimhttp::TextTable;

namespace {

std::string Written(const TextTable& table) {
    std::ostringstream output;
    table.Write(output);
    return output.str();
}

std::string Listed(const TextTable& table, std::size_t row) {
    std::ostringstream output;
    table.WriteRowAsList(row, output);
    return output.str();
}

} // namespace

TEST(TextTable, AlignsTextsLeftAndNumbersRight) {
    TextTable table;
    table.AddColumn("Name", TextTable::Align::kLeft, {"sda", "nvme0"});
    table.AddColumn("Size", TextTable::Align::kRight, {"7", "12345"});
    EXPECT_EQ(Written(table), "Name    Size\n"
                              "-----  -----\n"
                              "sda        7\n"
                              "nvme0  12345\n");
    EXPECT_EQ(table.Width(), 12U);
    EXPECT_EQ(table.RowCount(), 2U);
}

TEST(TextTable, CountsCharactersNotBytes) {
    TextTable table;
    table.AddColumn("Ort", TextTable::Align::kLeft, {"K\xc3\xb6ln", "Bonn"});
    table.AddColumn("X", TextTable::Align::kLeft, {"1", "2"});
    EXPECT_EQ(Written(table), "Ort   X\n----  -\nK\xc3\xb6ln  1\nBonn  2\n");
}

TEST(TextTable, LeavesNoBlanksAtTheEndOfALine) {
    TextTable table;
    table.AddColumn("Name", TextTable::Align::kLeft, {"a", ""});
    EXPECT_EQ(Written(table), "Name\n----\na\n\n");
}

TEST(TextTable, ShowsControlCharactersAsBlanks) {
    TextTable table;
    table.AddColumn("Name", TextTable::Align::kLeft, {"a\nb\x1b[31m\x7f"});
    EXPECT_EQ(Written(table), "Name\n---------\na b [31m\n");
}

TEST(TextTable, ARowAsAListLeavesEmptyTextsOut) {
    TextTable table;
    table.AddColumn("Name", TextTable::Align::kLeft, {"sda", "sdb"});
    table.AddColumn("Vendor", TextTable::Align::kLeft, {"", "ACME"});
    table.AddColumn("Size", TextTable::Align::kRight, {"1", "2"});
    EXPECT_EQ(Listed(table, 0), "Name    sda\nSize    1\n");
    EXPECT_EQ(Listed(table, 1), "Name    sdb\nVendor  ACME\nSize    2\n");
}
