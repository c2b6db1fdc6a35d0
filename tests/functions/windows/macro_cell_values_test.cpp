// A macro and the worksheet functions that fill its arrays, from the first call to the last.
#include "functions/cell_value_exports.h"

#include "support/macro_variant.h"
// The system's header comes before the process functions.
#include <psapi.h>

#include <utility>

#include "support/open_add_in.h"

namespace zavrel {

ZAV_EXPORT BSTR VariantIdString(const VARIANT* variant);
ZAV_EXPORT std::uint32_t ZavrelGetCellValuesSetArrayVB(const VARIANT* values,
                                                       const VARIANT* indices);
ZAV_EXPORT std::uint32_t ZavrelGetCellValuesSetArrayPrivateVB(const VARIANT* values,
                                                              const VARIANT* indices, BSTR* id);
ZAV_EXPORT std::uint32_t ZavrelGetCellValuesCategorySetArrayPrivateVB(const VARIANT* values,
                                                                      const VARIANT* blank_name,
                                                                      BSTR* id);
ZAV_EXPORT std::uint32_t ZavrelGetCellValuesNumericSetArrayPrivateVB(const VARIANT* values,
                                                                     double for_non_numbers,
                                                                     BSTR* id);
ZAV_EXPORT BSTR ZavrelGetCellValueCategory(const VARIANT* range);
ZAV_EXPORT std::uint32_t ZavrelGetCellValueCategoryW(const VARIANT* range, BSTR* name);

}  // namespace zavrel

namespace zavrel::tests {
namespace {

std::string IdOf(const VARIANT* variant) { return Taken(VariantIdString(variant)); }

/// A macro with the add-in open: five cells and VARIANTs for them.
struct Macro : OpenAddIn {
  Macro() {
    excel.SetColumn(0, 0, {2.5, u"\u0416", Cell(), true, ErrorCell{xlerrNA}});
    excel.texts_of_numbers = {{2.5, u"2,5"}};
  }
  void HoldText() {
    VariantClear(values);
    values.variant = VariantOf(VT_BSTR, SysAllocString(L"before"));
  }

  std::string Fill(const std::string& first, const std::string& second = "") const {
    return Shown(*ZavrelGetCellValuesPrivate2(range, every, first.c_str(), second.c_str()));
  }
  std::string FillEntered(const std::string& id) const {
    return Shown(*ZavrelGetCellValuesPrivate(range, every, id.c_str()));
  }
  std::string FillNext() const { return Shown(*ZavrelGetCellValues(range, non_blank)); }

