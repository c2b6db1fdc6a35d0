#include "bindings/companion_library.h"

#include <doctest/doctest.h>

#include <optional>
#include <string>
#include <vector>

#include "bindings/binding.h"
#include "platform/message_box.h"

using namespace zavrel;

TEST_CASE("a companion library is looked for once") {
  int looked = 0;
  CompanionLibrary library(u"x", [&](const std::filesystem::path&) {
    ++looked;
    return std::optional<Module>();
  });
  CHECK(looked == 0);
  CHECK_FALSE(library.IsPresent());
  CHECK(library.FindExport("Anything") == nullptr);
  CHECK(looked == 1);
}

namespace {

// Any library of the system will do.
#ifdef _WIN32
constexpr const char* kFunction = "Sleep";
LoadedModule SystemLibrary() { return LoadedModule::ByName(u"kernel32").value(); }
#else
constexpr const char* kFunction = "cos";
LoadedModule SystemLibrary() { return LoadedModule::HostExecutable(); }
#endif

std::optional<Module> LoadSystemLibrary(const std::filesystem::path&) {
  return Module::Load(PathOfModuleContaining(SystemLibrary().FindExport(kFunction)));
}

std::optional<Module> LoadNothing(const std::filesystem::path&) { return std::nullopt; }

}  // namespace

TEST_CASE("a companion library that was released counts as present and gives nothing more") {
  const ExportAddress function = SystemLibrary().FindExport(kFunction);
  REQUIRE(function != nullptr);
  int looked = 0;
  CompanionLibrary library(u"x", [&](const std::filesystem::path& path) {
    ++looked;
    return LoadSystemLibrary(path);
  });
  REQUIRE(library.IsPresent());
  CHECK(library.FindExport(kFunction) == function);
  CHECK(library.FindExport("NotThere") == nullptr);
  library.Release();
  CHECK(library.IsPresent());
  CHECK(library.FindExport(kFunction) == nullptr);
  library.Release();
  CHECK(looked == 1);
}

TEST_CASE("a table is bound whole or not at all, and the user told after that what is missing") {
  struct Functions {
    void (*there)();
    void (*other)();
  };
  static CompanionLibrary whole(u"whole", LoadSystemLibrary);
  static CompanionLibrary partial(u"partial", LoadSystemLibrary);
  static CompanionLibrary absent(u"absent", LoadNothing);
  BoundFunctions<Functions> sound(Told::kUserToo, [](Binding& binding, Functions& functions) {
    binding.From(whole).Bind(kFunction, functions.there).Bind(kFunction, functions.other);
  });
  BoundFunctions<Functions> unsound(Told::kUserToo, [](Binding& binding, Functions& functions) {
    binding.From(partial, {u"not loaded 1", u"no function 1"})
        .Bind("NotThere", functions.there)
        .Bind("NotThereEither", functions.there);
    binding.From(absent, {u"not loaded 2", u"no function 2"}).Bind(kFunction, functions.other);
  });
  BoundFunctions<Functions> silent(Told::kLogAlone, [](Binding& binding, Functions& functions) {
    binding.From(absent).Bind(kFunction, functions.there);
  });

  std::vector<std::u16string> told;
  SetMessageBoxHandler([&](const std::u16string& title, const std::u16string& text) {
    CHECK(unsound.Get() == nullptr);  // a calculation while the box is open
    told.push_back(title + u": " + text);
  });
  const ExportAddress function = SystemLibrary().FindExport(kFunction);
  REQUIRE(sound.Get() != nullptr);
  CHECK(reinterpret_cast<ExportAddress>(sound.Get()->there) == function);
  CHECK(reinterpret_cast<ExportAddress>(sound.Get()->other) == function);
  for (int round = 0; round < 2; ++round) {
    CHECK(silent.Get() == nullptr);
    CHECK(unsound.Get() == nullptr);
  }
  SetMessageBoxHandler({});
  CHECK(told == std::vector<std::u16string>{
                    u"no function 1: The function NotThere could not be found in partial",
                    u"not loaded 2: Could not load absent."});
  CHECK(whole.FindExport(kFunction) == function);
  CHECK(partial.FindExport(kFunction) == nullptr);  // released
}
