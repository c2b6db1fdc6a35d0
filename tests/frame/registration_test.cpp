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
  const auto shown = [&](const char16_t* name) {
    const Registered& function = excel.functions().at(name);
    CHECK(function.texts[0] == u"C:\\Add-ins\\ZavrelFuncs8_x64.xll");
    std::string all;
    for (std::size_t i = 1; i < function.texts.size(); ++i)
      all += (function.types[i] == xltypeStr ? Utf8FromUtf16(function.texts[i])
              : function.types[i] == xltypeMissing
                  ? "-"
                  : std::to_string(static_cast<int>(function.macro_type))) +
             '|';
    return all;
  };
  const auto times = [](int count, const std::string& text) {
    std::string all;
    for (int i = 0; i < count; ++i) all += text;
    return all;
  };
  CHECK(shown(u"Mean") == "Mean|QUUUU|ZavMean|text 1113|1|text 407||C:\\help.chm!198|text 1114|" +
                              times(19, "text 1115|") + "text 1115  |");
  // Fewer helps leave the rest missing; with none at all there are ten arguments.
  CHECK(shown(u"Pick") ==
        "Pick|CUQC%|ZavPick|text 1066|1|text 407||C:\\help.chm!189|text 1067|text 1068|of all  |" +
            times(18, "-|"));
  CHECK(shown(u"Rand") == "Rand|B!|ZavRand||1|text 407||C:\\help.chm!307|text 1239|");
  CHECK(shown(u"Multi") == "Multi|QIUQ|ZavMulti||0|text 407||-||");
  // The last help is repeated from where the mark stands. Thread-safe functions lose their mark.
  CHECK(shown(u"Matrix") == "Matrix|QQU|ZavMatrix|text 1550|1|text 407||-|text 1555|text 1551|" +
                                times(18, "text 1552|") + "text 1552  |");
  CHECK(shown(u"Version") == "Version|J|ZavVersion||0|text 407||-|||" + times(19, "-|"));
  CHECK(shown(u"Normal") ==
        "Normal|QQ|ZavNormal|text 1203|1|text 408||C:\\help.chm!305|text 1204|");
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

  const FakeExcel excel;
  Registration main({SampleFunctions()});
  RegistrationSources sources = Sources();
  sources.message = [&](std::uint32_t) -> const std::u16string& { return pair; };
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
  const FakeExcel excel;
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
