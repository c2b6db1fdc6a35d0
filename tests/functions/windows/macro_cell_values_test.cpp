// A macro and the worksheet functions that fill its arrays, from the first call to the last.
#include "functions/cell_value_exports.h"

#include "macros/windows/ole_owners.h"
// The system's header comes before the process functions.
#include <psapi.h>

#include <doctest/doctest.h>

#include <string>

#include "functions/open_add_in.h"
#include "platform/utf.h"

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

/// The bytes of an ANSI string that a macro was given; it goes with the macro.
std::string Taken(BSTR text) {
  std::string bytes(reinterpret_cast<const char*>(text), SysStringByteLen(text));
  SysFreeString(text);
  return bytes;
}

std::string IdOf(const VARIANT* variant) { return Taken(VariantIdString(variant)); }

/// The elements of a macro's array, as text: "2.5", "text", "TRUE", "error -2146826246", "" when
/// empty.
std::string Elements(const VARIANT& variant) {
  if ((variant.vt & VT_ARRAY) == 0) return "no array";
  SAFEARRAY* array = variant.parray;
  LONG upper = 0;
  SafeArrayGetUBound(array, 1, &upper);
  std::string shown;
  for (LONG i = 1; i <= upper; ++i) {
    OwnedVariant element;
    const auto type = static_cast<VARTYPE>(variant.vt & ~VT_ARRAY);
    element.address()->vt = type == VT_VARIANT ? static_cast<VARTYPE>(VT_EMPTY) : type;
    void* place = type == VT_VARIANT ? static_cast<void*>(element.address())
                                     : static_cast<void*>(&element.address()->llVal);
    REQUIRE(SUCCEEDED(SafeArrayGetElement(array, &i, place)));
    if (element.get().vt == VT_ERROR) {
      shown += "error " + std::to_string(element.get().scode) + ";";
      continue;
    }
    OwnedVariant text;
    REQUIRE(SUCCEEDED(VariantChangeTypeEx(text.address(), Unconst(element.get()), kCallLocale,
                                          VARIANT_ALPHABOOL, VT_BSTR)));
    shown += Utf8FromUtf16(BstrView(text.get().bstrVal)) + ";";
  }
  return shown;
}

/// A macro with the add-in open: five cells and VARIANTs for them.
struct Macro {
  Macro() {
    add_in.excel.SetColumn(0, 0, {2.5, u"\u0416", Cell(), true, ErrorCell{xlerrNA}});
    add_in.excel.texts_of_numbers = {{2.5, u"2,5"}};
  }
  void HoldText() {
    VariantClear(values.address());
    values.address()->bstrVal = SysAllocString(L"before");
    values.address()->vt = VT_BSTR;
  }
  bool HoldsText() const { return values.get().vt == VT_BSTR; }

  OpenAddIn add_in;
  OwnedVariant values;
  OwnedVariant indices;
  Reference range{Area(0, 4, 0, 0)};
  Argument every{Cell(0.0)};
  Argument non_blank{Cell(2.0)};
};

}  // namespace

