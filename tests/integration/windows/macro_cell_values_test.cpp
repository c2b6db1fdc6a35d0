// A macro reads cells through formulas that fill its arrays, in the add-in as it ships.
#include <doctest/doctest.h>

#include <string>
#include <utility>

#include "integration/entry_point.h"
#include "integration/running_add_in.h"
#include "support/fake_range.h"

namespace zavrel::tests {
namespace {

using IdString = BSTR(const VARIANT*);
using SetArrays = std::uint32_t(const VARIANT*, const VARIANT*, BSTR*);
using Category = BSTR(const VARIANT*);
using CategoryWide = std::uint32_t(const VARIANT*, BSTR*);

std::string Taken(BSTR text) {
  std::string bytes(reinterpret_cast<const char*>(text), SysStringByteLen(text));
  SysFreeString(text);
  return bytes;
}

std::string IdOf(const VARIANT* variant) {
  return Taken(EntryPoint<IdString>("VariantIdString")(variant));
}

/// What a cell with the formula shows, "$" standing for a text argument.
std::string Shown(zavhost::Engine& engine, std::string formula, const std::string& text) {
  for (std::size_t at; (at = formula.find('$')) != std::string::npos;)
    formula.replace(at, 1, '"' + text + '"');
  return tests::Shown(engine, std::u16string(formula.begin(), formula.end()));
}

/// A book with a number, texts inside and outside the code page, a blank cell, TRUE and #N/A.
std::unique_ptr<zavhost::Engine> AddInWithCells() {
  zavhost::Workbook book;
  book.file_name = u"Book.xlsx";
  zavhost::Sheet& sheet = book.sheets.emplace_back(u"Data");
  sheet.Set(0, 0, zavhost::Value(2.5));
  sheet.Set(1, 0, zavhost::Value(u"Stra\u00dfe \u0416\U0001F600"));
  sheet.Set(3, 0, zavhost::Value(true));
  sheet.Set(4, 0, zavhost::Value(zavhost::ErrorCode::kNA));
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
  VARIANT values{};
  VARIANT indices{};
  const std::string id = IdOf(&values);
  CHECK(Shown(*engine, "ZavGetCellValuesPrivate2(A1:A5,2,$,\"" + IdOf(&indices) + "\")", id) ==
        "4");
  REQUIRE((values.vt == (VT_ARRAY | VT_VARIANT) && indices.vt == (VT_ARRAY | VT_I4)));
  CHECK(static_cast<const LONG*>(indices.parray->pvData)[3] == 5);
  CHECK(std::wstring(static_cast<const VARIANT*>(values.parray->pvData)[1].bstrVal) ==
        L"Stra\u00dfe \u0416\U0001F600");

  CHECK(Shown(*engine, "ZavGetCellValuesCategoryPrivate2(A1:A5,0,\"-\",$)", id) == "5");
  REQUIRE(values.vt == (VT_ARRAY | VT_BSTR));
  const auto* names = static_cast<const BSTR*>(values.parray->pvData);
  const wchar_t* expected[] = {L"2.5", L"Stra\u00dfe \u0416\U0001F600", L"-", L"TRUE", L"-"};
  for (int i = 0; i < 5; ++i) CHECK(std::wstring(names[i]) == expected[i]);

  CHECK(Shown(*engine, "ZavGetCellValuesNumericPrivate2(A:A,0,-7,$)", id) == "5");
  REQUIRE(values.vt == (VT_ARRAY | VT_R8));
  CHECK(static_cast<const double*>(values.parray->pvData)[4] == -7);

  BSTR entry = nullptr;
  CHECK(EntryPoint<SetArrays>("ZavrelGetCellValuesSetArrayPrivateVB")(&values, nullptr, &entry) ==
        0);
  const std::string entered = Taken(entry);
  CHECK(Shown(*engine, "ZavGetCellValuesPrivate(A1:A5,4,$)", entered) == "1");
  CHECK(values.vt == (VT_ARRAY | VT_VARIANT));
  CHECK(Shown(*engine, "ZavGetCellValuesPrivate(A1:A5,4,$)", entered) == "#VALUE!");
  VariantClear(&values);
  VariantClear(&indices);
  CloseClean(*engine);
}

TEST_CASE("whatever a formula passes as an address, only the macro's own memory is written") {
  auto engine = AddInWithCells();
  auto* heap = static_cast<VARIANT*>(CoTaskMemAlloc(sizeof(VARIANT)));
  VariantInit(heap);
  auto* pages =
      static_cast<char*>(VirtualAlloc(nullptr, 3 * 4096, MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE));
  const auto text_of = [](const void* place) {
    return std::to_string(reinterpret_cast<std::intptr_t>(place));
  };
  const std::string formulas[] = {
      "ZavGetCellValuesPrivate2(A1:A5,0,$)", "ZavGetCellValuesPrivate2(A1:A5,0,\"0\",$)",
      "ZavGetCellValuesCategoryPrivate2(A1:A5,0,\"-\",$)",
      "ZavGetCellValuesNumericPrivate2(A1:A5,0,0,$)", "ZavGetCellValuesPrivate(A1:A5,0,$)"};
  const auto refused = [&](const std::string& address) {
    for (const std::string& formula : formulas) {
      const std::string shown = Shown(*engine, formula, address);
      CHECK_MESSAGE(shown == "#VALUE!", formula << " of " << address << ": " << shown);
    }
  };
  VARIANT stack{};
  // Never issued.
  for (const std::string& address :
       {text_of(&stack), text_of(heap), text_of(pages), text_of(GetModuleHandleW(nullptr)),
        text_of(reinterpret_cast<const void*>(&VirtualAlloc)), std::string("-1"), std::string("1"),
        std::string("8"), std::string("9223372036854775808"), std::string(" 12"),
        std::string("12x"), std::string("Time=1, TickCount=1, PerfCounter=1, counter=1")}) {
    refused(address);
  }
  CHECK((stack.vt == VT_EMPTY && heap->vt == VT_EMPTY));

  // Issued, but not there any more, or not to be written any more.
  const std::string freed = IdOf(reinterpret_cast<VARIANT*>(pages));
  const std::string guarded = IdOf(reinterpret_cast<VARIANT*>(pages + 4096));
  const std::string across = IdOf(reinterpret_cast<VARIANT*>(pages + 8192 - 8));
  CHECK(Shown(*engine, formulas[0], freed) == "5");
  VariantClear(reinterpret_cast<VARIANT*>(pages));
  DWORD old = 0;
  VirtualProtect(pages + 4096, 4096, PAGE_READWRITE | PAGE_GUARD, &old);
  VirtualProtect(pages + 8192, 4096, PAGE_READONLY, &old);
  VirtualFree(pages, 4096, MEM_DECOMMIT);
  for (const std::string& address : {freed, guarded, across}) refused(address);
  VirtualFree(pages, 0, MEM_RELEASE);
  for (const std::string& address : {freed, guarded, across}) refused(address);
  CoTaskMemFree(heap);
  CloseClean(*engine);
}

TEST_CASE("the category name of a range object's first cell, in single bytes and wide") {
  auto engine = AddInWithCells();
  auto* category = EntryPoint<Category>("ZavrelGetCellValueCategory");
  const FakeRange number(1, 1);
  CHECK(Taken(category(&number.variant)) == "2.5");
  CHECK(WideNameOf(&number.variant) == L"2.5");
  const FakeRange text(2, 1);
  CHECK(WideNameOf(&text.variant) == L"Stra\u00dfe \u0416\U0001F600");
  CHECK(Taken(category(&text.variant)).starts_with("Stra"));
  const FakeRange boolean(4, 1);
  CHECK(WideNameOf(&boolean.variant) == L"TRUE");
  VARIANT reference{};
  reference.vt = VT_BYREF | VT_VARIANT;
  reference.pvarVal = const_cast<VARIANT*>(&boolean.variant);
  CHECK(Taken(category(&reference)) == "TRUE");

  for (const auto& [row, column] : {std::pair(3L, 1L), {5, 1}, {0, 1}, {1, 16385}, {1048577, 1}}) {
    const FakeRange nameless(row, column);
    CHECK(Taken(category(&nameless.variant)).empty());
    CHECK(WideNameOf(&nameless.variant).empty());
  }
  FakeRange elsewhere(1, 1);
  elsewhere.sheet.texts[L"Name"] = L"No such sheet";
  CHECK(WideNameOf(&elsewhere.variant).empty());
  elsewhere.sheet.objects.clear();
  CHECK(WideNameOf(&elsewhere.variant).empty());
  elsewhere.variant.pdispVal = nullptr;
  CHECK(WideNameOf(&elsewhere.variant).empty());
  CHECK(WideNameOf(nullptr).empty());
  CHECK(EntryPoint<CategoryWide>("ZavrelGetCellValueCategoryW")(&number.variant, nullptr) > 0);
  CloseClean(*engine);
}

}  // namespace zavrel::tests
