#include "data/stacked_data.h"

#include <doctest/doctest.h>

#include <string>

#include "data/data_argument.h"
#include "platform/utf.h"
#include "support/fake_excel.h"

namespace zavrel::tests {
namespace {

StackedSelections& Selections() { return SessionExcelDataCache()->stacked_selections(); }

StackedSelection::Condition Named(const XLOPER12* categories, const char16_t* name) {
  return {*KeptArgument::Of(*categories), name};
}
StackedSelection Selection(const XLOPER12* values, const XLOPER12* categories,
                           const char16_t* name) {
  return {*KeptArgument::Of(*values), Named(categories, name), std::nullopt};
}
StackedSelection Selection(const XLOPER12* values, const XLOPER12* categories, const char16_t* name,
                           const XLOPER12* others, const char16_t* other) {
  return {*KeptArgument::Of(*values), Named(categories, name), Named(others, other)};
}
std::u16string HandleOf(StackedSelection selection) {
  return Utf16FromUtf8(StackedHandle(Selections().IndexOf(std::move(selection))));
}

DataArgument Read(std::initializer_list<const XLOPER12*> pieces, std::size_t most = kMostCells) {
  return ReadDataArgument({pieces.begin(), pieces.size()}, most);
}

/// The cells of a data set: numbers as they are, texts, "-" for blank ones.
std::string Shown(const DataArgument& argument) {
  if (!argument.ok()) return argument.failure().uncalculated() ? "uncalculated" : "unreadable";
  std::string shown;
  for (std::size_t i = 0; i < (*argument)->size(); ++i) {
    const SingleValue cell = (**argument)[i];
    shown += cell.IsNumber()              ? std::to_string(static_cast<int>(cell.number))
             : cell.tag == CellTag::kText ? Utf8FromUtf16(cell.text)
                                          : "-";
    shown += ';';
  }
  return shown;
}

/// Values in A1:A6, regions in B1:B6, years in C1:C6.
struct Table {
  Table() {
    excel.texts_of_numbers = {{1, u"1"}, {2, u"2"}};
    excel.SetColumn(0, 0, {10.0, 20.0, u"x", 40.0, Cell(), 60.0});
    excel.SetColumn(0, 1, {u"North", u"South", u"NORTH ", u"South", u"north", Cell()});
    excel.SetColumn(0, 2, {1.0, 1.0, 2.0, 2.0, 2.0, 1.0});
  }
  FakeExcel excel;
  Reference values{Area(0, 5, 0, 0)};
  Reference regions{Area(0, 5, 1, 1)};
  Reference years{Area(0, 5, 2, 2)};
};

}  // namespace

TEST_CASE("the same arguments have the same handle, others another") {
  const Table table;
  const Argument array(1, 2, {1.0, u"a"});
  const Argument same(1, 2, {1.0, u"a"});
  const Argument blank(1, 2, {1.0, Cell()});
  const Argument empty(1, 2, {1.0, u""});
  const Reference elsewhere(7, {Area(0, 5, 0, 0)});
  const Reference explicit_sheet(FakeExcel::kCallingSheet, {Area(0, 5, 0, 0)});
  const Reference two(FakeExcel::kCallingSheet, {Area(0, 2, 0, 0), Area(3, 5, 0, 0)});

  const std::u16string handle = HandleOf(Selection(table.values, table.regions, u"North"));
  CHECK(handle.size() == 11);
  CHECK(handle.starts_with(u"\u0001\u0002"));
  CHECK(StackedHandleIndex(handle).value() % StackedSelections::kArguments == 0);
  CHECK(HandleOf(Selection(explicit_sheet, table.regions, u"North")) == handle);

  std::vector<std::u16string> handles{handle};
  for (const XLOPER12* values :
       std::initializer_list<const XLOPER12*>{elsewhere, two, array, blank, empty, table.regions}) {
    handles.push_back(HandleOf(Selection(values, table.regions, u"North")));
    handles.push_back(HandleOf(Selection(values, table.regions, u"North", table.regions, u"")));
  }
  handles.push_back(HandleOf(Selection(table.values, table.years, u"North")));
  handles.push_back(HandleOf(Selection(table.values, table.regions, u"north")));
  std::sort(handles.begin(), handles.end());
  CHECK(std::unique(handles.begin(), handles.end()) == handles.end());
  CHECK(Selections().size() == handles.size());
  HandleOf(Selection(same, table.regions, u"North"));
  CHECK(Selections().size() == handles.size());
}

TEST_CASE("selections are bounded, and what goes takes its handle along") {
  Table table;
  StackedSelections few({.references = 100'000, .values = 100'000});
  const std::size_t kept = few.IndexOf(Selection(table.values, table.regions, u"North"));
  const auto add_array = [&](double number) {
    const Argument array(1, 1, {number});
    return few.IndexOf(Selection(array, table.regions, u"North"));
  };
  const std::size_t first = add_array(-1);
  for (int i = 0; i < 1000; ++i) {
    add_array(i);
    if (i == 10) add_array(-1);  // asked for again
    if (i == 60) CHECK(few.Find(first) != nullptr);
  }
  CHECK(few.size() < 200);
  CHECK(few.Find(first) == nullptr);
  CHECK(few.Find(kept) != nullptr);  // arrays do not push references out
  CHECK(add_array(-1) == first);
  // One alone stays, however large.
  const Argument large(100, 100, std::vector<Cell>(10'000, Cell(1.0)));
  CHECK(few.Find(few.IndexOf(Selection(large, table.regions, u"x"))) != nullptr);
  for (char16_t letter = 0x4E00; letter < 0x5200; ++letter)
    few.IndexOf(Selection(table.values, table.regions, std::u16string(1, letter).c_str()));
  CHECK(few.size() < 300);
  CHECK(few.Find(kept) == nullptr);
}

TEST_CASE("only a text of a handle's very form is one") {
  CHECK(StackedHandle(0) ==
        "\x01\x02"
        "000000000");
  CHECK(StackedHandleIndex(u"\u0001\u0002000000125") == 125);
  CHECK(StackedHandleIndex(u"\u0001\u0002999999999") == 999'999'999);
  for (const char16_t* text :
       {u"", u"\u0001\u0002", u"\u0001\u000200000000", u"\u0001\u00020000000000",
        u"\u0002\u0001000000000", u"000000000", u"\u0001\u0002-00000001", u"\u0001\u0002+00000001",
        u"\u0001\u000200000000 ", u" \u0001\u0002000000000", u"\u0001\u000200000000\uFF11"}) {
    CHECK_FALSE(StackedHandleIndex(text));
  }
}

TEST_CASE("a handle stands for the values of its rows wherever one cell can") {
  Table table;
  const Argument north(Cell(HandleOf(Selection(table.values, table.regions, u"north\n"))));
  const Argument both(
      Cell(HandleOf(Selection(table.values, table.regions, u"North", table.years, u" 2"))));
  const Argument none(Cell(HandleOf(Selection(table.values, table.regions, u"East"))));
  const Argument empty(Cell(HandleOf(Selection(table.values, table.regions, u""))));
  CHECK(Shown(Read({north})) == "10;x;-;");
  CHECK(Shown(Read({both})) == "x;-;");
  CHECK(Shown(Read({none})).empty());
  CHECK(Shown(Read({empty})).empty());
  CHECK((*Read({north}))->CountOfClass(CellClass::kEvery) == 3);
  CHECK(*Read({north}) == *Read({north}));

  // In a cell, in an array of one element, among other pieces.
  table.excel.Set(9, 9, HandleOf(Selection(table.values, table.regions, u"South")));
  const Reference cell(Area(9, 9, 9, 9));
  const Argument one(1, 1, {HandleOf(Selection(table.values, table.regions, u"South"))});
  CHECK(Shown(Read({cell})) == "20;40;");
  CHECK(Shown(Read({one})) == "20;40;");
  const Argument number(Cell(7.0));
  CHECK(Shown(Read({number, cell, none, table.years, both})) == "7;20;40;1;1;2;2;2;1;x;-;");
  CHECK((*Read({number, cell}))->CountOfClass(CellClass::kEvery) == 3);
  CHECK(*Read({number, cell}) == *Read({number, cell}));
  CHECK(Shown(Read({north}, 3)) == "10;x;-;");
  CHECK(Shown(Read({north}, 2)) == "unreadable");
  CHECK(Shown(Read({number, north}, 3)) == "unreadable");
  // Not within a range of several cells.
  const Reference two(Area(9, 10, 9, 9));
  CHECK((*Read({two}))->size() == 2);
}

TEST_CASE("data beside a handle are replaced when a row of the selection changes") {
  Table table;
  const Argument south(Cell(HandleOf(Selection(table.values, table.regions, u"South"))));
  const Argument number(Cell(7.0));
  const auto read = [&] { return Read({number, south, number}); };
  std::shared_ptr<ExcelData> data = *read();
  CHECK(Shown(read()) == "7;20;40;7;");
  for (const auto& [cell, shown] : {std::pair{Cell(41.0), "7;20;41;7;"},
                                    {Cell(u"x"), "7;20;x;7;"},
                                    {Cell(u"y"), "7;20;y;7;"},
                                    {Cell(), "7;20;-;7;"},
                                    {Cell(0.0), "7;20;0;7;"}}) {
    table.excel.Set(3, 0, cell);
    CHECK(Shown(read()) == shown);
    CHECK(*read() != data);
    data = *read();
    CHECK(*read() == data);
  }
  table.excel.Set(3, 1, u"North");
  CHECK(Shown(read()) == "7;20;7;");
}

TEST_CASE("of whole columns a row beyond the last value is blank, and shapes must be the same") {
  Table table;
  table.excel.Set(7, 1, u"South");
  const Reference values(WholeColumns(0, 0));
  const Reference regions(WholeColumns(1, 1));
  const Argument south(Cell(HandleOf(Selection(values, regions, u"South"))));
  CHECK(Shown(Read({south})) == "20;40;-;");
  const Argument uneven(Cell(HandleOf(Selection(table.values, regions, u"South"))));
  CHECK(Shown(Read({uneven})) == "unreadable");
}

TEST_CASE("a handle that names nothing, and data that cannot be read") {
  Table table;
  const Argument never(Cell(u"\u0001\u0002000000005"));
  CHECK(Shown(Read({never})) == "unreadable");
  const std::u16string handle = HandleOf(Selection(table.values, table.regions, u"North"));
  const std::size_t index = *StackedHandleIndex(handle);
  for (const std::size_t near : {index + 1, index + 4, (index + 5) % 1'000'000'000}) {
    const Argument argument(Cell(Utf16FromUtf8(StackedHandle(near))));
    CHECK(Shown(Read({argument})) == "unreadable");
  }
  const Argument north((Cell(handle)));
  table.excel.answer = [](const XLREF12& area) {
    return area.colFirst == 1 ? xlretUncalced : xlretSuccess;
  };
  CHECK(Shown(Read({north})) == "uncalculated");
  table.excel.answer = [](const XLREF12& area) {
    return area.colFirst == 0 ? xlretFailed : xlretSuccess;
  };
  CHECK(Shown(Read({north})) == "unreadable");
  table.excel.answer = nullptr;
  // The name of a number cannot be told yet.
  const Argument first(Cell(HandleOf(Selection(table.values, table.years, u"1"))));
  table.excel.text_code = xlretUncalced;
  CHECK(Shown(Read({first})) == "uncalculated");
  table.excel.text_code = xlretSuccess;
  CHECK(Shown(Read({first})) == "10;20;60;");
  const WithoutCaches closed;
  CHECK(Shown(Read({north})) == "unreadable");
}

TEST_CASE("selections of selections are read once each, and circles end") {
  Table table;
  table.excel.SetColumn(0, 5, {u"a", u"b", u"a"});
  const Reference letters(Area(0, 2, 5, 5));
  const Argument north(Cell(HandleOf(Selection(table.values, table.regions, u"North"))));
  const Argument nested(Cell(HandleOf(Selection(north, letters, u"A"))));
  CHECK(Shown(Read({nested})) == "10;-;");

  // Each level names the one below three times: 3^15 readings, were they not remembered.
  const Argument all(3, 1, {u"a", u"a", u"a"});
  std::u16string handle = HandleOf(Selection(all, all, u"a"));
  for (int depth = 2; depth <= 16; ++depth) {
    const Argument below((Cell(handle)));
    handle = HandleOf(Selection(below, below, u"a", below, u"a"));
  }
  const Argument deep((Cell(handle)));
  CHECK(Shown(Read({deep})) == "a;a;a;");
  const Argument too_deep(Cell(HandleOf(Selection(deep, deep, u"a"))));
  CHECK(Shown(Read({too_deep})) == "unreadable");
  CHECK(Shown(Read({deep})) == "a;a;a;");

  // A cell that names itself, and two that name each other.
  const Reference one(Area(0, 0, 8, 8));
  const Reference other(Area(1, 1, 8, 8));
  table.excel.Set(0, 8, HandleOf(Selection(one, one, u"a", one, u"a")));
  CHECK(Shown(Read({one})) == "unreadable");
  const Argument one_a(1, 1, {u"a"});
  table.excel.Set(0, 8, HandleOf(Selection(other, one_a, u"a")));
  table.excel.Set(1, 8, HandleOf(Selection(one, other, u"a")));
  CHECK(Shown(Read({one, other})) == "unreadable");
  table.excel.Set(1, 8, 5.0);
  CHECK(Shown(Read({one})) == "5;");
}

}  // namespace zavrel::tests
