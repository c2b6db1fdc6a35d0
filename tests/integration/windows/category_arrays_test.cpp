// A macro gets category names and positions through formulas that fill its arrays.
#include <doctest/doctest.h>

#include <string>

#include "integration/entry_point.h"
#include "integration/running_add_in.h"
#include "support/fake_object.h"

namespace zavrel::tests {
namespace {

using IdString = BSTR(const VARIANT*);
using SetNext = std::uint32_t(const VARIANT*);
using SetById = std::uint32_t(const VARIANT*, BSTR*);

/// A VARIANT of a macro's, with what it holds.
struct MacroArray {
  ~MacroArray() { VariantClear(&variant); }
  void Clear() { VariantClear(&variant); }
  /// "North;South;", with the array's type and lower bound held to what a macro expects.
  std::string Names() const {
    REQUIRE(variant.vt == (VT_ARRAY | VT_BSTR));
    REQUIRE(variant.parray->rgsabound[0].lLbound == 1);
    std::string shown;
    for (ULONG i = 0; i < variant.parray->rgsabound[0].cElements; ++i) {
      const BSTR text = static_cast<const BSTR*>(variant.parray->pvData)[i];
      const std::wstring wide(text, SysStringLen(text));
      shown += zavhost::Utf8FromUtf16(std::u16string(wide.begin(), wide.end())) + ";";
    }
    return shown;
  }
  std::string Positions() const {
    REQUIRE(variant.vt == (VT_ARRAY | VT_I4));
    REQUIRE(variant.parray->rgsabound[0].lLbound == 1);
    std::string shown;
    for (ULONG i = 0; i < variant.parray->rgsabound[0].cElements; ++i)
      shown += std::to_string(static_cast<const LONG*>(variant.parray->pvData)[i]) + ";";
    return shown;
  }