TEST_CASE("arrays by the addresses of the macro's VARIANTs") {
  Macro macro;
  const std::string values = IdOf(macro.values.address());
  const std::string indices = IdOf(macro.indices.address());
  CHECK(values == std::to_string(reinterpret_cast<std::intptr_t>(macro.values.address())));
  const auto fill = [&](const char* first, const char* second) -> const XLOPER12& {
    return *ZavrelGetCellValuesPrivate2(macro.range, macro.non_blank, first, second);
  };

  CHECK(Number(fill(values.c_str(), indices.c_str())) == 4);
  CHECK(macro.values.get().vt == (VT_ARRAY | VT_VARIANT));
  CHECK(Elements(macro.values.get()) == "2.5;\u0416;True;error -2146826246;");
  CHECK(macro.indices.get().vt == (VT_ARRAY | VT_I4));
  CHECK(Elements(macro.indices.get()) == "1;2;4;5;");

  VariantClear(macro.indices.address());
  CHECK(Number(fill(values.c_str(), "")) == 4);
  CHECK(macro.indices.get().vt == VT_EMPTY);
  CHECK(Number(fill("0", indices.c_str())) == 4);
  CHECK(Elements(macro.indices.get()) == "1;2;4;5;");

  CHECK(Number(*ZavrelGetCellValuesCategoryPrivate2(macro.range, macro.every, u"(none)",
                                                    values.c_str())) == 5);
  CHECK(macro.values.get().vt == (VT_ARRAY | VT_BSTR));
  CHECK(Elements(macro.values.get()) == "2,5;\u0416;(none);WAHR;(none);");
  CHECK(Number(*ZavrelGetCellValuesCategoryPrivate2(macro.range, macro.every, nullptr,
                                                    values.c_str())) == 5);
  CHECK(Elements(macro.values.get()) == "2,5;\u0416;;WAHR;;");
  CHECK(Number(*ZavrelGetCellValuesNumericPrivate2(macro.range, macro.every, -1, values.c_str())) ==
        5);
  CHECK(macro.values.get().vt == (VT_ARRAY | VT_R8));
  CHECK(Elements(macro.values.get()) == "2.5;-1;-1;-1;-1;");

  // No cell of the class.
  const Reference numbers(Area(0, 0, 0, 0));
  const Argument blank(Cell(4.0));
  CHECK(Number(*ZavrelGetCellValuesPrivate2(numbers, blank, values.c_str(), nullptr)) == 0);
  CHECK(macro.values.get().vt == (VT_ARRAY | VT_VARIANT));
  CHECK(Elements(macro.values.get()).empty());
  CHECK(macro.add_in.excel.values_out == 0);
}

TEST_CASE("a call that fails touches nothing") {
  Macro macro;
  const std::string values = IdOf(macro.values.address());
  const std::string indices = IdOf(macro.indices.address());
  macro.HoldText();
  const auto fill = [&](const std::string& first, const std::string& second) {
    return Error(
        *ZavrelGetCellValuesPrivate2(macro.range, macro.every, first.c_str(), second.c_str()));
  };
  CHECK(fill(values, "12x") == xlerrValue);
  CHECK(fill(values, values) == xlerrValue);
  const std::string inside =
      std::to_string(reinterpret_cast<std::intptr_t>(macro.values.address()) + 8);
  CHECK(fill(values, inside) == xlerrValue);
  CHECK(fill(inside, "") == xlerrValue);
  macro.indices.address()->parray = SafeArrayCreateVector(VT_I4, 0, 2);
  macro.indices.address()->vt = VT_ARRAY | VT_I4;
  {
    const SafeArrayLock lock(macro.indices.get().parray);
    CHECK(fill(values, indices) == xlerrValue);
  }
  macro.add_in.excel.answer = [](const XLREF12&) { return xlretUncalced; };
  CHECK(fill(values, indices) == xlerrRef);
  macro.add_in.excel.answer = nullptr;
  // The cells are there, but not the text of one of them.
  macro.add_in.excel.text_code = xlretUncalced;
  CHECK(Error(*ZavrelGetCellValuesCategoryPrivate2(macro.range, macro.every, u"",
                                                   values.c_str())) == xlerrRef);
  CHECK(macro.HoldsText());
  CHECK(Elements(macro.indices.get()) == "0;");
}

