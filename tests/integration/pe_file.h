#pragma once
// Reads what a Windows binary says of itself: exports, imported libraries, link flags.

#include <windows.h>

#include <doctest/doctest.h>

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <set>
#include <string>

namespace zavrel::tests {

/// A 64-bit binary as the loader lays it out, without its code being run.
class PeFile {
 public:
  explicit PeFile(const std::filesystem::path& file)
      : module_(LoadLibraryExW(file.c_str(), nullptr, DONT_RESOLVE_DLL_REFERENCES)) {
    REQUIRE_MESSAGE(module_ != nullptr, file.string());
  }
  ~PeFile() { FreeLibrary(module_); }
  PeFile(const PeFile&) = delete;
  PeFile& operator=(const PeFile&) = delete;

  std::set<std::string> exports() const {
    std::set<std::string> names;
    if (const auto* directory = Directory<IMAGE_EXPORT_DIRECTORY>(IMAGE_DIRECTORY_ENTRY_EXPORT)) {
      for (DWORD i = 0; i < directory->NumberOfNames; ++i)
        names.insert(At<char>(At<DWORD>(directory->AddressOfNames)[i]));
    }
    return names;
  }
  /// In lower case.
  std::set<std::string> imported_libraries() const {
    std::set<std::string> names;
    const auto* entry = Directory<IMAGE_IMPORT_DESCRIPTOR>(IMAGE_DIRECTORY_ENTRY_IMPORT);
    for (; entry != nullptr && entry->Name != 0; ++entry) {
      std::string name = At<char>(entry->Name);
      std::transform(name.begin(), name.end(), name.begin(),
                     [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
      names.insert(name);
    }
    return names;
  }
  const IMAGE_OPTIONAL_HEADER64& header() const {
    const auto start = static_cast<DWORD>(At<IMAGE_DOS_HEADER>(0)->e_lfanew);
    return At<IMAGE_NT_HEADERS64>(start)->OptionalHeader;
  }
  std::uint16_t dll_characteristics() const { return header().DllCharacteristics; }

 private:
  template <class T>
  const T* At(DWORD address) const {
    return reinterpret_cast<const T*>(reinterpret_cast<const char*>(module_) + address);
  }
  template <class T>
  const T* Directory(int which) const {
    const DWORD address = header().DataDirectory[which].VirtualAddress;
    return address == 0 ? nullptr : At<T>(address);
  }

  HMODULE module_;
};

}  // namespace zavrel::tests
