// Arrays written into a macro's VARIANTs: where they may be written, and what is in them.
#include "macros/macro_arrays.h"

#include <doctest/doctest.h>

#include <array>

#include "platform/windows/ole_owners.h"
#include "support/macro_variant.h"

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
  MacroVariant good;
  good.variant.vt = VT_I4;
  good.variant.lVal = 7;
  const auto refused = [&](std::uint64_t address) {
    const bool written =
        Write(address, AddressOf(&good.variant)) || Write(AddressOf(&good.variant), address);
    return !written && good.variant.vt == VT_I4 && good.variant.lVal == 7;
  };
  // Types that no VARIANT holds.
  for (const int type :
       {0x0FFF, 0x4000, 0x2000, 15, 27, 64, static_cast<int>(VT_VARIANT), 0xFFFF}) {
    const VARIANT variant = VariantOf(type);
    CAPTURE(type);
    CHECK(refused(AddressOf(&variant)));
    CHECK(variant.vt == type);
  }
  // A locked array, and an array where none is.
  MacroVariant locked;
  locked.variant = VariantOf(VT_ARRAY | VT_R8, SafeArrayCreateVector(VT_R8, 0, 3));
  {
    const SafeArrayLock lock(locked.variant.parray);
    CHECK(refused(AddressOf(&locked.variant)));
    CHECK(SafeArrayGetDim(locked.variant.parray) == 1);
  }
  const VARIANT nowhere = VariantOf(VT_ARRAY | VT_R8, reinterpret_cast<void*>(8));
  CHECK(refused(AddressOf(&nowhere)));
  // The same VARIANT twice, and two that overlap.
  CHECK(refused(AddressOf(&good.variant)));
  CHECK(refused(AddressOf(&good.variant) + 8));
  CHECK(refused(AddressOf(&good.variant) - 16));

  CHECK(Write(AddressOf(&locked.variant), AddressOf(&good.variant)));
  CHECK(locked.variant.vt == (VT_ARRAY | VT_R8));
  CHECK(good.variant.vt == (VT_ARRAY | VT_I4));
}

TEST_CASE("what a VARIANT held goes, even where it holds the other VARIANT") {
  MacroVariant outer;
  // So large that its memory returns to the system when it is freed.
  outer.variant = VariantOf(VT_ARRAY | VT_VARIANT, SafeArrayCreateVector(VT_VARIANT, 1, 200'000));
  auto* element = static_cast<VARIANT*>(outer.variant.parray->pvData);
  CHECK(Write(AddressOf(&outer.variant), AddressOf(element)));
  CHECK(outer.variant.vt == (VT_ARRAY | VT_R8));

  int referred = 5;
  MacroVariant reference(VariantOf(VT_BYREF | VT_I4, &referred)), text(L"old");
  CHECK(Write(AddressOf(&reference.variant), AddressOf(&text.variant)));
  CHECK((reference.variant.vt == (VT_ARRAY | VT_R8) && referred == 5));

  // Without elements: empty.
  CHECK(WriteMacroArrays(std::array{MacroArray{AddressOf(&text.variant), {}}}));
  CHECK(text.variant.vt == VT_EMPTY);
}

TEST_CASE("the elements of each kind of array, counted from 1") {
  MacroVariant place;
  const std::vector<SingleValue> cells{{.tag = CellTag::kNumber, .number = 2.5},
                                       {.tag = CellTag::kText, .text = u"\u0416"},
                                       {.tag = CellTag::kBoolean, .code = 1},
                                       {.tag = CellTag::kBoolean, .code = 0},
                                       {.tag = CellTag::kError, .code = 42},
                                       {.tag = CellTag::kInteger, .code = -5},
                                       {.tag = CellTag::kInteger, .code = 70000},
                                       {.tag = CellTag::kBlank},
                                       {.tag = CellTag::kMissing}};
  const std::pair<MacroElements, const char*> cases[] = {
      {cells, "values 2.5;\u0416;TRUE;FALSE;error 2042;short -5;short 32767;;;"},
      {std::vector<std::u16string>{u"", u"b"}, "texts ;b;"},
      {std::vector<double>{1, -2.5}, "numbers 1;-2.5;"},
      {std::vector<SingleValue>(), "values "},
      {std::vector<std::u16string>(), "texts "},
      {std::vector<double>(), "numbers "},
      {std::vector<std::int32_t>(), "integers "}};
  for (const auto& [elements, held] : cases) {
    REQUIRE(WriteMacroArrays(std::array{MacroArray{AddressOf(&place.variant), elements}}));
    CHECK(Held(place.variant) == held);
  }
}

}  // namespace zavrel::tests
