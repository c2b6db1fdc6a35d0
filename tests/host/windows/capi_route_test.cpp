// Both routes to the callback.
#include <windows.h>

#include <doctest/doctest.h>

#include "host/planted_add_in.h"

namespace zavhost::tests {

TEST_CASE("the callback is found in the program, or through XLCall32 when that is loaded") {
  {
    auto engine = PlantedEngine();
    CHECK(GetModuleHandleW(L"XLCall32") == nullptr);
    CHECK(Shown(*engine, "GoodSum(A1:A5)") == "15");
  }
  EngineOptions options;
  options.call_library = PLANTED_XLCALL32;
  auto engine = PlantedEngine(SmallWorkbook(), options);
  CHECK(Shown(*engine, "GoodSum(A1:A5)") == "15");
  const HMODULE library = GetModuleHandleW(L"XLCall32");
  REQUIRE(library != nullptr);
  auto* times_asked = reinterpret_cast<void*>(GetProcAddress(library, "TimesAsked"));
  REQUIRE(times_asked != nullptr);
  CHECK(reinterpret_cast<int (*)()>(times_asked)() == 1);
  engine->CloseAddIns();
  CHECK(engine->judge().count() == 0);
  CHECK(GetModuleHandleW(L"XLCall32") == nullptr);
}

}  // namespace zavhost::tests
