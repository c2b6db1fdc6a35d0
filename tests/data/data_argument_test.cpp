#include "data/data_argument.h"

#include <doctest/doctest.h>

#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include "data/cell_reader.h"
#include "data/data_key.h"
#include "numbers/error_double.h"
#include "support/each_target.h"
#include "support/fake_excel.h"

namespace zavrel::tests {
namespace {

using Pieces = std::initializer_list<const XLOPER12*>;

DataArgument Read(Pieces pieces) { return ReadDataArgument({pieces.begin(), pieces.size()}); }
std::shared_ptr<ExcelData> Data(Pieces pieces) { return *Read(pieces); }
ReadOutcome OutcomeOf(const DataArgument& argument) {
  if (argument.ok()) return ReadOutcome::kRead;
  CHECK(argument.failure().value().record().val.err == xlerrRef);
  return argument.failure().uncalculated() ? ReadOutcome::kUncalculated : ReadOutcome::kUnreadable;
}
ReadOutcome OutcomeOf(Pieces pieces) { return OutcomeOf(Read(pieces)); }

/// The cells in short: numbers, "texts", TRUE, #code, - for omitted, . for blank.
std::string Shown(const ExcelData& data) {
  std::string shown;
  for (std::size_t i = 0; i < data.size(); ++i) {
    const ExcelData::SingleValue value = data[i];
    if (i > 0) shown += ' ';
    switch (value.type()) {
      case xltypeNum:
        shown += std::to_string(static_cast<int>(value.number));
        break;
      case xltypeStr:
        shown += '"' + std::string(value.text.begin(), value.text.end()) + '"';
        break;
      case xltypeBool:
        shown += value.code != 0 ? "TRUE" : "FALSE";
        break;
      case xltypeErr:
        shown += '#' + std::to_string(value.code);
        break;
      case xltypeMissing:
        shown += '-';
        break;
      case xltypeNil:
        shown += '.';
        break;
      case xltypeInt:
        shown += 'i' + std::to_string(value.code);
        break;
      default:
        FAIL("no type of a cell: " << value.type());
    }
  }
  return shown;
}
std::string Shown(Pieces pieces) { return Shown(*Data(pieces)); }

}  // namespace

TEST_CASE("arguments of every shape become cells, in their order") {
  FakeExcel excel;
  excel.SetColumn(0, 0, {1.0, u"a", Cell(), true, ErrorCell{42}});
  excel.SetColumn(0, 1, {10.0, 20.0, 30.0});
  excel.Set(0, 0, 100.0, 7);
  excel.Set(1, 0, u"x", 7);

  const Reference column(Area(0, 4, 0, 0));
  const Reference block(Area(0, 1, 0, 1));
  const Reference cell(Area(0, 0, 1, 1));
  const Reference blank_cell(Area(9, 9, 9, 9));
  const Reference areas(FakeExcel::kCallingSheet,
                        {Area(0, 1, 1, 1), Area(2, 2, 0, 1), Area(0, 0, 1, 1)});
  const Reference elsewhere(7, {Area(0, 2, 0, 0)});
  const Argument array(2, 2, {1.0, u"", false, ErrorCell{7}});
  const Argument number(Cell(5.0));
  const Argument text(Cell(u"12"));
  const Argument missing(xltypeMissing);
  const Argument nil(xltypeNil);
  const Argument integer(xltypeInt);

  CHECK(Shown({column}) == "1 \"a\" . TRUE #42");
  CHECK(Shown({block}) == "1 10 \"a\" 20");
  CHECK(Shown({cell}) == "10");
  CHECK(Shown({blank_cell}) == ".");
  CHECK(Shown({areas}) == "10 20 . 30 10");
  CHECK(Shown({elsewhere}) == "100 \"x\" .");
  CHECK(Shown({array}) == "1 \"\" FALSE #7");
  CHECK(Shown({number, text, nil, integer}) == "5 \"12\" . i0");
  CHECK(Shown({cell, elsewhere, array, number}) == "10 100 \"x\" . 1 \"\" FALSE #7 5");

  CHECK(Shown({missing}) == "-");
  CHECK(Shown({nullptr}) == "-");
  CHECK(Shown({}) == "-");
  CHECK(Shown({missing, nullptr, missing}) == "-");
  CHECK(Shown({number, missing, missing, nullptr}) == "5");
  CHECK(Shown({missing, number, nullptr, number, missing}) == "- 5 - 5");

  // Without a session nothing is kept, and the cells are the same.
  SetSessionCaches(nullptr, nullptr);
  CHECK(Shown({column}) == "1 \"a\" . TRUE #42");
}

TEST_CASE("what is too large is refused without being read") {
  FakeExcel excel;
  excel.SetColumn(0, 0, {1.0, 2.0});
  const Reference nearly_everything(Area(1, kExcelRows - 1, 1, kExcelColumns - 1));
  CHECK(OutcomeOf({nearly_everything}) == ReadOutcome::kUnreadable);
  CHECK(excel.lookups == 0);
}

TEST_CASE("of whole columns and rows the used part is read, and no other cell") {
  FakeExcel excel;
  std::int64_t read = 0;
  excel.answer = [&](const XLREF12& asked) {
    read += std::int64_t{RowsOf(asked)} * ColumnsOf(asked);
    return xlretSuccess;
  };
  const XLREF12 sheet = WholeRows(0, kExcelRows - 1);
  for (const auto& [row, column] : {std::pair{0, 0}, {1, 2}, {70000, 3}, {kExcelRows - 1, 0}}) {
    excel.Set(row, column, 7.0);
    const std::pair<XLREF12, std::int64_t> cases[] = {
        {WholeColumns(column, column), row + 1},
        {WholeColumns(0, kExcelColumns - 2), std::int64_t{row + 1} * (kExcelColumns - 1)},
        {WholeRows(row, row), column + 1},
        {WholeRows(0, row), std::int64_t{row + 1} * (column + 1)},
        {sheet, std::int64_t{row + 1} * (column + 1)}};
    for (const auto& [area, cells] : cases) {
      if (cells > 1 << 22) continue;
      CAPTURE(row);
      CAPTURE(area.rwLast);
      read = 0;
      const auto data = Data({Reference(area)});
      CHECK(data->NumberCount() == 1);
      CHECK(data->size() == static_cast<std::size_t>(cells));
      CHECK(read == cells);
    }
    excel.Set(row, column, Cell());
    read = 0;
    CHECK(Shown({Reference(sheet)}).empty());
    CHECK(read == 0);
  }
}

TEST_CASE("a host that does not count its cells gives none") {
  FakeExcel excel;
  excel.SetColumn(0, 0, {1.0, 2.0});
  const Reference column(WholeColumns(0, 0));
  int left = 0;
  excel.fault = [&](int function, FakeExcel::Arguments, XLOPER12&) -> std::optional<int> {
    if (function != xlfCounta || left-- != 0) return std::nullopt;
    return xlretUncalced;
  };
  for (int k = 0; k <= 20; ++k) {  // the twenty-first is the last
    left = k;
    excel.lookups = 0;
    CHECK(OutcomeOf({column}) == ReadOutcome::kUncalculated);
    CHECK(excel.lookups == 0);  // told so, it returns at once
    CHECK(Shown({column}) == "1 2");
  }
  excel.On(xlfCounta, [](FakeExcel::Arguments, XLOPER12& result) {
    result = XXloper::Boolean(true).record();
    return xlretSuccess;
  });
  CHECK(OutcomeOf({column}) == ReadOutcome::kUnreadable);
}

TEST_CASE("whole areas that come to too many cells together are refused") {
  FakeExcel excel;
  excel.SetColumn(0, 0, std::vector<Cell>(40, 1.0));
  excel.Set(80, 1, 1.0);
  excel.Set(50000, 2, 1.0);
  excel.Set(0, 9, 1.0);
  const auto outcome = [](const XLOPER12* piece, std::size_t most) {
    return OutcomeOf(ReadDataArgument({&piece, 1}, most));
  };
  const Reference a(WholeColumns(0, 0));
  const Reference twice(FakeExcel::kCallingSheet, {WholeColumns(0, 0), WholeColumns(0, 0)});
  const Reference b(WholeColumns(1, 1));
  const Reference c(WholeColumns(2, 2));
  const Reference rows(WholeRows(0, 9));
  const std::pair<const XLOPER12*, std::size_t> sizes[] = {
      {a, 40}, {twice, 80}, {b, 81}, {c, 50001}, {rows, 100}};
  CHECK(outcome(c, 100) == ReadOutcome::kUnreadable);
  for (int round = 0; round < 2; ++round) {  // the second one finds the cells in the cache
    for (const auto& [piece, size] : sizes) {
      CHECK(outcome(piece, size - 1) == ReadOutcome::kUnreadable);
      CHECK(outcome(piece, size) == ReadOutcome::kRead);
    }
  }
  // A known data set that grows.
  excel.Set(40, 0, 1.0);
  CHECK(outcome(a, 40) == ReadOutcome::kUnreadable);
  CHECK(outcome(a, 41) == ReadOutcome::kRead);
}

TEST_CASE("a data set is kept while its cells are the same, and replaced when one differs") {
  FakeExcel excel;
  for (std::int32_t row = 0; row < 40; ++row) excel.Set(row, 0, 1.0 + row);
  const Reference reference(Area(0, 39, 0, 0));
  auto data = Data({reference});
  CHECK(Data({reference}) == data);
  // The same range, named by its sheet.
  const Reference on_sheet(FakeExcel::kCallingSheet, {Area(0, 39, 0, 0)});
  CHECK(Data({on_sheet}) == data);

  const double nan = std::numeric_limits<double>::quiet_NaN();
  const std::vector<Cell> contents{0.0,          -0.0,         std::nextafter(0.0, 1.0),
                                   nan,          -nan,         u"",
                                   u"ab",        u"ac",        u"abc",
                                   Cell(),       false,        true,
                                   ErrorCell{0}, ErrorCell{1}, 1.0,
                                   u"ab"};
  EachTarget([&] {
    for (const std::int32_t row : {0, 7, 8, 33, 39}) {
      for (const Cell& content : contents) {
        excel.Set(row, 0, content);
        const auto changed = Data({reference});
        CHECK(changed != data);
        data = changed;
        CHECK(Data({reference}) == data);
      }
    }
  });
  // The replaced data sets are gone.
  CHECK(SessionExcelDataCache()->size() == 1);
}

TEST_CASE("a whole column is read anew when a cell is emptied, filled, or its last one goes") {
  FakeExcel excel;
  constexpr std::int32_t kFarRow = 70000;  // several requests below
  const Reference column(WholeColumns(0, 0));
  const auto check = [&](const std::vector<double>& numbers, std::size_t size) {
    const auto data = Data({column});
    const auto given = data->Numbers(MissingDataPolicy::kNumbersOnly);
    CHECK(std::vector<double>(given.begin(), given.end()) == numbers);
    CHECK(data->size() == size);
    CHECK(Data({column}) == data);
  };
  excel.SetColumn(0, 0, {1.0, 2.0});
  excel.Set(100, 0, 3.0);
  excel.Set(kFarRow, 0, 4.0);
  check({1, 2, 3, 4}, kFarRow + 1);
  excel.Set(100, 0, Cell());
  check({1, 2, 4}, kFarRow + 1);
  excel.Set(50000, 0, 5.0);
  check({1, 2, 5, 4}, kFarRow + 1);
  excel.Set(kFarRow, 0, Cell());
  check({1, 2, 5}, 50001);
}

TEST_CASE("texts of all lengths are stored whole, and one unit makes a difference") {
  FakeExcel excel;
  const std::u16string letters = u"abcdefghijklmnop";
  for (std::size_t length = 1; length <= letters.size(); ++length) {
    const std::u16string text = letters.substr(0, length);
    const Reference reference(Area(0, 0, 0, 0));
    excel.Set(0, 0, text);
    const auto data = Data({reference});
    CHECK((*data)[0].text == text);
    CHECK(Data({reference}) == data);
    for (std::size_t i = 0; i < length; ++i) {
      std::u16string other = text;
      other[i] = u'-';
      excel.Set(0, 0, other);
      const auto changed = Data({reference});
      CHECK((*changed)[0].text == other);
      CHECK(CategoryTable::Of(changed->cells())->Find(text) == nullptr);
      excel.Set(0, 0, text);
      CHECK((*Data({reference}))[0].text == text);
    }
  }
}

TEST_CASE("texts beyond what is stored together are found again") {
  CellColumns cells;
  std::vector<std::u16string> texts;
  texts.reserve(40);
  for (char16_t i = 0; i < 40; ++i) texts.emplace_back(32'767, static_cast<char16_t>(u'a' + i));
  for (const std::u16string& text : texts) {
    const Argument cell(1, 1, {text});
    cells.Append({static_cast<const XLOPER12*>(cell)->val.array.lparray, 1});
  }
  for (std::size_t i = 0; i < texts.size(); ++i) CHECK(cells[i].text == texts[i]);
  CHECK(cells.bytes() >= std::size_t{40} * 32'767 * sizeof(char16_t));
}

TEST_CASE("two sheets with equal addresses never evict each other") {
  FakeExcel excel;
  constexpr std::uint64_t kSheets[] = {FakeExcel::kCallingSheet, FakeExcel::kCallingSheet + 1};
  for (const std::uint64_t sheet : kSheets)
    excel.SetColumn(0, 0, {1.0, static_cast<double>(sheet)}, sheet);
  // A host that does not convert references to the kind with a sheet tells names and their ids.
  excel.On(xlSheetNm, [&](FakeExcel::Arguments, XLOPER12& result) {
    excel.GiveText(excel.calling_sheet == kSheets[0] ? u"[Book]First" : u"[Book]Second", result);
    return xlretSuccess;
  });
  std::size_t ids_asked = 0;
  excel.On(xlSheetId, [&](FakeExcel::Arguments arguments, XLOPER12& result) {
    ++ids_asked;
    result.xltype = xltypeRef;
    result.val.mref = {nullptr, kSheets[TextIn(*arguments[0]) == u"[Book]First" ? 0 : 1]};
    return xlretSuccess;
  });
  const Reference local(Area(0, 1, 0, 0));
  std::vector<std::shared_ptr<ExcelData>> kept;
  for (const std::uint64_t sheet : kSheets)
    kept.push_back(Data({Reference(sheet, {Area(0, 1, 0, 0)})}));
  for (const int code : {xlretSuccess, xlretFailed}) {
    excel.conversion_code = code;
    for (const int turn : {0, 1, 0, 1}) {
      excel.calling_sheet = kSheets[turn];
      CHECK(Data({local}) == kept[static_cast<std::size_t>(turn)]);
    }
  }
  CHECK(SessionExcelDataCache()->size() == 2);
  CHECK(ids_asked == 2);  // once for each sheet
}

TEST_CASE("arrays and values are told apart by content, not by their fingerprint") {
  const FakeExcel excel;
  const Argument row(1, 3, {1.0, 2.0, 3.0});
  const Argument same(1, 3, {1.0, 2.0, 3.0});
  const Argument other(1, 3, {1.0, 3.0, 2.0});
  CHECK(Data({row}) == Data({same}));
  CHECK(Shown({other}) == "1 3 2");

  // Another data set under the same key.
  const ArgumentPiece piece = ArgumentPiece::Of(row);
  CellColumns cells;
  cells.AppendBlanks(3);
  const auto impostor = std::make_shared<ExcelData>(
      DataKey({&piece, 1}, SessionExcelDataCache()->sheet_ids()).value(), std::move(cells));
  SessionExcelDataCache()->Put(impostor);
  CHECK(Shown({row}) == "1 2 3");
}

TEST_CASE("hostile arguments are refused or read as errors") {
  FakeExcel excel;
  for (const auto& [rows, columns] : {std::pair{1, 1}, {0, 5}, {-1, -1}, {65536, 65536}}) {
    XLOPER12 array{};
    array.xltype = xltypeMulti;
    array.val.array.rows = rows;
    array.val.array.columns = columns;
    CHECK(OutcomeOf({&array}) == ReadOutcome::kUnreadable);
  }
  const Reference none(1, {}), off_the_sheet(Area(0, kExcelRows, 0, 0));
  for (const XLOPER12* reference : std::initializer_list<const XLOPER12*>{none, off_the_sheet})
    CHECK(OutcomeOf({reference}) == ReadOutcome::kUnreadable);
  CHECK(excel.lookups == 0);

  XLOPER12 strange[5]{};
  strange[0].xltype = xltypeStr;    // without a text
  strange[1].xltype = xltypeMulti;  // within an array
  strange[2].xltype = xltypeRef;
  strange[3].xltype = 0x0F00;
  strange[4].xltype = xltypeNum | xlbitXLFree | xlbitDLLFree;
  XLOPER12 array{};
  array.xltype = xltypeMulti;
  array.val.array.lparray = strange;
  array.val.array.rows = 1;
  array.val.array.columns = 5;
  CHECK(Shown({&array}) == "\"\" #15 #15 #15 0");
  CHECK(Shown({&strange[3]}) == "#15");

  const Argument one(Cell(1.0));
  const std::vector<const XLOPER12*> many(300, one);
  CHECK(OutcomeOf(ReadDataArgument(many)) == ReadOutcome::kUnreadable);
}

TEST_CASE("cells that the host does not give") {
  FakeExcel excel;
  for (std::int32_t row = 0; row < 100000; row += 100) excel.Set(row, 0, 1.0 * row);
  const Reference reference(Area(0, 99999, 0, 0));
  const auto data = Data({reference});
  for (const auto& [code, outcome] : {std::pair{xlretUncalced, ReadOutcome::kUncalculated},
                                      {xlretAbort, ReadOutcome::kUncalculated},
                                      {xlretFailed, ReadOutcome::kUnreadable}}) {
    excel.lookups = 0;
    excel.answer = [code](const XLREF12& area) {
      return area.rwFirst >= 50000 ? code : xlretSuccess;
    };
    CHECK(OutcomeOf({reference}) == outcome);
    CHECK(excel.lookups == 3);  // and not once more
  }
  excel.answer = nullptr;
  CHECK(Data({reference}) == data);
  // The calling sheet is requested first. A host that cannot give it does not stop the reading; one
  // that wants the call to return does.
  excel.lookups = 0;
  for (const int code : {xlretUncalced, xlretAbort}) {
    excel.conversion_code = code;
    CHECK(OutcomeOf({reference}) == ReadOutcome::kUncalculated);
  }
  CHECK(excel.lookups == 0);
  excel.conversion_code = xlretFailed;
  CHECK(OutcomeOf({reference}) == ReadOutcome::kRead);
  excel.conversion_code = xlretSuccess;
  SetExcelCallback(nullptr);
  CHECK(OutcomeOf({reference}) == ReadOutcome::kUnreadable);
}

}  // namespace zavrel::tests
