// The functions that fill a macro's arrays, as far as no macro is needed: their arguments.
#include <doctest/doctest.h>

#include <string>

#include "functions/cell_value_exports.h"
#include "macros/macro_handshakes.h"
#include "support/open_add_in.h"

namespace zavrel::tests {
namespace {

/// Each of the functions that take addresses, with this one for its values or its indices.
void CheckAll(const XLOPER12* range, const XLOPER12* code, const char* address,
              const std::string& shown) {
  CAPTURE((address == nullptr ? "no address" : address));
  CHECK(Shown(*ZavrelGetCellValuesPrivate2(range, code, address, nullptr)) == shown);
  CHECK(Shown(*ZavrelGetCellValuesPrivate2(range, code, "", address)) == shown);
  CHECK(Shown(*ZavrelGetCellValuesCategoryPrivate2(range, code, u"none", address)) == shown);
  CHECK(Shown(*ZavrelGetCellValuesNumericPrivate2(range, code, -1, address)) == shown);
}

struct FiveCells : OpenAddIn {
  FiveCells() { excel.SetColumn(0, 0, {1.0, u"a", Cell(), true, ErrorCell{xlerrNA}}); }
  const Reference range{Area(0, 4, 0, 0)};
  const Argument every{Cell(0.0)};
};

}  // namespace

TEST_CASE("without an address cells are counted, and one that was not issued is refused") {
  const FiveCells sheet;
  const char* const expected[] = {"5", "1", "4", "3", "1"};
  for (int code = 0; code < 5; ++code) {
    for (const char* none : {"", "0", static_cast<const char*>(nullptr)})
      CheckAll(sheet.range, Argument(Cell(code + 0.0)), none, expected[code]);
  }
  // Of a whole column the used part is listed.
  CheckAll(Reference(WholeColumns(0, 0)), Argument(Cell(4.0)), nullptr, "1");

  double written = 0.5;
  const std::string stack = std::to_string(reinterpret_cast<std::intptr_t>(&written));
  const std::string code = std::to_string(reinterpret_cast<std::intptr_t>(&CheckAll));
  for (const char* address : {"-1", "1", "8", "9223372036854775807", "9223372036854775808", " 12",
                              "12x", "0x10", stack.c_str(), code.c_str()})
    CheckAll(sheet.range, sheet.every, address, "#15");
  CHECK(written == 0.5);
}

TEST_CASE("arguments that cannot be read come before the addresses") {
  FiveCells sheet;
  for (const double code : {-1.0, 5.0, 1e9}) {
    const Argument class_code{Cell(code)};
    CheckAll(sheet.range, class_code, nullptr, "#15");
    CHECK(Shown(*ZavrelGetCellValuesPrivate(sheet.range, class_code, "id")) == "#15");
  }
  CheckAll(Reference(Area(2, 1, 0, 0)), sheet.every, "12x", "#23");
  sheet.excel.answer = [](const XLREF12&) { return xlretUncalced; };
  CheckAll(sheet.range, sheet.every, nullptr, "#23");
  CHECK(Shown(*ZavrelGetCellValuesPrivate(sheet.range, sheet.every, "id")) == "#23");
}

TEST_CASE("an entry is used up by the call that names it, and by no other") {
  FiveCells sheet;
  const Argument no_class(Cell(9.0));
  const auto by_id = [&](const XLOPER12* code, const char* id) {
    return Shown(*ZavrelGetCellValuesPrivate(sheet.range, code, id));
  };
  for (const char* unknown : {"", "12", "Time=1", static_cast<const char*>(nullptr)})
    CHECK(by_id(sheet.every, unknown) == "#15");

  MacroHandshakes& handshakes = Session::Current()->Kept<MacroHandshakes>();
  const std::string id = handshakes.Enter(PendingCellValues{});
  const std::string bad = handshakes.Enter(PendingCellValues{{}, 8, 0});
  CHECK(by_id(sheet.every, id.c_str()) == "5");
  CHECK(by_id(sheet.every, id.c_str()) == "#15");
  // A call that fails uses it up as well; one that waits for a cell does not.
  const std::string failing = handshakes.Enter(PendingCellValues{});
  sheet.excel.answer = [](const XLREF12&) { return xlretUncalced; };
  CHECK(by_id(sheet.every, failing.c_str()) == "#23");
  sheet.excel.answer = nullptr;
  CHECK(by_id(no_class, failing.c_str()) == "#15");
  CHECK(by_id(sheet.every, failing.c_str()) == "#15");
  const std::string names = handshakes.Enter(PendingCategoryNames{});
  CHECK(Shown(*ZavrelCategoryNamesPrivate(Reference(Area(2, 1, 0, 0)), names.c_str())) == "#23");
  CHECK(handshakes.Find<PendingCategoryNames>(names) == nullptr);
  CHECK(by_id(sheet.every, bad.c_str()) == "#15");
  CHECK(handshakes.Find<PendingCellValues>(bad) == nullptr);

  // Without an id: the next call, from wherever it comes.
  handshakes.next_cell_values() = PendingCellValues{};
  CHECK(Shown(*ZavrelGetCellValues(sheet.range, sheet.every)) == "5");
  CHECK(Shown(*ZavrelGetCellValues(sheet.range, sheet.every)) == "#23");
}

TEST_CASE("what is arranged for the next call is gone when that fails, and stays while it waits") {
  FiveCells sheet;
  MacroHandshakes& handshakes = Session::Current()->Kept<MacroHandshakes>();
  const Argument no_class(Cell(9.0)), error(Cell(ErrorCell{xlerrNA}));
  for (const XLOPER12* code :
       {static_cast<const XLOPER12*>(no_class), static_cast<const XLOPER12*>(error)}) {
    handshakes.next_cell_values() = PendingCellValues{};
    CHECK(Shown(*ZavrelGetCellValues(sheet.range, code)) == "#15");
    CHECK_FALSE(handshakes.next_cell_values().has_value());
    handshakes.next_category_indices() = 8;
    CHECK(TypeOf(*ZavrelCategoryIndices(sheet.range, code)) == xltypeErr);
    CHECK(handshakes.next_category_indices() == 0);
  }
  const Reference nowhere(Area(2, 1, 0, 0));
  handshakes.next_category_names() = 8;
  CHECK(Shown(*ZavrelCategoryNames(nowhere)) == "#23");
  CHECK(handshakes.next_category_names() == 0);

  const std::string bad = handshakes.Enter(PendingCellValues{{}, 8, 0});
  CHECK(Shown(*ZavrelGetCellValuesPrivate(sheet.range, sheet.every, bad.c_str())) == "#15");
  CHECK(handshakes.Find<PendingCellValues>(bad) == nullptr);

  handshakes.next_cell_values() = PendingCellValues{};
  sheet.excel.answer = [](const XLREF12&) { return xlretUncalced; };
  CHECK(Shown(*ZavrelGetCellValues(sheet.range, sheet.every)) == "#23");
  CHECK(handshakes.next_cell_values().has_value());
  sheet.excel.answer = nullptr;
  CHECK(Shown(*ZavrelGetCellValues(sheet.range, sheet.every)) == "5");
}

}  // namespace zavrel::tests
