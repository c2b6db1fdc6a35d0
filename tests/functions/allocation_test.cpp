// What a function allocates does not depend on how many cells its ranges have, blocks aside.
#include <doctest/doctest.h>

#include "platform/export.h"
#include "support/counted_allocations.h"
#include "support/open_add_in.h"

namespace zavrel {
using OfTwo = XLOPER12*(const XLOPER12*, const XLOPER12*);
ZAV_EXPORT OfTwo ZavrelPairMeanQuotient, ZavrelPower, ZavrelDummy;
ZAV_EXPORT XLOPER12* ZavrelPairMedian(const XLOPER12*, const XLOPER12*, const XLOPER12*);
ZAV_EXPORT XLOPER12* ZavrelCountCategories(const XLOPER12*);
}  // namespace zavrel

namespace zavrel::tests {

TEST_CASE("nothing is allocated per cell or per pair") {
  OpenAddIn add_in;
  constexpr std::int32_t kRows = 50'000;
  const char16_t* const names[] = {u"a category of some length", u"another one of some length"};
  for (std::int32_t row = 0; row < kRows; ++row) {
    add_in.excel.Set(row, 0, 1.0 + row % 1000);
    if (row % 50 != 7) add_in.excel.Set(row, 1, 1.0 + row % 7);
    add_in.excel.Set(row, 2, names[row % 2]);
    add_in.excel.Set(row, 3, 1.0 + row % 2);
  }
  add_in.excel.texts_of_numbers = {{1, u"1"}, {2, u"2"}};
  const Reference x(Area(0, kRows - 1, 0, 0));
  const Reference y(Area(0, kRows - 1, 1, 1));
  const Reference groups(Area(0, kRows - 1, 2, 2));
  const Reference codes(Area(0, kRows - 1, 3, 3));
  const Reference whole(WholeColumns(1, 1));
  const Argument two(Cell(2.0));
  const Argument name{Cell(names[1])};
  const auto count = [](auto call) {
    CHECK((Counted(call)->xltype & (xltypeNum | xltypeMulti)) != 0);
    return allocations;
  };
  for (const int most : {150, 60}) {  // the cells are read in the first round
    CAPTURE(most);
    CHECK(count([&] { return ZavrelPairMedian(x, y, nullptr); }) < most);
    CHECK(count([&] { return ZavrelPairMeanQuotient(x, y); }) < most);
    CHECK(count([&] { return ZavrelPower(y, two); }) < most);
    CHECK(count([&] { return ZavrelPower(whole, two); }) < most + 100);
    CHECK(count([&] { return ZavrelDummy(groups, name); }) < most);
    CHECK(count([&] { return ZavrelDummy(codes, two); }) < most);
    CHECK(count([&] { return ZavrelCountCategories(groups); }) < most);
    CHECK(count([&] { return ZavrelCountCategories(codes); }) < most);
  }
}

}  // namespace zavrel::tests
