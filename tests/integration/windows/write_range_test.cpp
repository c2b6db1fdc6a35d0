// A macro has the add-in write a block of values into a range.
#include <cmath>

#include "excel/xloper12.h"
#include "integration/entry_point.h"
#include "numbers/error_double.h"
#include "support/fake_range.h"
#include "support/macro_array.h"

namespace zavrel::tests {
namespace {

std::uint32_t Write(const VARIANT& range, SAFEARRAY** values) {
  return EntryPoint<std::uint32_t(const VARIANT*, SAFEARRAY**)>("ZavrelWriteRangeVB")(&range,
                                                                                      values);
}

std::unique_ptr<zavhost::Engine> AddInWithBook() {
  zavhost::Workbook book = BookOf({"Other!A: ", "Data!A: "});
  book.file_name = u"Book.xlsx";
  return ServingAddIn(std::move(book));
}

}  // namespace

TEST_CASE("numbers and values of every kind are written into the cells of a range") {
  auto engine = AddInWithBook();
  const FakeRange two_by_three(2, 2, 2, 3);
  MacroArray numbers(VT_R8, {2, 3});
  for (int i = 0; i < 6; ++i) numbers.elements<double>()[i] = i;
  CHECK(Write(two_by_three.variant, &numbers.array) == 0);
  CHECK(Shown(*engine, "+Data!A1:D3") == "0,0,0,0;0,0,2,4;0,1,3,5;");

  const FakeRange below(5, 1, 2, 3);
  MacroArray mixed(VT_VARIANT, {2, 2});
  auto* cells = mixed.elements<VARIANT>();
  cells[0] = VariantOf(VT_BSTR, SysAllocString(L"text"));
  cells[1].vt = VT_BOOL;
  cells[1].boolVal = VARIANT_TRUE;
  cells[2].vt = VT_I2;
  cells[2].iVal = -7;
  cells[3].vt = VT_ERROR;
  cells[3].scode = static_cast<SCODE>(0x800A07D7);
  CHECK(Write(below.variant, &mixed.array) == 0);
  // What the block does not reach is filled as the host fills it.
  CHECK(Shown(*engine, "+Data!A5:C6") == "text,-7,#N/A;TRUE,#DIV/0!,#N/A;");
  // Results of other entry points that stand for an error or a blank.
  const double coded[] = {ConditionDouble(kConditionNoData), ConditionDouble(kConditionTooFew),
                          ConditionDouble(kConditionBlank),  HUGE_VAL,
                          ErrorCodedNaN(xlerrRef),           2.5};
  const FakeRange one(10, 1, 1, 6), another(11, 1, 1, 6), third(12, 1, 1, 6);
  MacroArray matrix(VT_R8, {1, 6}), series(VT_R8, {6}), variants(VT_VARIANT, {1, 6});
  for (int i = 0; i < 6; ++i) {
    matrix.elements<double>()[i] = series.elements<double>()[i] = coded[i];
    variants.elements<VARIANT>()[i].vt = VT_R8;
    variants.elements<VARIANT>()[i].dblVal = coded[i];
  }
  CHECK((Write(one.variant, matrix) == 0 && Write(another.variant, series) == 0));
  CHECK(Write(third.variant, variants) == 0);
  const std::string shown = "#N/A,#DIV/0!,0,#NUM!,#REF!,2.5;";
  CHECK(Shown(*engine, "+Data!A10:F12") == shown + shown + shown);
  // Elements that refer to another variable, as of a ParamArray, or to nowhere.
  double held = 4;
  variants.elements<VARIANT>()[0] = VariantOf(VT_BYREF | VT_R8, &held);
  variants.elements<VARIANT>()[1] = VariantOf(VT_BYREF | VT_R8, reinterpret_cast<void*>(8));
  CHECK(Write(third.variant, variants) == 0);
  CHECK(Shown(*engine, "+Data!A12:B12") == "4,#VALUE!;");
  MacroArray row(VT_I4, {3});
  for (int i = 0; i < 3; ++i) row.elements<LONG>()[i] = i + 1;
  const FakeRange one_row(8, 1, 1, 3);
  CHECK(Write(one_row.variant, &row.array) == 0);
  CHECK(Shown(*engine, "+Data!A8:C8") == "1,2,3;");
  CHECK(Shown(*engine, "ZavCount(Other!A:Z)") == "0");
  CloseClean(*engine);
}

TEST_CASE("a write that cannot be done writes nothing and says why") {
  auto engine = AddInWithBook();
  const FakeRange range(1, 1, 2, 2), outside(1048576, 1, 2, 2);
  FakeRange several(1, 1, 2, 2), elsewhere(1, 1, 2, 2);
  several.areas.numbers[L"Count"] = 2;
  elsewhere.sheet.texts[L"Name"] = L"No such sheet";
  const VARIANT number = VariantOf(VT_R8);
  MacroArray numbers(VT_R8, {2, 2}), deep(VT_R8, {2, 2, 2}), empty(VT_R8, {0, 2});
  MacroArray objects(VT_DISPATCH, {2, 2}), hollow_row = MacroArray::Hollow({4}),
                                           hollow_numbers = MacroArray::Hollow({2, 2});
  const std::string size = "VekArraySizeError|CellBlockFromVbArray|",
                    not_two_dimensional = size + "VB array is not 2-dimensional",
                    wrong_size = "An array has the wrong size.",
                    type = "ZavrelWriteRangeVB|The data are of a type that cannot be used here.";
  const struct {
    const VARIANT& range;
    SAFEARRAY** values;
    std::string why;
  } cases[] = {{range.variant, deep, not_two_dimensional},
               {range.variant, nullptr, not_two_dimensional},
               {range.variant, empty, size + wrong_size},
               {range.variant, hollow_row, size + wrong_size},
               {range.variant, hollow_numbers, "VekArraySizeError|MatrixFromVbArray|" + wrong_size},
               {range.variant, objects,
                "VekInvalidDataType|CellBlockFromVbArray" + type.substr(type.find('|'))},
               {outside.variant, numbers, "VekInvalidDataType|" + type},
               {several.variant, numbers, "VekInvalidDataType|" + type},
               {elsewhere.variant, numbers, "VekInvalidDataType|" + type},
               {number, numbers, "VekInvalidDataType|" + type}};
  for (const auto& given : cases) CHECK(Explained(Write(given.range, given.values)) == given.why);

  engine->workbook().sheets[1].set_protected(true);
  CHECK(Explained(Write(range.variant, numbers)) ==
        "VekxlSetFailed|ZavrelWriteRangeVB|Excel refused to write the values. The range may be "
        "protected or not valid.");
  CheckFormulas(*engine, "ZavCount(Data!A:Z) -> 0");
  engine->workbook().sheets[1].set_protected(false);
  CHECK(Write(range.variant, numbers) == 0);
  CheckFormulas(*engine, "ZavCount(Data!A:Z) -> 4");
  CloseClean(*engine);
}

}  // namespace zavrel::tests
