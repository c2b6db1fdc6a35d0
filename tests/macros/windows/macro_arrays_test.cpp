// Arrays written into a macro's VARIANTs: where they may be written, and what is in them.
#include "macros/macro_arrays.h"

#include <doctest/doctest.h>

#include <array>

#include "macros/windows/ole_owners.h"

namespace zavrel::tests {
namespace {

std::uint64_t AddressOf(const void* place) { return reinterpret_cast<std::uint64_t>(place); }

bool Write(std::uint64_t values, std::uint64_t indices = 0) {
  return WriteMacroArrays(std::array{MacroArray{values, std::vector<double>{1, 2}},
                                     MacroArray{indices, std::vector<std::int32_t>{3}}});
}

/// Two pages, each with its protection.
class Pages {
 public:
  static constexpr std::size_t kSize = 4096;

  Pages(DWORD first, DWORD second)
      : base_(static_cast<char*>(
            VirtualAlloc(nullptr, 2 * kSize, MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE))) {
    REQUIRE(base_ != nullptr);
    DWORD old = 0;
    REQUIRE(VirtualProtect(base_, kSize, first, &old));
    REQUIRE(VirtualProtect(base_ + kSize, kSize, second, &old));
  }
  ~Pages() { VirtualFree(base_, 0, MEM_RELEASE); }
  Pages(const Pages&) = delete;
  Pages& operator=(const Pages&) = delete;

  std::uint64_t start() const { return AddressOf(base_); }
  /// A place that begins on the one page and ends on the other.
  std::uint64_t across() const { return start() + kSize - 8; }
  void Decommit() { VirtualFree(base_, kSize, MEM_DECOMMIT); }

