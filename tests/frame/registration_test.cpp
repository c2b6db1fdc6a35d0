#include "frame/registration.h"

#include <doctest/doctest.h>

#include <string>

#include "excel/wide_text.h"
#include "frame/log_of.h"
#include "frame/sample_add_in.h"
#include "support/fake_excel.h"

namespace zavrel::tests {
namespace {

constexpr std::uint32_t kApplication5 = 1u << 5;

RegistrationSources Sources() {
  return {.library_path = u"C:\\Add-ins\\ZavrelFuncs8_x64.xll",
          .message = [](std::uint32_t id) { return u"text " + Utf16FromUtf8(std::to_string(id)); },
          .help_file =
              [](unsigned application) {
                return application == 5 ? std::u16string(u"C:\\help.chm") : std::u16string();
              }};
}

}  // namespace

TEST_CASE("a row is registered with the arguments that Excel expects") {
  FakeExcel excel;
  Registration main({SampleFunctions()});
  main.Register(kApplication5, Sources());

  const Registered& mean = excel.functions().at(u"Mean");
  REQUIRE(mean.texts.size() == 30);
  CHECK(mean.texts[0] == u"C:\\Add-ins\\ZavrelFuncs8_x64.xll");
  CHECK(mean.texts[2] == u"QUUUU");
  CHECK(mean.texts[3] == u"ZavMean");
  CHECK(mean.texts[4] == u"text 1113");
  CHECK(mean.macro_type == 1);
  CHECK(mean.texts[6] == u"text 407");
  CHECK((mean.types[7] == xltypeStr && mean.texts[7].empty()));
  CHECK(mean.texts[8] == u"C:\\help.chm!198");
  CHECK(mean.texts[9] == u"text 1114");
  for (std::size_t i = 10; i < 29; ++i) CHECK(mean.texts[i] == u"text 1115");
  CHECK(mean.texts[29] == u"text 1115  ");

  SUBCASE("fewer helps leave the rest missing") {
    const Registered& pick = excel.functions().at(u"Pick");
    REQUIRE(pick.texts.size() == 30);
    CHECK(pick.texts[2] == u"CUQC%");
    CHECK(pick.texts[10] == u"text 1068");
    CHECK(pick.texts[11] == u"of all  ");
    CHECK((pick.types[12] == xltypeMissing && pick.types[29] == xltypeMissing));
  }
  SUBCASE("no helps at all: ten arguments, and no topic") {
    const Registered& rand = excel.functions().at(u"Rand");
    CHECK(rand.texts.size() == 10);
    CHECK(rand.texts[2] == u"B!");
    CHECK(rand.texts[9] == u"text 1239");
    CHECK((rand.types[4] == xltypeStr && rand.texts[4].empty()));
    const Registered& hidden = excel.functions().at(u"Multi");
    CHECK(hidden.types[8] == xltypeMissing);
    CHECK(hidden.macro_type == 0);
  }
  SUBCASE("the marker repeats the help before it, wherever it stands") {
    const Registered& matrix = excel.functions().at(u"Matrix");
    CHECK(matrix.texts[2] == u"QQU");  // thread-safe functions lose their mark
    CHECK(matrix.texts[10] == u"text 1551");
    CHECK((matrix.texts[11] == u"text 1552" && matrix.texts[29] == u"text 1552  "));
  }
  SUBCASE("an empty help is a text, not a missing value") {
    const Registered& version = excel.functions().at(u"Version");
    REQUIRE(version.texts.size() == 30);
    CHECK((version.types[10] == xltypeStr && version.texts[10].empty()));
  }
  CHECK(excel.functions().at(u"Normal").texts[6] == u"text 408");
}

TEST_CASE("a help topic needs a file and a number; the owner follows the category") {
  CHECK(HelpTopic(u"h.chm", 12) == u"h.chm!12");
  CHECK(HelpTopic(u"h.chm", -1).empty());
  CHECK(HelpTopic(u"", 12).empty());
  CHECK(HelpOwner(WizardCategory::kMultivariateAnalysis, 1u << 1) == 1);
  CHECK(HelpOwner(WizardCategory::kMultivariateAnalysis, 1u << 2) == 0);
  CHECK(HelpOwner(WizardCategory::kTimeSeries, 0) == 3);
  CHECK(HelpOwner(WizardCategory::kDistributionFunctions, 0) == 5);
  CHECK(HelpOwner(WizardCategory::kCharts, ~0u) == 0);
}

TEST_CASE("long texts are cut, and never through a surrogate pair") {
  CHECK(CutToUnits(std::u16string(255, u'x'), kRegistrationTextLimit).size() == 255);
  CHECK(CutToUnits(std::u16string(256, u'x'), kRegistrationTextLimit).size() == 255);
  const std::u16string pair = std::u16string(254, u'x') + u"\U0001F600";
  CHECK(CutToUnits(pair, kRegistrationTextLimit).size() == 254);

  FakeExcel excel;
  Registration main({SampleFunctions()});
  RegistrationSources sources = Sources();
  sources.message = [&](std::uint32_t) { return pair; };
  main.Register(kApplication5, sources);
  CHECK(excel.faults.empty());
  CHECK(excel.functions().at(u"Mean").texts[28] == std::u16string(254, u'x'));
  CHECK(excel.functions().at(u"Mean").texts[29] == std::u16string(253, u'x') + u"  ");
}

TEST_CASE("a refused row gets a line in the log, does not stop the others, and is not taken back") {
  FakeExcel excel;
  excel.refused_export = u"Mean";
  Registration main({SampleFunctions()});
  const std::string log = LogOf([&] { main.Register(kApplication5, Sources()); });
  CHECK(log.ends_with("\nRegistration refused: ZavMean, return code 32, value #VALUE!\n"));
  CHECK(excel.functions().size() == 6);
  CHECK(main.size() == 6);
  excel.refused_export.clear();
  main.Register(kApplication5, Sources());
  CHECK(excel.functions().size() == 7);
  CHECK(excel.faults.empty());
}

TEST_CASE("a registration that succeeds without an id is a refusal too") {
  FakeExcel excel;
  excel.On(xlfRegister, [](FakeExcel::Arguments arguments, XLOPER12& result) {
    result = XXloper::Boolean(TextIn(*arguments[1]) != u"Mean").record();
    if (TextIn(*arguments[1]) == u"Rand") result = XXloper::ErrorByCode(xlerrValue).record();
    return xlretSuccess;
  });
  Registration main({SampleFunctions()});
  const std::string log = LogOf([&] { main.Register(kApplication5, Sources()); });
  CHECK(main.size() == 0);
  CHECK(log.find("ZavMean, return code 0, value XLOPER of type 4: FALSE\n") != log.npos);
  CHECK(log.find("ZavRand, return code 0, value #VALUE!\n") != log.npos);
}

TEST_CASE("names go with the functions that do not come back, and only those") {
  FakeExcel excel;
  Registration main({SampleFunctions()});
  main.Register(kApplication5, Sources());
  CHECK(excel.names().size() == 7);
  main.Register(kApplication5, Sources());
  CHECK(excel.CountOf(xlfSetName) == 0);
  main.Register(0, Sources());
  CHECK(excel.names() == std::set<std::u16string>{u"ZavVersion"});
  main.Unregister();
  main.DeleteUnusedNames();
  main.DeleteUnusedNames();
  CHECK(excel.CountOf(xlfSetName) == 7);
  CHECK(excel.names().empty());
  CHECK(excel.functions().empty());
}

TEST_CASE("without a host nothing is registered and nothing breaks") {
  Registration main({SampleFunctions()});
  main.Register(kApplication5, Sources());
  CHECK(main.size() == 0);
  main.Unregister();
}

}  // namespace zavrel::tests
