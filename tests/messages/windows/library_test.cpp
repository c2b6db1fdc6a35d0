// The finished resource library, read as the add-in reads it.

#include <doctest/doctest.h>
#include <windows.h>

#include <cstring>
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

/// An image mapped for its resources has its headers at its handle less the two marking bits.
const char* ImageBase(HMODULE module) {
  return reinterpret_cast<const char*>(reinterpret_cast<ULONG_PTR>(module) & ~ULONG_PTR{3});
}

template <typename Record>
Record ReadAt(HMODULE module, DWORD address) {
  Record record;
  std::memcpy(&record, ImageBase(module) + address, sizeof record);
  return record;
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

TEST_CASE("the library has neither code nor exports nor imports, and carries a version") {
  const Module library = Load();
  REQUIRE(library.get() != nullptr);
  const auto dos = ReadAt<IMAGE_DOS_HEADER>(library.get(), 0);
  const auto headers = ReadAt<IMAGE_NT_HEADERS64>(library.get(), static_cast<DWORD>(dos.e_lfanew));
  const IMAGE_OPTIONAL_HEADER64& image = headers.OptionalHeader;
  CHECK(image.SizeOfCode == 0);
  CHECK(image.AddressOfEntryPoint == 0);
  const DWORD exports = image.DataDirectory[IMAGE_DIRECTORY_ENTRY_EXPORT].VirtualAddress;
  if (exports != 0) {
    CHECK(ReadAt<IMAGE_EXPORT_DIRECTORY>(library.get(), exports).NumberOfFunctions == 0);
  }
  const DWORD imports = image.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT].VirtualAddress;
  if (imports != 0) {
    CHECK(ReadAt<IMAGE_IMPORT_DESCRIPTOR>(library.get(), imports).Name == 0);
  }
  CHECK(FindResourceW(library.get(), MAKEINTRESOURCEW(VS_VERSION_INFO), RT_VERSION) != nullptr);
}