TEST_CASE("addresses are issued for VARIANTs that last, by a session that is open") {
  std::string values;
  {
    Macro macro;
    VARIANT by_reference{};
    by_reference.vt = VT_BYREF | VT_VARIANT;
    by_reference.pvarVal = macro.values.address();
    values = IdOf(macro.values.address());
    CHECK(IdOf(&by_reference) == values);
    by_reference.pvarVal = nullptr;
    CHECK(IdOf(&by_reference) == "0");
    by_reference.pvarVal = reinterpret_cast<VARIANT*>(8);
    CHECK(IdOf(&by_reference) == "0");
    double number = 0;
    by_reference.vt = VT_BYREF | VT_R8;
    by_reference.pdblVal = &number;
    CHECK(IdOf(&by_reference) == "0");
    CHECK(IdOf(nullptr) == "0");
    CHECK(IdOf(reinterpret_cast<VARIANT*>(1)) == "0");

    // The latest 1,024 of them.
    macro.HoldText();
    std::vector<VARIANT> others(1024);
    for (std::size_t i = 1; i < others.size(); ++i) IdOf(&others[i]);
    const auto fill = [&] {
      return ZavrelGetCellValuesPrivate2(macro.range, macro.every, values.c_str(), nullptr);
    };
    CHECK(Number(*fill()) == 5);
    IdOf(&others[0]);
    CHECK(Error(*fill()) == xlerrValue);
    IdOf(macro.values.address());
    CHECK(Number(*fill()) == 5);

    // Closed and opened again, the session knows none of them.
    macro.HoldText();
    BSTR id = nullptr;
    CHECK(ZavrelGetCellValuesSetArrayPrivateVB(macro.values.address(), nullptr, &id) == 0);
    const std::string entered = Taken(std::exchange(id, nullptr));
    CHECK(ZavrelGetCellValuesSetArrayVB(macro.values.address(), nullptr) == 0);
    Session::Close();
    CHECK(IdOf(macro.values.address()) == "0");
    CHECK(ZavrelGetCellValuesSetArrayPrivateVB(macro.values.address(), nullptr, &id) == 0);
    CHECK((id != nullptr && Taken(id).empty()));
    Session::Open(ThisAddIn(), QuietServices());
    CHECK(Error(*fill()) == xlerrValue);
    CHECK(Error(*ZavrelGetCellValuesPrivate(macro.range, macro.every, entered.c_str())) ==
          xlerrValue);
    CHECK(Error(*ZavrelGetCellValues(macro.range, macro.every)) == xlerrRef);
    CHECK(macro.HoldsText());
  }
}

TEST_CASE("arrays that were arranged beforehand") {
  Macro macro;
  BSTR id = nullptr;
  VARIANT blank_name{};
  blank_name.vt = VT_I4;
  blank_name.lVal = 17;
  const auto fill = [&] {
    const std::string text(reinterpret_cast<const char*>(id), SysStringByteLen(id));
    return ZavrelGetCellValuesPrivate(macro.range, macro.every, text.c_str());
  };

  CHECK(ZavrelGetCellValuesSetArrayPrivateVB(macro.values.address(), macro.indices.address(),
                                             &id) == 0);
  CHECK(Number(*fill()) == 5);
  CHECK(Elements(macro.values.get()) == "2.5;\u0416;;True;error -2146826246;");
  CHECK(Elements(macro.indices.get()) == "1;2;3;4;5;");
  CHECK(Error(*fill()) == xlerrValue);

  CHECK(ZavrelGetCellValuesNumericSetArrayPrivateVB(macro.values.address(), 0.25, &id) == 0);
  CHECK(Number(*fill()) == 5);
  CHECK(Elements(macro.values.get()) == "2.5;0.25;0.25;0.25;0.25;");

  CHECK(ZavrelGetCellValuesCategorySetArrayPrivateVB(macro.values.address(), &blank_name, &id) ==
        0);
  macro.add_in.excel.text_code = xlretUncalced;
  CHECK(Error(*fill()) == xlerrRef);  // to be called again
  CHECK(macro.values.get().vt == (VT_ARRAY | VT_R8));
  macro.add_in.excel.text_code = xlretSuccess;
  CHECK(Number(*fill()) == 5);
  CHECK(Elements(macro.values.get()) == "2,5;\u0416;17;WAHR;17;");
  CHECK(ZavrelGetCellValuesCategorySetArrayPrivateVB(macro.values.address(), nullptr, &id) == 0);
  CHECK(Number(*fill()) == 5);
  CHECK(Elements(macro.values.get()) == "2,5;\u0416;;WAHR;;");

  // The next call without an id.
  CHECK(ZavrelGetCellValuesSetArrayVB(macro.values.address(), macro.indices.address()) == 0);
  CHECK(Number(*ZavrelGetCellValues(macro.range, macro.non_blank)) == 4);
  CHECK(Elements(macro.values.get()) == "2.5;\u0416;True;error -2146826246;");
  CHECK(Elements(macro.indices.get()) == "1;2;4;5;");
  CHECK(Error(*ZavrelGetCellValues(macro.range, macro.non_blank)) == xlerrRef);
  SysFreeString(id);
}