  MacroVariant values, indices;
  Reference range{Area(0, 4, 0, 0)};
  Argument every{Cell(0.0)}, non_blank{Cell(2.0)};
};

}  // namespace

TEST_CASE("a call that fails touches nothing") {
  Macro macro;
  const std::string values = IdOf(macro.values), indices = IdOf(macro.indices);
  for (int call = 0; call < 10; ++call) IdOf(macro.values), IdOf(macro.indices);
  macro.HoldText();
  const std::string inside =
      std::to_string(reinterpret_cast<std::intptr_t>(&macro.values.variant) + 8);
  CHECK(macro.Fill(values, "12x") == "#15");
  CHECK(macro.Fill(values, values) == "#15");
  CHECK(macro.Fill(values, inside) == "#15");
  CHECK(macro.Fill(inside) == "#15");
  macro.indices.variant = VariantOf(VT_ARRAY | VT_I4, SafeArrayCreateVector(VT_I4, 1, 2));
  ::SafeArrayLock(macro.indices.variant.parray);
  CHECK(macro.Fill(values, indices) == "#15");
  SafeArrayUnlock(macro.indices.variant.parray);
  macro.excel.answer = [](const XLREF12&) { return xlretUncalced; };
  CHECK(macro.Fill(values, indices) == "#23");
  macro.excel.answer = nullptr;
  // The cells are there, but not the text of one of them.
  macro.excel.text_code = xlretUncalced;
  CHECK(Shown(*ZavrelGetCellValuesCategoryPrivate2(macro.range, macro.every, u"",
                                                   values.c_str())) == "#23");
  CHECK(Held(macro.values.variant) == "text before");
  CHECK(Held(macro.indices.variant) == "integers 0;0;");
}

TEST_CASE("addresses are issued for VARIANTs that last, by a session that is open") {
  Macro macro;
  const std::string values = IdOf(macro.values);
  double number = 0;
  const VARIANT to_number = VariantOf(VT_BYREF | VT_R8, &number);
  const VARIANT reference = ReferenceTo(macro.values);
  const VARIANT to_nothing = ReferenceTo(static_cast<VARIANT*>(nullptr)),
                astray = ReferenceTo(reinterpret_cast<VARIANT*>(8));
  CHECK(IdOf(&reference) == values);
  for (const VARIANT* none :
       {&to_nothing, &astray, &to_number, static_cast<const VARIANT*>(nullptr),
        reinterpret_cast<const VARIANT*>(1)})
    CHECK(IdOf(none) == "-1");

  // The latest 1,024 of them.
  macro.HoldText();
  std::vector<VARIANT> others(1024);
  for (std::size_t i = 1; i < others.size(); ++i) IdOf(&others[i]);
  CHECK(macro.Fill(values) == "5");
  CHECK(macro.Fill(values) == "5");
  CHECK(macro.Fill(values) == "#15");  // issued twice, good for two calls
  IdOf(macro.values);
  for (VARIANT& other : others) IdOf(&other);
  CHECK(macro.Fill(values) == "#15");
  IdOf(macro.values);
  CHECK(macro.Fill(values) == "5");

  // Closed and opened again, the session knows none of them.
  macro.HoldText();
  BSTR id = nullptr;
  CHECK(ZavrelGetCellValuesSetArrayPrivateVB(macro.values, nullptr, &id) == 0);
  const std::string entered = Taken(std::exchange(id, nullptr));
  CHECK(ZavrelGetCellValuesSetArrayVB(macro.values, nullptr) == 0);
  Session::Close();
  CHECK(IdOf(macro.values) == "-1");
  CHECK(ZavrelGetCellValuesSetArrayPrivateVB(macro.values, nullptr, &id) == 0);
  CHECK((id != nullptr && Taken(id).empty()));
  Session::Open(ThisAddIn(), QuietServices());
  CHECK(macro.Fill(values) == "#15");
  CHECK(macro.FillEntered(entered) == "#15");
  CHECK(macro.FillNext() == "#23");
  CHECK(Held(macro.values.variant) == "text before");
}

TEST_CASE("an entry stays while a text of a cell is not there yet") {
  Macro macro;
  BSTR id = nullptr;
  CHECK(ZavrelGetCellValuesCategorySetArrayPrivateVB(macro.values, nullptr, &id) == 0);
  const std::string of_category = Taken(id);
  macro.HoldText();
  macro.excel.text_code = xlretUncalced;
  CHECK(macro.FillEntered(of_category) == "#23");  // to be called again
  CHECK(Held(macro.values.variant) == "text before");
  macro.excel.text_code = xlretSuccess;
  CHECK(macro.FillEntered(of_category) == "5");
  CHECK(Held(macro.values.variant) == "texts 2,5;\u0416;;WAHR;;");
  CHECK(Shown(*ZavrelGetCellValuesCategoryPrivate2(macro.range, macro.every, nullptr,
                                                   IdOf(macro.values).c_str())) == "5");
  CHECK(Held(macro.values.variant) == "texts 2,5;\u0416;;WAHR;;");
}

TEST_CASE("entry points without what they need fail by number and arrange nothing") {
  Macro macro;
  MacroVariant array;
  array.variant = VariantOf(VT_ARRAY | VT_R8, SafeArrayCreateVector(VT_R8, 0, 2));
  const VARIANT nowhere = VariantOf(VT_BYREF | VT_BSTR);
  const VARIANT variables =  // `Dim v() As Variant`
      VariantOf(VT_BYREF | VT_ARRAY | VT_VARIANT, static_cast<void*>(&array.variant.parray));
  BSTR id = SysAllocString(L"as before");
  const struct {
    std::uint32_t number;
    const char16_t* failure = u"VekParameterError";
  } cases[] = {
      {ZavrelGetCellValuesSetArrayVB(nullptr, nullptr)},
      {ZavrelGetCellValuesSetArrayVB(&variables, nullptr)},
      {ZavrelGetCellValuesSetArrayVB(macro.values, &variables)},
      {ZavrelGetCellValuesSetArrayPrivateVB(nullptr, nullptr, &id)},
      {ZavrelGetCellValuesSetArrayPrivateVB(macro.values, &variables, &id)},
      {ZavrelGetCellValuesSetArrayPrivateVB(macro.values, nullptr, nullptr)},
      {ZavrelGetCellValuesCategorySetArrayPrivateVB(nullptr, nullptr, &id)},
      {ZavrelGetCellValuesCategorySetArrayPrivateVB(macro.values, array, &id),
       u"VekExpectedString"},
      {ZavrelGetCellValuesCategorySetArrayPrivateVB(macro.values, &nowhere, &id),
       u"VekExpectedString"},
      {ZavrelGetCellValuesNumericSetArrayPrivateVB(&nowhere, 0, &id)},
      {ZavrelGetCellValueCategoryW(nullptr, nullptr)},
  };
  for (const auto& given : cases) {
    CAPTURE(given.number);
    const auto failure = Session::Current()->failures().Find(given.number);
    REQUIRE(failure);
    CHECK(failure->class_name() == given.failure);
  }
  CHECK(std::wstring(id) == L"as before");
  CHECK(macro.FillNext() == "#23");
  // Not a count, as without an address: the address is refused.
  CHECK(macro.Fill(IdOf(&variables)) == "#15");
  CHECK(macro.Fill(IdOf(macro.values), IdOf(&variables)) == "#15");

  for (const VARIANT* no_range :
       {static_cast<const VARIANT*>(nullptr), static_cast<const VARIANT*>(array), &nowhere,
        static_cast<const VARIANT*>(macro.values)}) {
    CHECK(Taken(ZavrelGetCellValueCategory(no_range)).empty());
    CHECK(ZavrelGetCellValueCategoryW(no_range, &id) == 0);
    CHECK((id != nullptr && SysStringLen(id) == 0));
  }
  SysFreeString(id);
}

TEST_CASE("ten thousand rounds leave no memory behind") {
  Macro macro;
  const auto round = [&] {
    const std::string values = IdOf(macro.values);
    ZavrelGetCellValuesPrivate2(macro.range, macro.every, values.c_str(), nullptr);
    ZavrelGetCellValuesCategoryPrivate2(macro.range, macro.every, u"none", values.c_str());
    BSTR id = nullptr;
    ZavrelGetCellValuesSetArrayPrivateVB(macro.values, macro.indices, &id);
    ZavrelGetCellValuesPrivate(macro.range, macro.every, Taken(id).c_str());
    id = nullptr;
    ZavrelGetCellValuesCategorySetArrayPrivateVB(macro.values, nullptr, &id);
    SysFreeString(id);  // never filled
    macro.excel.calls.clear();
  };
  const auto held = [] {
    PROCESS_MEMORY_COUNTERS counters{};
    GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof counters);
    return counters.PagefileUsage;
  };
  for (int i = 0; i < 2'000; ++i) round();
  const std::size_t before = held();
  for (int i = 0; i < 10'000; ++i) round();
  const std::size_t after = held();
  CHECK_MESSAGE(after < before + std::size_t{256} * 1024, before << " bytes became " << after);
}

}  // namespace zavrel::tests
