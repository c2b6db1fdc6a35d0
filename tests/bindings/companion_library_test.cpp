#include "bindings/companion_library.h"

#include <doctest/doctest.h>

#include <filesystem>
#include <optional>

using namespace zavrel;

TEST_CASE("a companion library is looked for once") {
  CHECK(CompanionLibraryPath(u"C:\\Add-ins", u"Extensions", u"Tests8_x64.DLL") ==
        u"C:\\Add-ins\\Extensions\\Tests8_x64.DLL");
  CHECK(CompanionLibraryPath(u"C:\\", u"", u"Q_x64.DLL") == u"C:\\Q_x64.DLL");
  int looked = 0;
  CompanionLibrary library(u"x", [&](const std::u16string&) {
    ++looked;
    return std::optional<Module>();
  });
  CHECK(looked == 0);
  CHECK_FALSE(library.IsPresent());
  CHECK(library.FindExport("Anything") == nullptr);
  CHECK(looked == 1);
}

TEST_CASE("a companion library that was released counts as present and gives nothing more") {
  // Any library of the system will do.
#ifdef _WIN32
  constexpr const char* kFunction = "Sleep";
  const LoadedModule holder = LoadedModule::ByName(u"kernel32").value();
#else
  constexpr const char* kFunction = "cos";
  const LoadedModule holder = LoadedModule::HostExecutable();
#endif
  const ExportAddress function = holder.FindExport(kFunction);
  REQUIRE(function != nullptr);
  const std::filesystem::path file = PathOfModuleContaining(function);
  int looked = 0;
  CompanionLibrary library(u"x", [&](const std::u16string&) {
    ++looked;
    return Module::Load(file);
  });
  REQUIRE(library.IsPresent());
  CHECK(library.FindExport(kFunction) == function);
  CHECK(library.FindExport("NotThere") == nullptr);
  library.Release();
  CHECK(library.IsPresent());
  CHECK(library.module() == nullptr);
  CHECK(library.FindExport(kFunction) == nullptr);
  library.Release();
  CHECK(looked == 1);
}