  VARIANT variant{};
};

std::string Narrow(BSTR text) {
  std::string bytes(reinterpret_cast<const char*>(text), SysStringByteLen(text));
  SysFreeString(text);
  return bytes;
}
std::string Address(const VARIANT& variant) {
  return Narrow(EntryPoint<IdString>("VariantIdString")(&variant));
}
std::string Entered(const char* entry_point, const VARIANT& variant) {
  BSTR id = nullptr;
  CHECK(EntryPoint<SetById>(entry_point)(&variant, &id) == 0);
  return Narrow(id);
}

/// What a cell with the formula shows, "$" standing for a text argument.
std::string Shown(zavhost::Engine& engine, std::string formula, const std::string& text = {}) {
  if (const auto at = formula.find('$'); at != std::string::npos)
    formula.replace(at, 1, '"' + text + '"');
  return tests::Shown(engine, std::u16string(formula.begin(), formula.end()));
}

std::unique_ptr<zavhost::Engine> AddInWithCategories() {
  zavhost::Workbook book;
  zavhost::Sheet& sheet = book.sheets.emplace_back(u"Data");
  const char16_t* texts[] = {u"\u0416\U0001F600", u"north", u"", u"NORTH ", u"\u0436\U0001F600"};
  for (int row = 0; row < 5; ++row) sheet.Set(row, 0, zavhost::Value(texts[row]));
  sheet.Set(5, 0, zavhost::Value(2.5));
  return ServingAddIn(std::move(book));
}

}  // namespace

TEST_CASE("category names and positions by the address of a macro's VARIANT") {
  auto engine = AddInWithCategories();
  MacroArray array;
  const std::string address = Address(array.variant);
  CHECK(Shown(*engine, "ZavCategoryNamesPrivate2(A1:A6,$)", address) == "3");
  CHECK(array.Names() == "2.5;north;\u0416\U0001F600;");
  CHECK(Shown(*engine, "ZavCategoryIndicesPrivate2(A:A,\"North\",$)", address) == "2");
  CHECK(array.Positions() == "2;4;");
  CHECK(Shown(*engine, "ZavCategoryIndicesPrivate2(A1:A6,2.5,$)", address) == "1");
  CHECK(array.Positions() == "6;");
  CHECK(Shown(*engine, "ZavCategoryIndicesPrivate2(A1:A6,\"no such\",$)", address) == "0");
  CHECK(array.Positions().empty());
  CHECK(Shown(*engine, "ZavCategoryNamesPrivate2(C1:C9,$)", address) == "0");
  CHECK(array.Names().empty());
  // Without an address they are counted.
  array.Clear();
  for (const char* none : {"", "0"}) {
    CHECK(Shown(*engine, "ZavCategoryNamesPrivate2(A1:A6,$)", none) == "3");
    CHECK(Shown(*engine, "ZavCategoryIndicesPrivate2(A1:A6,\"North\",$)", none) == "2");
  }
  CHECK(array.variant.vt == VT_EMPTY);
  CloseClean(*engine);
}

TEST_CASE("category names and positions by the id of an entry, which is used up") {
  auto engine = AddInWithCategories();
  MacroArray array;
  const std::string names = "ZavCategoryNamesPrivate(A1:A6,$)";
  const std::string indices = "ZavCategoryIndicesPrivate(A1:A6,\"North\",$)";
  const std::string id = Entered("ZavrelCategoryNamesSetArrayPrivateVB", array.variant);
  CHECK(id.starts_with("Time="));
  CHECK(Shown(*engine, indices, id) == "#VALUE!");  // an entry for names
  // Cells that cannot be read use nothing up.
  CHECK(Shown(*engine, "ZavCategoryNamesPrivate(A1:XFD1048576,$)", id) == "#REF!");
  CHECK(Shown(*engine, names, id) == "3");
  CHECK(array.Names() == "2.5;north;\u0416\U0001F600;");
  CHECK(Shown(*engine, names, id) == "#VALUE!");

  BSTR wide = SysAllocString(L"as before");
  CHECK(EntryPoint<SetById>("ZavrelCategoryNamesSetArrayPrivateWVB")(&array.variant, &wide) == 0);
  const std::wstring wide_id(wide, SysStringLen(wide));
  SysFreeString(wide);
  array.Clear();
  CHECK(Shown(*engine, names, std::string(wide_id.begin(), wide_id.end())) == "3");
  CHECK(array.Names() == "2.5;north;\u0416\U0001F600;");

  const std::string of_indices = Entered("ZavrelCategoryIndicesSetArrayPrivateVB", array.variant);
  CHECK(of_indices != id);
  CHECK(Shown(*engine, names, of_indices) == "#VALUE!");
  CHECK(Shown(*engine, indices, of_indices) == "2");
  CHECK(array.Positions() == "2;4;");
  CHECK(Shown(*engine, indices, of_indices) == "#VALUE!");
  // An entry of an earlier session.
  const std::string old = Entered("ZavrelCategoryNamesSetArrayPrivateVB", array.variant);
  CloseClean(*engine);
  engine->LoadAddIn(AddInFile());
  engine->Announce(5);
  CHECK(Shown(*engine, names, old) == "#VALUE!");
  CHECK(array.Positions() == "2;4;");
  CloseClean(*engine);
}

TEST_CASE("category names and positions for the next call, whatever other call comes between") {
  auto engine = AddInWithCategories();
  MacroArray names;
  MacroArray indices;
  CHECK(EntryPoint<SetNext>("ZavrelCategoryNamesGetArrayVB")(&names.variant) == 0);
  CHECK(EntryPoint<SetNext>("ZavrelCategoryIndicesSetArrayVB")(&indices.variant) == 0);
  CHECK(Shown(*engine, "ZavCountCategories(A1:A6)") == "3");
  CHECK(Shown(*engine, "ZavCategoryIndices(A1:A6,#N/A)") == "#VALUE!");
  CHECK((names.variant.vt == VT_EMPTY && indices.variant.vt == VT_EMPTY));
  CHECK(Shown(*engine, "ZavCategoryIndices(A1:A6,\"north\")") == "2");
  CHECK(indices.Positions() == "2;4;");
  CHECK(Shown(*engine, "ZavCategoryIndices(A1:A6,\"north\")") == "2;");
  CHECK(Shown(*engine, "ZavCategoryNames(A1:A6)") == "3");
  CHECK(names.Names() == "2.5;north;\u0416\U0001F600;");
  CHECK(Shown(*engine, "ZavCategoryNames(A1:A2)").starts_with("north;"));
  CloseClean(*engine);
}

TEST_CASE("arrays that a macro cannot have meant are refused") {
  auto engine = AddInWithCategories();
  double number = 0.5;
  VARIANT reference{};
  reference.vt = VT_BYREF | VT_R8;
  reference.pdblVal = &number;
  auto* nowhere = reinterpret_cast<const VARIANT*>(std::uintptr_t{16});
  BSTR id = nullptr;
  for (const VARIANT* array :
       {static_cast<const VARIANT*>(nullptr), static_cast<const VARIANT*>(&reference), nowhere}) {
    for (const char* name : {"ZavrelCategoryNamesGetArrayVB", "ZavrelCategoryIndicesSetArrayVB"})
      CHECK(EntryPoint<SetNext>(name)(array) != 0);
    for (const char* name :
         {"ZavrelCategoryNamesSetArrayPrivateVB", "ZavrelCategoryNamesSetArrayPrivateWVB",
          "ZavrelCategoryIndicesSetArrayPrivateVB"}) {
      CHECK(EntryPoint<SetById>(name)(array, &id) != 0);
      VARIANT own{};
      CHECK(EntryPoint<SetById>(name)(&own, nullptr) != 0);
    }
  }
  CHECK(id == nullptr);
  CHECK(Shown(*engine, "ZavCategoryNames(A1:A2)").starts_with("north;"));  // nothing was arranged

  // Addresses that were never issued, or must not be written any more.
  VARIANT never{};
  MacroArray locked;
  locked.variant.vt = VT_ARRAY | VT_I4;
  locked.variant.parray = SafeArrayCreateVector(VT_I4, 0, 3);
  SafeArrayLock(locked.variant.parray);
  for (const std::string& address :
       {std::to_string(reinterpret_cast<std::intptr_t>(&never)), std::string("8"),
        std::string("-1"), std::string("x"), Address(locked.variant)}) {
    CAPTURE(address);
    CHECK(Shown(*engine, "ZavCategoryNamesPrivate2(A1:A6,$)", address) == "#VALUE!");
    CHECK(Shown(*engine, "ZavCategoryIndicesPrivate2(A1:A6,\"north\",$)", address) == "#VALUE!");
    CHECK(Shown(*engine, "ZavCategoryNamesPrivate(A1:A6,$)", address) == "#VALUE!");
    CHECK(Shown(*engine, "ZavCategoryIndicesPrivate(A1:A6,\"north\",$)", address) == "#VALUE!");
  }
  CHECK(never.vt == VT_EMPTY);
  SafeArrayUnlock(locked.variant.parray);
  CHECK(number == 0.5);
  CloseClean(*engine);
}

}  // namespace zavrel::tests