 private:
  char* base_;
};

}  // namespace

TEST_CASE("only whole VARIANTs in memory that can be written are written") {
  constexpr DWORD kProtections[] = {PAGE_READONLY, PAGE_EXECUTE_READ, PAGE_EXECUTE, PAGE_NOACCESS,
                                    PAGE_READWRITE | PAGE_GUARD};
  for (const DWORD protection : kProtections) {
    CAPTURE(protection);
    const Pages pages(protection, PAGE_READWRITE);
    CHECK_FALSE(Write(pages.start()));
    CHECK_FALSE(Write(pages.across()));
    CHECK_FALSE(Write(0, pages.start()));
    const Pages ends(PAGE_READWRITE, protection);
    CHECK_FALSE(Write(ends.across()));
    // A guard page was not touched: it would no longer be one.
    MEMORY_BASIC_INFORMATION region{};
    VirtualQuery(reinterpret_cast<void*>(pages.start()), &region, sizeof region);
    CHECK(region.Protect == protection);
  }
  Pages pages(PAGE_READWRITE, PAGE_EXECUTE_READWRITE);
  CHECK(Write(pages.across()));
  CHECK(Write(pages.start(), pages.start() + sizeof(VARIANT)));
  CHECK_FALSE(Write(pages.start() + 4));
  VariantClear(reinterpret_cast<VARIANT*>(pages.across()));
  VariantClear(reinterpret_cast<VARIANT*>(pages.start()));
  VariantClear(reinterpret_cast<VARIANT*>(pages.start()) + 1);
  pages.Decommit();
  CHECK_FALSE(Write(pages.start()));

  CHECK_FALSE(Write(8));
  CHECK_FALSE(Write(1));
  CHECK_FALSE(Write(~std::uint64_t{0}));
  CHECK_FALSE(Write(~std::uint64_t{7}));
  CHECK_FALSE(Write(std::uint64_t{1} << 63));
  CHECK_FALSE(Write(AddressOf(reinterpret_cast<const void*>(&VirtualAlloc)) & ~std::uint64_t{7}));
}

TEST_CASE("what cannot go stays, and so does everything else") {
  OwnedVariant good;
  good.address()->vt = VT_I4;
  good.address()->lVal = 7;
  const auto refused = [&](std::uint64_t address) {
    const bool written =
        Write(address, AddressOf(good.address())) || Write(AddressOf(good.address()), address);
    return !written && good.get().vt == VT_I4 && good.get().lVal == 7;
  };
  // Types that no VARIANT holds.
  for (const int type :
       {0x0FFF, 0x4000, 0x2000, 15, 27, 64, static_cast<int>(VT_VARIANT), 0xFFFF}) {
    VARIANT variant{};
    variant.vt = static_cast<VARTYPE>(type);
    CAPTURE(type);
    CHECK(refused(AddressOf(&variant)));
    CHECK(variant.vt == type);
  }
  // A locked array, and an array where none is.
  OwnedVariant locked;
  locked.address()->parray = SafeArrayCreateVector(VT_R8, 0, 3);
  locked.address()->vt = VT_ARRAY | VT_R8;
  {
    const SafeArrayLock lock(locked.get().parray);
    CHECK(refused(AddressOf(locked.address())));
    CHECK(SafeArrayGetDim(locked.get().parray) == 1);
  }
  VARIANT nowhere{};
  nowhere.vt = VT_ARRAY | VT_R8;
  nowhere.parray = reinterpret_cast<SAFEARRAY*>(8);
  CHECK(refused(AddressOf(&nowhere)));
  // The same VARIANT twice, and two that overlap.
  CHECK(refused(AddressOf(good.address())));
  CHECK(refused(AddressOf(good.address()) + 8));
  CHECK(refused(AddressOf(good.address()) - 16));

  CHECK(Write(AddressOf(locked.address()), AddressOf(good.address())));
  CHECK(locked.get().vt == (VT_ARRAY | VT_R8));
  CHECK(good.get().vt == (VT_ARRAY | VT_I4));
}

TEST_CASE("what a VARIANT held goes, even where it holds the other VARIANT") {
  OwnedVariant outer;
  // So large that its memory returns to the system when it is freed.
  outer.address()->parray = SafeArrayCreateVector(VT_VARIANT, 1, 200'000);
  outer.address()->vt = VT_ARRAY | VT_VARIANT;
  auto* element = static_cast<VARIANT*>(outer.get().parray->pvData);
  CHECK(Write(AddressOf(outer.address()), AddressOf(element)));
  CHECK(outer.get().vt == (VT_ARRAY | VT_R8));

  int referred = 5;
  OwnedVariant reference;
  reference.address()->vt = VT_BYREF | VT_I4;
  reference.address()->plVal = reinterpret_cast<LONG*>(&referred);
  OwnedVariant text;
  text.address()->bstrVal = SysAllocString(L"old");
  text.address()->vt = VT_BSTR;
  CHECK(Write(AddressOf(reference.address()), AddressOf(text.address())));
  CHECK((reference.get().vt == (VT_ARRAY | VT_R8) && referred == 5));

  // Without elements: empty.
  CHECK(WriteMacroArrays(std::array{MacroArray{AddressOf(text.address()), {}}}));
  CHECK(text.get().vt == VT_EMPTY);
}

TEST_CASE("the elements of each kind of array, counted from 1") {
  OwnedVariant place;
  const auto write = [&](MacroElements elements) {
    REQUIRE(WriteMacroArrays(std::array{MacroArray{AddressOf(place.address()), elements}}));
    SAFEARRAY* array = place.get().parray;
    LONG lower = 0;
    LONG upper = 0;
    SafeArrayGetLBound(array, 1, &lower);
    SafeArrayGetUBound(array, 1, &upper);
    CHECK((SafeArrayGetDim(array) == 1 && lower == 1 && array->cLocks == 0));
    return upper;
  };
  const auto element = [&]<class Element>(Element* result, std::size_t index) {
    *result = static_cast<Element*>(place.get().parray->pvData)[index - 1];
  };

  const std::vector<SingleValue> cells{{.tag = CellTag::kNumber, .number = 2.5},
                                       {.tag = CellTag::kText, .text = u"\u0416"},
                                       {.tag = CellTag::kBoolean, .code = 1},
                                       {.tag = CellTag::kBoolean, .code = 0},
                                       {.tag = CellTag::kError, .code = 42},
                                       {.tag = CellTag::kInteger, .code = -5},
                                       {.tag = CellTag::kInteger, .code = 70000},
                                       {.tag = CellTag::kBlank},
                                       {.tag = CellTag::kMissing}};
  CHECK(write(cells) == 9);
  CHECK(place.get().vt == (VT_ARRAY | VT_VARIANT));
  VARIANT v;
  element(&v, 1);
  CHECK((v.vt == VT_R8 && v.dblVal == 2.5));
  element(&v, 2);
  CHECK((v.vt == VT_BSTR && BstrView(v.bstrVal) == u"\u0416"));
  element(&v, 3);
  CHECK((v.vt == VT_BOOL && v.boolVal == -1));
  element(&v, 4);
  CHECK((v.vt == VT_BOOL && v.boolVal == 0));
  element(&v, 5);
  CHECK((v.vt == VT_ERROR && static_cast<std::uint32_t>(v.scode) == 0x800A07FA));
  element(&v, 6);
  CHECK((v.vt == VT_I2 && v.iVal == -5));
  element(&v, 7);
  CHECK((v.vt == VT_I2 && v.iVal == 32767));
  element(&v, 8);
  CHECK(v.vt == VT_EMPTY);
  element(&v, 9);
  CHECK(v.vt == VT_EMPTY);

  CHECK(write(std::vector<std::u16string>{u"", u"b"}) == 2);
  CHECK(place.get().vt == (VT_ARRAY | VT_BSTR));
  BSTR text = nullptr;
  element(&text, 1);
  CHECK((text != nullptr && SysStringLen(text) == 0));
  element(&text, 2);
  CHECK(BstrView(text) == u"b");

  CHECK(write(std::vector<double>{1, -2.5}) == 2);
  double number = 0;
  element(&number, 2);
  CHECK((place.get().vt == (VT_ARRAY | VT_R8) && number == -2.5));

  for (const MacroElements& none :
       {MacroElements(std::vector<SingleValue>()), MacroElements(std::vector<std::u16string>()),
        MacroElements(std::vector<double>()), MacroElements(std::vector<std::int32_t>())}) {
    CHECK(write(none) == 0);
  }
  CHECK(place.get().vt == (VT_ARRAY | VT_I4));
}

}  // namespace zavrel::tests