TEST_CASE("entry points without what they need fail by number and arrange nothing") {
  Macro macro;
  OwnedVariant array;
  array.address()->parray = SafeArrayCreateVector(VT_R8, 0, 2);
  array.address()->vt = VT_ARRAY | VT_R8;
  VARIANT nowhere{};
  nowhere.vt = VT_BYREF | VT_BSTR;
  BSTR id = SysAllocString(L"as before");
  const auto failed = [&](std::uint32_t number) {
    const auto failure = Session::Current()->failures().Find(number);
    return failure ? failure->class_name() : u"none";
  };
  CHECK(failed(ZavrelGetCellValuesSetArrayVB(nullptr, nullptr)) == u"VekParameterError");
  CHECK(failed(ZavrelGetCellValuesSetArrayPrivateVB(nullptr, nullptr, &id)) ==
        u"VekParameterError");
  CHECK(failed(ZavrelGetCellValuesSetArrayPrivateVB(macro.values.address(), nullptr, nullptr)) ==
        u"VekParameterError");
  CHECK(failed(ZavrelGetCellValuesCategorySetArrayPrivateVB(nullptr, nullptr, &id)) ==
        u"VekParameterError");
  for (const VARIANT* no_text : {&array.get(), static_cast<const VARIANT*>(&nowhere)}) {
    CHECK(failed(ZavrelGetCellValuesCategorySetArrayPrivateVB(macro.values.address(), no_text,
                                                              &id)) == u"VekExpectedString");
  }
  CHECK(failed(ZavrelGetCellValuesNumericSetArrayPrivateVB(&nowhere, 0, &id)) ==
        u"VekParameterError");
  CHECK(std::wstring(id) == L"as before");
  CHECK(Error(*ZavrelGetCellValues(macro.range, macro.every)) == xlerrRef);

  CHECK(failed(ZavrelGetCellValueCategoryW(nullptr, nullptr)) == u"VekParameterError");
  for (const VARIANT* no_range : {static_cast<const VARIANT*>(nullptr), &array.get(),
                                  static_cast<const VARIANT*>(&nowhere), &macro.values.get()}) {
    CHECK(Taken(ZavrelGetCellValueCategory(no_range)).empty());
    CHECK(ZavrelGetCellValueCategoryW(no_range, &id) == 0);
    CHECK((id != nullptr && SysStringLen(id) == 0));
  }
  SysFreeString(id);
}

TEST_CASE("ten thousand rounds leave no memory behind") {
  Macro macro;
  const auto round = [&] {
    const std::string values = IdOf(macro.values.address());
    ZavrelGetCellValuesPrivate2(macro.range, macro.every, values.c_str(), nullptr);
    ZavrelGetCellValuesCategoryPrivate2(macro.range, macro.every, u"none", values.c_str());
    BSTR id = nullptr;
    ZavrelGetCellValuesSetArrayPrivateVB(macro.values.address(), macro.indices.address(), &id);
    ZavrelGetCellValuesPrivate(macro.range, macro.every, Taken(id).c_str());
    id = nullptr;
    ZavrelGetCellValuesCategorySetArrayPrivateVB(macro.values.address(), nullptr, &id);
    SysFreeString(id);  // never filled
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
  CHECK_MESSAGE(after < before + 256 * 1024, before << " bytes became " << after);
  CHECK(macro.add_in.excel.values_out == 0);
}

}  // namespace zavrel::tests
