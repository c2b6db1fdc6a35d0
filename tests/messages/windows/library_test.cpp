// The finished resource library, read as the add-in reads it.

#include <doctest/doctest.h>
#include <windows.h>

#include <memory>

#include "messages/text_files.h"

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

/// The string with this id in exactly this language, empty if there is none.
std::u16string ReadString(HMODULE module, std::uint32_t language, std::uint32_t id) {
  const HRSRC block = FindResourceExW(module, RT_STRING, MAKEINTRESOURCEW(id / 16 + 1),
                                      MAKELANGID(language, SUBLANG_NEUTRAL));
  if (block == nullptr) return {};
  const auto* units = static_cast<const char16_t*>(LockResource(LoadResource(module, block)));
  for (std::uint32_t i = 0; i < id % 16; ++i) units += 1 + *units;
  return std::u16string(units + 1, *units);
}

}  // namespace

TEST_CASE("the library gives the texts of the files in each language, and nothing for other ids") {
  const Module library = Load();
  REQUIRE(library.get() != nullptr);
  for (const TextFile& file : TextFiles()) {
    CAPTURE(file.name);
    for (std::uint32_t id = 0; id < 3000; ++id) {
      CAPTURE(id);
      CHECK((ReadString(library.get(), file.language_id, id) == file.Text(id)));
    }
  }
}
