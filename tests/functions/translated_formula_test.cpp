// What a macro learns when a formula cannot be translated.
#include "functions/translated_formula.h"

#include <doctest/doctest.h>

#include <fstream>

#include "contracts/message_ids.h"
#include "diagnostics/vek_exception.h"
#include "platform/temporary_folder.h"

namespace zavrel::tests {
namespace {

struct Thrown {
  std::u16string class_name;
  std::int32_t message = 0;
  MessageArguments arguments;
};

Thrown FailureOf(std::u16string_view formula, std::u16string_view from, std::int32_t style,
                 const std::filesystem::path& folder = {}) {
  try {
    TranslatedFormula("place", formula, from, u"de", style, folder);
  } catch (const VekException& failure) {
    return {failure.class_name(), failure.message_id(), failure.arguments()};
  }
  return {};
}

void CheckPosition(std::u16string_view formula, std::int32_t message, std::int64_t position) {
  const Thrown thrown = FailureOf(formula, u"en", kStyleA1);
  CHECK(thrown.class_name == u"VekParameterError");
  CHECK(thrown.message == message);
  CHECK(thrown.arguments == MessageArguments{position});
}

}  // namespace

TEST_CASE("formulas for macros") {
  CHECK(TranslatedFormula("", u"=SUM(A1,.5)", u"en", u"DE", kStyleA1, {}) == u"=SUMME(A1;,5)");
  CHECK(TranslatedFormula("", u"=SUM(R[1]C,.5)", u"en", u"de", kStyleR1C1, {}) ==
        u"=SUMME(Z(1)S;,5)");
}

TEST_CASE("a failure names the character from 1") {
  CheckPosition(u"=1~2", messages::kMessageFormulaUnreadable, 3);
  CheckPosition(u"=\"a", messages::kMessageFormulaUnclosed, 2);
  CheckPosition(u"=(1", messages::kMessageFormulaUnpaired, 2);
  CheckPosition(std::u16string(8193, u'1'), messages::kMessageFormulaTooLong, 8193);
}

TEST_CASE("a failure names the language or its table") {
  CHECK(FailureOf(u"1", u"?", kStyleA1).message == messages::kMessageLanguageUnknown);
  CHECK(FailureOf(u"1", u"en", 2).message == messages::kMessageParameterError);
  const auto folder = TemporaryFolder();
  const auto file = folder / "ZavrelFormulas.x-translation.txt";
  CHECK(FailureOf(u"1", u"x-translation", kStyleA1, folder).message ==
        messages::kMessageErrorReadingFile);
  std::ofstream(file) << "# a table\nSUM\n";
  const Thrown damaged = FailureOf(u"1", u"x-translation", kStyleA1, folder);
  std::filesystem::remove(file);
  CHECK(damaged.class_name == u"VekErrorReadingFile");
  CHECK(damaged.message == messages::kMessageLanguageTable);
  CHECK(damaged.arguments.at(1) == MessageArgument{std::int64_t{2}});
}

}  // namespace zavrel::tests
