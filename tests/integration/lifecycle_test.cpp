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

TEST_CASE("only the version is there until a companion announces itself") {
  auto engine = OpenAddIn();
  CHECK(engine->functions().size() == 1);
  CHECK(Shown(*engine, u"ZavrelFuncsVersion()") == kMajorVersion);
  CHECK(Shown(*engine, u"ZavMean(1,2,3)") == "#NAME?");
  engine->Announce(5);
  CHECK(Shown(*engine, u"ZavMean(1,2,3)") == "2");
  CHECK(Shown(*engine, u"zavmean(1,2,3)") == "2");
  CloseClean(*engine);
}

TEST_CASE("every announce and withdraw registers afresh for the companions that are there") {
  auto engine = OpenAddIn();
  engine->Announce(7);
  CHECK(engine->functions().size() == 91);
  engine->Announce(5);
  const std::size_t with_application_5 = engine->functions().size();
  CHECK((with_application_5 == 91 ||
         with_application_5 == 91 + 19));  // 19 more beside the test library
  engine->Announce(5);
  CHECK(engine->functions().size() == with_application_5);
  engine->Withdraw(5);
  CHECK(engine->functions().size() == 91);
  engine->Withdraw(3);
  CHECK(engine->functions().size() == 91);
  engine->Withdraw(7);
  CHECK(engine->functions().size() == 1);
  CHECK(Shown(*engine, u"ZavMean(1,2,3)") == "#NAME?");
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
  CHECK(mean.argument_helps.size() == 20);
  CHECK(mean.argument_helps[1] == mean.argument_helps[19]);
  CHECK(mean.macro_type == 1);
  CHECK(mean.type_text == u"QUUUUUUUUUUUUUUUUUUUUUUUUUUUUUU");
  CHECK(Find(*english, u"ZavMeanI")->macro_type == 0);
  CHECK(Find(*english, u"ZavLog")->argument_helps.empty());
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
