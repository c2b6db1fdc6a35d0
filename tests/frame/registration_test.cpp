#include "frame/registration.h"

#include <doctest/doctest.h>

#include <set>
#include <string>

#include "excel/wide_text.h"
#include "support/fake_excel.h"

namespace zavrel::tests {
namespace {

constexpr std::uint32_t kApplication5 = 1u << 5;
constexpr std::uint32_t kApplication7 = 1u << 7;

RegistrationSources Sources() {
  return {.library_path = u"C:\\Add-ins\\ZavrelFuncs8_x64.xll",
          .message = [](std::uint32_t id) { return u"text " + Utf16FromUtf8(std::to_string(id)); },
          .help_file =
              [](unsigned application) {
                return application == 5 ? std::u16string(u"C:\\help.chm") : std::u16string();
              }};
}

}  // namespace

TEST_CASE("the tables are sound") {
  std::set<std::string> exports;
  std::set<std::string> visible;
  for (const auto table : {MainTable(), ExtensionTable()}) {
    for (const RegistrationRow& row : table) {
      CAPTURE(row.export_name);
      CHECK(exports.insert(row.export_name).second);
      CHECK(visible.insert(row.visible_name).second);
      CHECK(row.category < 12);
      // A help for every argument at most, and none behind the end of the list.
      const std::string types = row.type_text;
      bool ended = false;
      std::size_t helps = 0;
      for (const TextReference help : row.argument_helps) {
        if (ended) CHECK(help.is_null());
        ended = ended || help.is_null() || help.is_repeat_marker();
        if (!ended) ++helps;
      }
      if (types != "J") CHECK(helps < types.size());
      CHECK((types.size() == 31 || types.find("RRRRR") == std::string::npos));
    }
  }
  CHECK(WideTypeText("PRPC%C") == u"QUQC%C");
  CHECK(WideTypeText("B!") == u"B!");
  CHECK(WideTypeText("PR$") == u"QU");
}

TEST_CASE("the mask decides which rows are registered") {
  FakeExcel excel;
  Registration main(MainTable());
  Registration extension(ExtensionTable());
  const RegistrationSources sources = Sources();

  main.Register(0, sources);
  extension.Register(0, sources);
  CHECK(excel.functions().size() == 1);
  CHECK(excel.Has(u"ZavrelFuncsVersion"));

  main.Register(kApplication7, sources);
  extension.Register(kApplication7, sources);
  CHECK(excel.functions().size() == 91);

  main.Register(kApplication5, sources);
  extension.Register(kApplication5, sources);
  CHECK(excel.functions().size() == 91 + 19);
  CHECK(main.ids().size() == 91);

  extension.Unregister();
  main.Unregister();
  main.Unregister();
  CHECK(excel.functions().empty());
  CHECK(excel.faults.empty());
}

TEST_CASE("a row is registered with the arguments that Excel expects") {
  FakeExcel excel;
  Registration main(MainTable());
  main.Register(kApplication5, Sources());

  const Registered& mean = excel.functions().at(u"ZavrelMean");
  REQUIRE(mean.texts.size() == 30);
  CHECK(mean.texts[0] == u"C:\\Add-ins\\ZavrelFuncs8_x64.xll");
  CHECK(mean.texts[2] == u"Q" + std::u16string(30, u'U'));
  CHECK(mean.texts[3] == u"ZavMean");
  CHECK(mean.texts[4] == u"text 1113");
  CHECK(mean.macro_type == 1);
  CHECK(mean.texts[6] == u"text 407");
  CHECK((mean.types[7] == xltypeStr && mean.texts[7].empty()));
  CHECK(mean.texts[8] == u"C:\\help.chm!198");
  CHECK(mean.texts[9] == u"text 1114");
  for (std::size_t i = 10; i < 30; ++i) CHECK(mean.texts[i] == u"text 1115 ");

  SUBCASE("fewer helps leave the rest missing") {
    const Registered& destack = excel.functions().at(u"ZavrelDestack");
    REQUIRE(destack.texts.size() == 30);
    CHECK(destack.texts[14] == u"text 1072 ");
    CHECK((destack.types[15] == xltypeMissing && destack.types[29] == xltypeMissing));
  }
  SUBCASE("no helps at all: ten arguments, and no topic") {
    const Registered& rand = excel.functions().at(u"ZavrelRand");
    CHECK(rand.texts.size() == 10);
    CHECK(rand.texts[2] == u"B!");
    CHECK((rand.types[4] == xltypeStr && rand.texts[4].empty()));
    const Registered& hidden = excel.functions().at(u"ZavrelMultiRange");
    CHECK(hidden.types[8] == xltypeMissing);
    CHECK(hidden.macro_type == 0);
  }
  SUBCASE("the marker repeats the help before it, wherever it stands") {
    const Registered& matrix = excel.functions().at(u"ZavrelCovarianceMatrix");
    CHECK(matrix.texts[2] == u"QQQQ" + std::u16string(27, u'U'));
    CHECK(matrix.texts[12] == u"text 1553 ");
    CHECK((matrix.texts[13] == u"text 1554 " && matrix.texts[29] == u"text 1554 "));
  }
  SUBCASE("twenty empty helps are texts, not missing values") {
    const Registered& version = excel.functions().at(u"ZavrelFuncsVersion");
    REQUIRE(version.texts.size() == 30);
    CHECK((version.types[29] == xltypeStr && version.texts[29].empty()));
  }
  CHECK(excel.functions().at(u"ZavrelNormal").texts[6] == u"text 408");
}

TEST_CASE("a help topic needs a file and a number; the owner follows the category") {
  CHECK(HelpTopic(u"h.chm", 12) == u"h.chm!12");
  CHECK(HelpTopic(u"h.chm", -1).empty());
  CHECK(HelpTopic(u"", 12).empty());
  CHECK(HelpOwner(3, 1u << 1) == 1);
  CHECK(HelpOwner(3, 1u << 2) == 0);
  CHECK(HelpOwner(4, 0) == 3);
  CHECK(HelpOwner(8, 0) == 5);
  CHECK(HelpOwner(11, ~0u) == 0);
}

TEST_CASE("long texts are cut, and never through a surrogate pair") {
  CHECK(CutToUnits(std::u16string(255, u'x'), kRegistrationTextLimit).size() == 255);
  CHECK(CutToUnits(std::u16string(256, u'x'), kRegistrationTextLimit).size() == 255);
  const std::u16string pair = std::u16string(254, u'x') + u"\U0001F600";
  CHECK(CutToUnits(pair, kRegistrationTextLimit).size() == 254);

  FakeExcel excel;
  Registration main(MainTable());
  RegistrationSources sources = Sources();
  sources.message = [&](std::uint32_t) { return pair; };
  main.Register(kApplication5, sources);
  CHECK(excel.faults.empty());
  CHECK(excel.functions().at(u"ZavrelMean").texts[10] == std::u16string(254, u'x') + u' ');
}

TEST_CASE("a refused row does not stop the others, and is never taken back") {
  FakeExcel excel;
  excel.refused_export = u"ZavrelMean";
  Registration main(MainTable());
  main.Register(kApplication5, Sources());
  CHECK(excel.functions().size() == 90);
  CHECK(main.ids().size() == 90);
  excel.refused_export.clear();
  main.Register(kApplication5, Sources());
  CHECK(excel.functions().size() == 91);
  CHECK(excel.faults.empty());
}

TEST_CASE("without a host nothing is registered and nothing breaks") {
  Registration main(MainTable());
  main.Register(kApplication5, Sources());
  CHECK(main.ids().empty());
  main.Unregister();
}

}  // namespace zavrel::tests
