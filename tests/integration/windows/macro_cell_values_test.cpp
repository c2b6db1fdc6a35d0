// A macro reads cells through formulas that fill its arrays, in the add-in as it ships.
#include <utility>

#include "integration/entry_point.h"
#include "support/fake_range.h"

namespace zavrel::tests {
namespace {

using SetArrays = std::uint32_t(const VARIANT*, const VARIANT*, BSTR*);
using SetNumeric = std::uint32_t(const VARIANT*, double, BSTR*);
using SetNext = std::uint32_t(const VARIANT*, const VARIANT*);
using Category = BSTR(const VARIANT*);
using CategoryWide = std::uint32_t(const VARIANT*, BSTR*);

/// A book with a number, texts inside and outside the code page, a blank cell, TRUE and #N/A.
std::unique_ptr<zavhost::Engine> AddInWithCells() {
  zavhost::Workbook book = BookOf({"A: 2.5 | Stra\u00dfe \u0416\U0001F600 | | TRUE | #N/A"});
  book.file_name = u"Book.xlsx";
  return ServingAddIn(std::move(book));
}

std::wstring WideNameOf(const VARIANT* range) {
  BSTR name = SysAllocString(L"as before");
  CHECK(EntryPoint<CategoryWide>("ZavrelGetCellValueCategoryW")(range, &name) == 0);
  std::wstring text(name, SysStringLen(name));
  SysFreeString(name);
  return text;
}

}  // namespace

TEST_CASE("formulas fill the arrays of a macro that gave them its addresses or an id") {
  auto engine = AddInWithCells();
  MacroVariant values, indices;
  BSTR entries[3] = {};
  VARIANT seventeen{};
  seventeen.vt = VT_I4;
  seventeen.lVal = 17;
  CHECK(EntryPoint<SetArrays>("ZavrelGetCellValuesSetArrayPrivateVB")(values, indices,
                                                                      &entries[0]) == 0);
  CHECK(EntryPoint<SetNumeric>("ZavrelGetCellValuesNumericSetArrayPrivateVB")(values, 0.25,
                                                                              &entries[1]) == 0);
  CHECK(EntryPoint<SetArrays>("ZavrelGetCellValuesCategorySetArrayPrivateVB")(values, &seventeen,
                                                                              &entries[2]) == 0);
  const std::string entered = Taken(entries[0]), numeric = Taken(entries[1]),
                    category = Taken(entries[2]);
  const struct {
    std::string formula, text;
    const char *shown, *held;
  } cases[] = {
      {"ZavGetCellValuesPrivate2(A1:A5,2,$,\"" + IdOf(indices) + "\")", IdOf(values), "4",
       "values 2.5;Stra\u00dfe \u0416\U0001F600;TRUE;error 2042;"},
      {"ZavGetCellValuesCategoryPrivate2(A1:A5,0,\"-\",$)", IdOf(values), "5",
       "texts 2.5;Stra\u00dfe \u0416\U0001F600;-;TRUE;-;"},
      {"ZavGetCellValuesNumericPrivate2(A:A,0,-7,$)", IdOf(values), "5",
       "numbers 2.5;-7;-7;-7;-7;"},
      {"ZavGetCellValuesPrivate2(A1:A5,0,\"0\",$)", IdOf(indices), "5", "numbers 2.5;-7;-7;-7;-7;"},
      {"ZavGetCellValuesPrivate2(A1,4,$,\"\")", IdOf(values), "0", "values "},
      {"ZavGetCellValuesPrivate(A1:A5,0,$)", numeric, "5", "numbers 2.5;0.25;0.25;0.25;0.25;"},
      {"ZavGetCellValuesPrivate(A1:A5,0,$)", category, "5",
       "texts 2.5;Stra\u00dfe \u0416\U0001F600;17;TRUE;17;"},
      {"ZavGetCellValuesPrivate(A1:A5,4,$)", entered, "1", "values ;"},
      {"ZavGetCellValuesPrivate(A1:A5,4,$)", entered, "#VALUE!", "values ;"}};
  for (const auto& given : cases) {
    CAPTURE(given.formula);
    CHECK(ShownWith(*engine, given.formula, given.text) == given.shown);
    CHECK(Held(values.variant) == given.held);
  }
  CHECK(Held(indices.variant) == "integers 3;");
  CHECK(EntryPoint<SetNext>("ZavrelGetCellValuesSetArrayVB")(values, indices) == 0);
  CheckFormulas(*engine, "ZavGetCellValues(A1:A5,2) -> 4 | ZavGetCellValues(A1:A5,1) -> 2.5;");
  CHECK(Held(values.variant).starts_with("values 2.5;Stra"));
  CHECK(Held(indices.variant) == "integers 1;2;4;5;");
  CloseClean(*engine);
}

TEST_CASE("the category name of a range object's first cell, in single bytes and wide") {
  auto engine = AddInWithCells();
  auto* category = EntryPoint<Category>("ZavrelGetCellValueCategory");
  const struct {
    long row, column;
    const char* bytes;
    const wchar_t* wide;
  } cells[] = {{1, 1, "2.5", L"2.5"},   {2, 1, "Stra", L"Stra\u00dfe \u0416\U0001F600"},
               {4, 1, "TRUE", L"TRUE"}, {3, 1, "", L""},
               {5, 1, "", L""},         {0, 1, "", L""},
               {1, 16385, "", L""},     {1048577, 1, "", L""}};
  for (const auto& cell : cells) {
    CAPTURE(cell.row);
    FakeRange range(cell.row, cell.column);
    VARIANT reference = ReferenceTo(&range.variant);
    for (const VARIANT* given : {&range.variant, &reference}) {
      CHECK(Taken(category(given)).substr(0, 4) == std::string(cell.bytes).substr(0, 4));
      CHECK(WideNameOf(given) == cell.wide);
    }
  }
  FakeRange elsewhere(1, 1);
  CHECK(EntryPoint<CategoryWide>("ZavrelGetCellValueCategoryW")(&elsewhere.variant, nullptr) > 0);
  elsewhere.sheet.texts[L"Name"] = L"No such sheet";
  CHECK(WideNameOf(&elsewhere.variant).empty());
  elsewhere.sheet.objects.clear();
  CHECK(WideNameOf(&elsewhere.variant).empty());
  elsewhere.variant.pdispVal = nullptr;
  CHECK(WideNameOf(&elsewhere.variant).empty());
  CHECK(WideNameOf(nullptr).empty());
  CloseClean(*engine);
}

}  // namespace zavrel::tests
