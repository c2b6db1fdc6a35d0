// The functions that fill a macro's arrays, as far as no macro is needed: their arguments.
#include "functions/cell_value_exports.h"

#include <doctest/doctest.h>

#include <functional>
#include <string>

#include "functions/open_add_in.h"
#include "macros/macro_handshakes.h"

namespace zavrel::tests {
namespace {

/// Each of the functions that take addresses, with this one for its values or its indices.
void CheckAll(const XLOPER12* range, const XLOPER12* code, const char* address,
              const std::function<bool(const XLOPER12&)>& as_expected) {
  CAPTURE((address == nullptr ? "no address" : address));
  CHECK(as_expected(*ZavrelGetCellValuesPrivate2(range, code, address, nullptr)));
  CHECK(as_expected(*ZavrelGetCellValuesPrivate2(range, code, "", address)));
  CHECK(as_expected(*ZavrelGetCellValuesCategoryPrivate2(range, code, u"none", address)));
  CHECK(as_expected(*ZavrelGetCellValuesNumericPrivate2(range, code, -1, address)));
}

auto IsError(std::int32_t code) {
  return [code](const XLOPER12& result) {
    return TypeOf(result) == xltypeErr && result.val.err == code;
  };
}
auto IsNumber(double number) {
  return [number](const XLOPER12& result) {
    return TypeOf(result) == xltypeNum && result.val.num == number;
  };
}

}  // namespace

TEST_CASE(
    "without an address the cells are counted, and an address that was not issued is refused") {
  OpenAddIn add_in;
  add_in.excel.SetColumn(0, 0, {1.0, u"a", Cell(), true, ErrorCell{xlerrNA}});
  const Reference range(Area(0, 4, 0, 0));
  const double expected[] = {5, 1, 4, 3, 1};
  for (int code = 0; code < 5; ++code) {
    const Argument class_code(Cell(code + 0.0));
    for (const char* none : {"", "0", static_cast<const char*>(nullptr)})
      CheckAll(range, class_code, none, IsNumber(expected[code]));
  }
  // Of a whole column the used part is listed.
  const Reference column(WholeColumns(0, 0));
  const Argument blanks(Cell(4.0));
  CheckAll(column, blanks, nullptr, IsNumber(1));

  const Argument every(Cell(0.0));
  double written = 0.5;
  const std::string stack = std::to_string(reinterpret_cast<std::intptr_t>(&written));
  const std::string code = std::to_string(reinterpret_cast<std::intptr_t>(&IsError));
  for (const char* address : {"-1", "1", "8", "9223372036854775807", "9223372036854775808", " 12",
                              "12x", "0x10", stack.c_str(), code.c_str()}) {
    CheckAll(range, every, address, IsError(xlerrValue));
  }
  CHECK(written == 0.5);
}

TEST_CASE("arguments that cannot be read come before the addresses") {
  OpenAddIn add_in;
  const Reference range(Area(0, 4, 0, 0));
  const Reference nowhere(Area(2, 1, 0, 0));
  const Argument every(Cell(0.0));
  for (const double code : {-1.0, 5.0, 1e9}) {
    const Argument class_code{Cell(code)};
    CheckAll(range, class_code, nullptr, IsError(xlerrValue));
    CHECK(Error(*ZavrelGetCellValuesPrivate(range, class_code, "id")) == xlerrValue);
  }
  CheckAll(nowhere, every, "12x", IsError(xlerrRef));
  add_in.excel.answer = [](const XLREF12&) { return xlretUncalced; };
  CheckAll(range, every, nullptr, IsError(xlerrRef));
  CHECK(Error(*ZavrelGetCellValuesPrivate(range, every, "id")) == xlerrRef);
  CHECK(add_in.excel.values_out == 0);
}

TEST_CASE("an entry is used up by the call that names it, and by no other") {
  OpenAddIn add_in;
  add_in.excel.SetColumn(0, 0, {1.0, 2.0});
  const Reference range(Area(0, 1, 0, 0));
  const Argument every(Cell(0.0));
  const Argument no_class(Cell(9.0));
  for (const char* unknown : {"", "12", "Time=1", static_cast<const char*>(nullptr)})
    CHECK(Error(*ZavrelGetCellValuesPrivate(range, every, unknown)) == xlerrValue);

  MacroHandshakes& handshakes = Session::Current()->Kept<MacroHandshakes>();
  const std::string id = handshakes.Enter(PendingCellValues{});
  const std::string bad = handshakes.Enter(PendingCellValues{{}, 8, 0});
  CHECK(Error(*ZavrelGetCellValuesPrivate(range, no_class, id.c_str())) == xlerrValue);
  CHECK(Number(*ZavrelGetCellValuesPrivate(range, every, id.c_str())) == 2);
  CHECK(Error(*ZavrelGetCellValuesPrivate(range, every, id.c_str())) == xlerrValue);
  CHECK(Error(*ZavrelGetCellValuesPrivate(range, every, bad.c_str())) == xlerrValue);
  CHECK(handshakes.Find<PendingCellValues>(bad) == nullptr);

  // Without an id: the next call, from wherever it comes.
  handshakes.next_cell_values() = PendingCellValues{};
  CHECK(Error(*ZavrelGetCellValues(range, no_class)) == xlerrValue);
  CHECK(Number(*ZavrelGetCellValues(range, every)) == 2);
  CHECK(Error(*ZavrelGetCellValues(range, every)) == xlerrRef);
}

}  // namespace zavrel::tests
