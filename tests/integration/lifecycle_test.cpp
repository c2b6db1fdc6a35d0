// Opening, announcing, withdrawing and closing the real add-in in the host.
#include <doctest/doctest.h>

#include <algorithm>

#include "integration/running_add_in.h"

namespace zavrel::tests {
namespace {

constexpr const char* kVersion = "ZavrelFuncsVersion() -> 8";

const zavhost::RegisteredFunction* Find(const zavhost::Engine& engine, std::u16string_view name) {
  const auto& functions = engine.functions();
  const auto found = std::find_if(functions.begin(), functions.end(),
                                  [&](const auto& f) { return f.name == name; });
  return found == functions.end() ? nullptr : &*found;
}

}  // namespace

TEST_CASE("every announce and withdraw registers afresh for the companions that are there") {
  auto engine = OpenAddIn();
  const auto count = [&] { return engine->functions().size(); };
  CHECK(count() == 1);
  CheckFormulas(*engine, std::string("ZavMean(1,2,3) -> #NAME? | ") + kVersion);
  const std::size_t main = FunctionsDeclared("main");
  engine->Announce(7);
  CHECK(count() == main);
  CheckFormulas(*engine, "ZavMean(1,2,3) -> 2 | zavmean(1,2,3) -> 2");
  engine->Announce(5);
  const std::size_t with_application_5 = count();  // more beside the library of the extension
  CHECK(
      (with_application_5 == main || with_application_5 == main + FunctionsDeclared("extension")));
  engine->Announce(5);
  CHECK(count() == with_application_5);
  for (const std::uint16_t application : {std::uint16_t{5}, std::uint16_t{3}}) {
    engine->Withdraw(application);
    CHECK(count() == main);
  }
  engine->Withdraw(7);
  CHECK(count() == 1);
  CheckFormulas(*engine, "ZavMean(1,2,3) -> #NAME?");
  CloseClean(*engine);
}

TEST_CASE("after a close that the user cancelled, an announcement brings everything back") {
  auto engine = ServingAddIn();
  engine->CloseAddIns(false);
  CheckFormulas(*engine, "ZavMean(1,2,3) -> #NAME?");
  engine->Announce(5);
  CheckFormulas(*engine, "ZavMean(1,2,3) -> 2");
  engine->LoadAddIn(AddInFile());  // and an opening after all
  engine->Announce(5);
  CheckFormulas(*engine, "ZavMean(1,2,3) -> 2");
  CloseClean(*engine);
}

TEST_CASE("the wizard's texts come in the announced language") {
  const auto mean_in = [](std::uint32_t language) {
    zavhost::EngineOptions options;
    options.language = language;
    auto engine = ServingAddIn({}, std::move(options));
    const zavhost::RegisteredFunction mean = *Find(*engine, u"ZavMean");
    CHECK((mean.macro_type == 1 && Find(*engine, u"ZavMeanI")->macro_type == 0));
    CHECK(Find(*engine, u"ZavLog")->argument_helps.empty());
    CloseClean(*engine);
    return mean;
  };
  const zavhost::RegisteredFunction mean = mean_in(9), mittel = mean_in(7);
  CHECK(mean.argument_helps.size() == 20);
  // The function wizard shortens the last one by up to two characters.
  CHECK(mean.argument_helps[19] == mean.argument_helps[1] + u"  ");
  CHECK(mean.type_text == u"Q" + std::u16string(30, u'U'));
  CHECK(mittel.function_help != mean.function_help);
  CHECK(mittel.category != mean.category);
  // A language without texts of its own, Finnish, shows English.
  CHECK(mean_in(11).function_help == mean.function_help);
}

}  // namespace zavrel::tests
