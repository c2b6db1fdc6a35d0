// The finished resource library.

#include <doctest/doctest.h>
#include <windows.h>

#include <memory>

#include "integration/pe_file.h"

namespace {

constexpr wchar_t kLibrary[] = L"" ZAVREL_MESSAGE_LIBRARY;

struct ModuleDeleter {
  using pointer = HMODULE;
  void operator()(HMODULE module) const { FreeLibrary(module); }
};
using Module = std::unique_ptr<HMODULE, ModuleDeleter>;

Module Load() {
  return Module(
      LoadLibraryExW(kLibrary, nullptr, LOAD_LIBRARY_AS_DATAFILE | LOAD_LIBRARY_AS_IMAGE_RESOURCE));
}

}  // namespace

TEST_CASE("the library has neither code nor exports nor imports, and carries a version") {
  const Module library = Load();
  REQUIRE(library.get() != nullptr);
  CHECK(FindResourceW(library.get(), MAKEINTRESOURCEW(VS_VERSION_INFO), RT_VERSION) != nullptr);
  const zavrel::tests::PeFile image(kLibrary);
  CHECK(image.header().SizeOfCode == 0);
  CHECK(image.header().AddressOfEntryPoint == 0);
  CHECK(image.exports().empty());
  CHECK(image.imported_libraries().empty());
}
