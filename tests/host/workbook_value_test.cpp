#include <doctest/doctest.h>

#include <cmath>
#include <limits>

#include "host/workbook/cell_names.h"
#include "host/workbook/terminal_text.h"
#include "host/workbook/text.h"
#include "host/workbook/value.h"
#include "host/workbook/workbook.h"

using namespace zavhost;

TEST_CASE("what would act on a terminal is blanked or escaped") {
  const std::u16string text = u"a\x1B[31m\x9B\x202E\x200F\tb\n";
  CHECK(PrintableUtf8(text) == "a [31m    b ");
  CHECK(EscapedUtf8(Utf8FromUtf16(text)) == "a\\u001B[31m\\u009B\\u202E\\u200F\tb\n");
  CHECK(EscapedUtf8("\xC3\xBC\xE2\x82\xAC") == "\xC3\xBC\xE2\x82\xAC");
}

TEST_CASE("General format shows fifteen digits and the shortest form") {
  for (const auto& [number, shown] : {std::pair{0.0, "0"},
                                      {-0.0, "0"},
                                      {1.0 / 3.0, "0.333333333333333"},
                                      {-2.0 / 3.0, "-0.666666666666667"},
                                      {0.1 + 0.2, "0.3"},
                                      {1 + 0x1p-15, "1.00003051757813"},  // exactly between
                                      {-1 - 0x5p-15, "-1.00015258789063"},
                                      {123456789012.0, "123456789012"},
                                      {1234567890123456.0, "1234567890123460"},
                                      {99999999999999.96, "100000000000000"},
                                      {12.5, "12.5"},
                                      {1e19, "10000000000000000000"},
                                      {1e20, "1E+20"},
                                      {-1.5e300, "-1.5E+300"},
                                      {0.0001, "0.0001"},
                                      {0.0000123, "1.23E-05"},
                                      {5e-324, "4.94065645841247E-324"},
                                      {std::numeric_limits<double>::infinity(), "#NUM!"},
                                      {std::nan(""), "#NUM!"}})
    CHECK(Utf8FromUtf16(GeneralText(number)) == shown);
}

TEST_CASE("texts become numbers as cell entries do") {
  const std::pair<const char16_t*, double> good[] = {
      {u"1.5", 1.5},   {u" -2e3 ", -2000},  {u"+.5", 0.5},          {u"7.", 7},
      {u"50%", 0.5},   {u"12.5 %", 0.125},  {u"1,234.5", 1234.5},   {u"1,234,567", 1234567},
      {u"1E+05", 1e5}, {u"\u00A03\t", 3},   {u"0.1", 0.1},          {u"-0", 0},
      {u"007", 7},     {u"1e-320", 1e-320}, {u"-12,345%", -123.45},
  };
  for (const auto& [text, number] : good) {
    CAPTURE(Utf8FromUtf16(text));
    const std::optional<double> read = NumberFromText(text);
    REQUIRE(read.has_value());
    CHECK(*read == number);
  }
  for (const char16_t* text :
       {u"",        u" ",        u".",      u"-",     u"+-1", u"- 1", u"1 2",
        u"1e",      u"1e+",      u"e5",     u"0x10",  u"inf", u"nan", u"1,23",
        u",123",    u"1234,567", u"1,234,", u"1.2.3", u"1%%", u"%",   u"1e999",
        u"1.5,000", u"\uFF11",   u"1e5.5",  u"1 - 2"}) {
    CAPTURE(Utf8FromUtf16(text));
    CHECK(!NumberFromText(text).has_value());
  }
}

TEST_CASE("values keep their kinds apart") {
  CHECK(!(Value(u"a") == Value(u"A")));
  CHECK(!(Value(1.0) == Value(true)));
  for (const std::int32_t code : {0, 7, 15, 23, 29, 36, 42, 43, 45, 46, 47, 48, 49, 50}) {
    CHECK(ErrorFromText(ErrorText(static_cast<ErrorCode>(code))) == static_cast<ErrorCode>(code));
  }
  CHECK(ErrorFromText(u"#n/a") == ErrorCode::kNA);
  CHECK(!ErrorFromText(u"N/A"));
  CHECK(ErrorText(static_cast<ErrorCode>(99)) == u"#UNKNOWN!");
}

TEST_CASE("cells have A1 names") {
  CHECK(A1Text(0, 0) == u"A1");
  CHECK(A1Text(6, 25) == u"Z7");
  CHECK(A1Text(kSheetRows - 1, kSheetColumns - 1) == u"XFD1048576");
  CHECK(A1Text(CellRange{1, 26, 2, 702}) == u"AA2:AAA3");
  CHECK(A1Text(CellRange{0, 1, kSheetRows - 1, 2}) == u"B:C");
  CHECK(A1Text(CellRange{2, 0, 2, kSheetColumns - 1}) == u"3:3");
  CHECK(ParseCellName("$xfd$1048576") == CellPosition{kSheetRows - 1, kSheetColumns - 1});
  for (const char* name :
       {"", "A", "1", "A0", "XFE1", "A1048577", "A-1", "A1B", "A99999999999999"}) {
    CAPTURE(name);
    CHECK(!ParseCellName(name));
  }
  CHECK(ParseRangeName("C9:B7") == CellRange{6, 1, 8, 2});
  CHECK(!ParseRangeName("B7:"));
}

TEST_CASE("a sheet keeps sparse cells in any order of arrival") {
  Sheet sheet(u"S");
  CHECK(!sheet.used_range());
  CHECK(sheet.At(5, 5).IsBlank());
  CHECK(sheet.column(9).empty());
  sheet.Append(9, 3, 1.0);
  sheet.Append(2, 3, 2.0);
  sheet.Append(9, 3, 3.0);
  sheet.Append(1, kSheetColumns - 1, true);
  sheet.Append(0, 0, 4.0);
  sheet.SortColumns();
  REQUIRE(sheet.column(3).size() == 2);
  CHECK(sheet.column(3)[0].row == 2);
  CHECK(sheet.At(9, 3) == Value(3.0));
  sheet.Set(5, 3, u"between");
  sheet.Set(2, 3, 7.0);
  CHECK(sheet.column(3).size() == 3);
  CHECK(sheet.At(5, 3) == Value(u"between"));
  CHECK(sheet.At(2, 3) == Value(7.0));
  CHECK(sheet.At(0, 0) == Value(4.0));
  CHECK(sheet.used_range() == CellRange{0, 0, 9, kSheetColumns - 1});
}

TEST_CASE("names are found in any letter case, a sheet's own first") {
  Workbook book;
  book.sheets.emplace_back(u"Übersicht");
  book.sheets.emplace_back(u"ДАННЫЕ");
  book.sheets.emplace_back(u"ΟΔΟΣ");
  CHECK(book.FindSheet(u"übersicht") == 0u);
  CHECK(book.FindSheet(u"данные") == 1u);
  CHECK(book.FindSheet(u"οδος") == 2u);  // the last letter has a form of its own
  CHECK(!book.FindSheet(u"Data"));
  book.names = {{u"Größe", u"1", {}}, {u"größe", u"2", 1u}, {u"other", u"3", 1u}};
  CHECK(book.FindName(u"GRÖßE", 0)->text == u"1");
  CHECK(book.FindName(u"größe", 1)->text == u"2");
  CHECK(book.FindName(u"Other", 1)->text == u"3");
  CHECK(book.FindName(u"Other", 0) == nullptr);
  book.names.push_back({u"late", u"4", {}});
  CHECK(book.FindName(u"LATE", 0)->text == u"4");
}
