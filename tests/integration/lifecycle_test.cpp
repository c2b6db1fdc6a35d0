// Opening, announcing, withdrawing and closing the real add-in in the host.
#include <doctest/doctest.h>

#include <algorithm>

#include "integration/running_add_in.h"

namespace zavrel::tests {
namespace {

#ifdef _WIN32
constexpr const char* kMajorVersion = "8";
#else
constexpr const char* kMajorVersion = "65535";  // a binary without a version resource says so
#endif

const zavhost::RegisteredFunction* Find(const zavhost::Engine& engine, std::u16string_view name) {
  const auto& functions = engine.functions();
  const auto found = std::find_if(functions.begin(), functions.end(),
                                  [&](const auto& f) { return f.name == name; });
  return found == functions.end() ? nullptr : &*found;
}

}  // namespace

TEST_CASE("what is registered follows the companions that announce themselves") {
  auto engine = OpenAddIn();
  CHECK(engine->functions().size() == 1);
  CHECK(Shown(*engine, u"ZavrelFuncsVersion()") == kMajorVersion);
  CHECK(Shown(*engine, u"ZavMean(1,2,3)") == "#NAME?");
  engine->Announce(7);
  CHECK(engine->functions().size() == 91);
  CHECK(Shown(*engine, u"zavmean(1,2,3)") == "2");
  engine->Announce(5);
  CHECK(engine->functions().size() == 91 + 19);
  engine->Withdraw(5);
  CHECK(engine->functions().size() == 91);
  engine->Withdraw(7);
  CHECK(engine->functions().size() == 1);
  CloseClean(*engine);
}

TEST_CASE("opening after closing works in one process, ten times") {
  auto engine = OpenAddIn();
  for (int round = 0; round < 10; ++round) {
    CAPTURE(round);
    engine->Announce(5);
    CHECK(Shown(*engine, u"ZavSum({1,2,3},4)") == "10");
    engine->CloseAddIn(false);
    CHECK(engine->functions().empty());
    engine->LoadAddIn(AddInFile());
    CHECK(engine->functions().size() == 1);
  }
  CloseClean(*engine);
}

TEST_CASE("after a close that the user cancelled, an announcement brings everything back") {
  auto engine = OpenAddIn();
  engine->Announce(5);
  engine->CloseAddIn(false);
  CHECK(Shown(*engine, u"ZavMean(1,2,3)") == "#NAME?");
  engine->Announce(5);
  CHECK(Shown(*engine, u"ZavMean(1,2,3)") == "2");
  engine->LoadAddIn(AddInFile());  // and an opening after all
  engine->Announce(5);
  CHECK(Shown(*engine, u"ZavMean(1,2,3)") == "2");
  CloseClean(*engine);
}

TEST_CASE("the wizard's texts come in the announced language") {
  auto english = OpenAddIn({}, 9);
  english->Announce(5);
  const zavhost::RegisteredFunction mean = *Find(*english, u"ZavMean");
  CHECK(mean.type_text == u"QUUUUUUUUUUUUUUUUUUUUUUUUUUUUUU");
  CloseClean(*english);

  auto german = OpenAddIn({}, 7);
  german->Announce(5);
  const zavhost::RegisteredFunction mittel = *Find(*german, u"ZavMean");
  CHECK(mittel.function_help != mean.function_help);
  CHECK(mittel.category != mean.category);
  CloseClean(*german);

  // A language without texts of its own shows English.
  auto finnish = OpenAddIn({}, 11);
  finnish->Announce(5);
  CHECK(Find(*finnish, u"ZavMean")->function_help == mean.function_help);
  CloseClean(*finnish);
}

}  // namespace zavrel::tests
