// A macro gets category names and positions through formulas that fill its arrays.
#include "integration/entry_point.h"

namespace zavrel::tests {
namespace {

using SetNext = std::uint32_t(const VARIANT*);
using SetById = std::uint32_t(const VARIANT*, BSTR*);

std::string Entered(const char* entry_point, const VARIANT* variant) {
  BSTR id = nullptr;
  CHECK(EntryPoint<SetById>(entry_point)(variant, &id) == 0);
  return Taken(id);
}

std::unique_ptr<zavhost::Engine> AddInWithCategories() {
  return ServingAddIn(
      BookOf({"A: \u0416\U0001F600 | north | \"\" | \"NORTH \" | \u0436\U0001F600 | 2.5"}));
}

const char* const kNames = "texts 2.5;north;\u0416\U0001F600;";
const char* const kNamesById = "ZavCategoryNamesPrivate(A1:A6,$)";
const char* const kIndicesById = "ZavCategoryIndicesPrivate(A1:A6,\"North\",$)";
const char* const kNamesByAddress = "ZavCategoryNamesPrivate2(A1:A6,$)";
const char* const kIndicesByAddress = "ZavCategoryIndicesPrivate2(A:A,\"North\",$)";

}  // namespace

TEST_CASE("category names and positions by the address of a macro's VARIANT") {
  auto engine = AddInWithCategories();
  MacroVariant array;
  const struct {
    const char *formula, *shown, *held;
  } cases[] = {{kNamesByAddress, "3", kNames},
               {kIndicesByAddress, "2", "integers 2;4;"},
               {"ZavCategoryIndicesPrivate2(A1:A6,2.5,$)", "1", "integers 6;"},
               {"ZavCategoryIndicesPrivate2(A1:A6,\"no such\",$)", "#N/A", "integers 6;"},
               {"ZavCategoryNamesPrivate2(C1:C9,$)", "0", "texts "}};
  for (const auto& given : cases) {
    CAPTURE(given.formula);
    CHECK(ShownWith(*engine, given.formula, IdOf(array)) == given.shown);
    CHECK(Held(array.variant) == given.held);
  }
  MacroVariant once;
  const std::string address = IdOf(once);
  CHECK(ShownWith(*engine, kNamesByAddress, address) == "3");
  CHECK(ShownWith(*engine, kNamesByAddress, address) == "#VALUE!");  // it is good for one call
  // Without an address they are counted.
  VariantClear(array);
  for (const char* none : {"", "0"}) {
    CHECK(ShownWith(*engine, kNamesByAddress, none) == "3");
    CHECK(ShownWith(*engine, kIndicesByAddress, none) == "2");
  }
  CHECK(array.variant.vt == VT_EMPTY);
  CloseClean(*engine);
}

TEST_CASE("category names and positions by the id of an entry, which is used up") {
  auto engine = AddInWithCategories();
  MacroVariant array;
  const std::string id = Entered("ZavrelCategoryNamesSetArrayPrivateVB", array);
  CHECK(id.starts_with("Time="));
  CHECK(ShownWith(*engine, kIndicesById, id) == "#VALUE!");  // an entry for names
  CHECK(ShownWith(*engine, kNamesById, id) == "3");
  CHECK(Held(array.variant) == kNames);
  CHECK(ShownWith(*engine, kNamesById, id) == "#VALUE!");

  BSTR wide = SysAllocString(L"as before");
  CHECK(EntryPoint<SetById>("ZavrelCategoryNamesSetArrayPrivateWVB")(array, &wide) == 0);
  const std::wstring wide_id(wide, SysStringLen(wide));
  SysFreeString(wide);
  VariantClear(array);
  CHECK(ShownWith(*engine, kNamesById, std::string(wide_id.begin(), wide_id.end())) == "3");
  CHECK(Held(array.variant) == kNames);

  const std::string of_indices = Entered("ZavrelCategoryIndicesSetArrayPrivateVB", array);
  CHECK(of_indices != id);
  CHECK(ShownWith(*engine, kNamesById, of_indices) == "#VALUE!");
  CHECK(ShownWith(*engine, kIndicesById, of_indices.substr(1)) == "#VALUE!");
  CHECK(ShownWith(*engine, kIndicesById, of_indices) == "2");
  CHECK(Held(array.variant) == "integers 2;4;");
  CHECK(ShownWith(*engine, kIndicesById, of_indices) == "#VALUE!");
  const std::string of_none = Entered("ZavrelCategoryIndicesSetArrayPrivateVB", array);
  CHECK(ShownWith(*engine, "ZavCategoryIndicesPrivate(A1:A6,\"no such\",$)", of_none) == "#N/A");
  CHECK(ShownWith(*engine, kIndicesById, of_none) == "#VALUE!");
  // An entry of an earlier session.
  const std::string old = Entered("ZavrelCategoryNamesSetArrayPrivateVB", array);
  CloseClean(*engine);
  engine->LoadAddIn(AddInFile());
  engine->Announce(5);
  CHECK(ShownWith(*engine, kNamesById, old) == "#VALUE!");
  CHECK(Held(array.variant) == "integers 2;4;");
  CloseClean(*engine);
}

TEST_CASE("category names and positions for the next call, whatever other call comes between") {
  auto engine = AddInWithCategories();
  MacroVariant names, indices;
  CHECK(EntryPoint<SetNext>("ZavrelCategoryNamesGetArrayVB")(names) == 0);
  CHECK(EntryPoint<SetNext>("ZavrelCategoryIndicesSetArrayVB")(indices) == 0);
  CheckFormulas(*engine, "ZavCountCategories(A1:A6) -> 3");
  CHECK((names.variant.vt == VT_EMPTY && indices.variant.vt == VT_EMPTY));
  CheckFormulas(*engine, R"(
      ZavCategoryIndices(A1:A6,"north") -> 2 | ZavCategoryIndices(A1:A6,"north") -> 2;
      ZavCategoryNames(A1:A6) -> 3)");
  CHECK(Held(indices.variant) == "integers 2;4;");
  CHECK(Held(names.variant) == kNames);
  // A call that fails has used the arrangement up.
  CHECK(EntryPoint<SetNext>("ZavrelCategoryIndicesSetArrayVB")(names) == 0);
  CheckFormulas(*engine, R"(
      ZavCategoryIndices(A1:A6,#N/A) -> #VALUE! | ZavCategoryIndices(A1:A6,"north") -> 2;)");
  CHECK(Held(names.variant) == kNames);
  CHECK(Shown(*engine, "ZavCategoryNames(A1:A2)").starts_with("north;"));
  CloseClean(*engine);
}

TEST_CASE("arrays that a macro cannot have meant, and addresses not issued, are refused") {
  auto engine = AddInWithCategories();
  VARIANT own{};
  const VARIANT reference = VariantOf(VT_BYREF | VT_R8);
  BSTR id = nullptr;
  for (const VARIANT* array : {static_cast<const VARIANT*>(nullptr), &reference,
                               reinterpret_cast<const VARIANT*>(std::uintptr_t{16})}) {
    for (const char* name : {"ZavrelCategoryNamesGetArrayVB", "ZavrelCategoryIndicesSetArrayVB"})
      CHECK(EntryPoint<SetNext>(name)(array) != 0);
    for (const char* name :
         {"ZavrelCategoryNamesSetArrayPrivateVB", "ZavrelCategoryNamesSetArrayPrivateWVB",
          "ZavrelCategoryIndicesSetArrayPrivateVB"}) {
      CHECK(EntryPoint<SetById>(name)(array, &id) != 0);
      CHECK(EntryPoint<SetById>(name)(&own, nullptr) != 0);
    }
  }
  CHECK(id == nullptr);
  CHECK(Shown(*engine, "ZavCategoryNames(A1:A2)").starts_with("north;"));  // nothing was arranged
  for (const std::string& address :
       {std::to_string(reinterpret_cast<std::intptr_t>(&own)), std::string("8")}) {
    for (const char* formula : {kNamesByAddress, kIndicesByAddress, kNamesById, kIndicesById})
      CHECK(ShownWith(*engine, formula, address) == "#VALUE!");
  }
  CHECK(own.vt == VT_EMPTY);
  CloseClean(*engine);
}

}  // namespace zavrel::tests
