#include "excel/parameter.h"

#include <doctest/doctest.h>

#include <limits>

#include "excel/scripted_excel.h"
#include "excel/value_text.h"

using namespace zavrel;
using namespace zavrel::tests;

namespace {

bool Passes(XXloper input, std::uint32_t types, NumericRange range = {}) {
  Parameter parameters[] = {
      {.input = std::move(input), .acceptable_types = static_cast<std::uint16_t>(types)}};
  parameters[0].range = range;
  return CheckParameters(parameters);
}

XXloper ArrayWithError(std::int32_t code) {
  XXloperArray array(2, 2);
  for (std::size_t i = 0; i < 3; ++i) array.SetNumber(i, 1);
  array.SetError(3, code);
  return std::move(array).Finish();
}

}  // namespace

TEST_CASE("A parameter passes by type and, without the error bit, without errors") {
  CHECK(Passes(XXloper::Text(u"x"), xltypeNum | xltypeStr));
  CHECK_FALSE(Passes(XXloper::Text(u"x"), xltypeNum));
  CHECK_FALSE(Passes(XXloper::Missing(), xltypeNum));
  CHECK(Passes(XXloper::Missing(), xltypeNum | xltypeMissing));
  CHECK_FALSE(Passes(XXloper::Error(ExcelError::kNA), xltypeNum));
  CHECK(Passes(XXloper::Error(ExcelError::kNA), xltypeNum | xltypeErr));
  CHECK_FALSE(Passes(ArrayWithError(xlerrNull), xltypeMulti));
  CHECK(Passes(ArrayWithError(xlerrNull), xltypeMulti | xltypeErr));
  XLOPER12 big_data{};
  big_data.xltype = xltypeBigData;
  CHECK_FALSE(Passes(XXloper::FromArgument(&big_data), 0xFFFF));
}

TEST_CASE("A number lies within its range, ends counted as they are given") {
  const NumericRange range{.lower = Bound{0, false}, .upper = Bound{1, true}};
  const auto in_range = [&](double number) {
    return Passes(XXloper::Number(number), xltypeNum, range);
  };
  CHECK_FALSE(in_range(0));
  CHECK(in_range(std::numeric_limits<double>::denorm_min()));
  CHECK(in_range(1));
  CHECK_FALSE(in_range(1.0000000000000002));
  CHECK(Passes(XXloper::Number(0), xltypeNum, {.lower = Bound{0}}));
  CHECK_FALSE(Passes(XXloper::Number(1), xltypeNum, {.upper = Bound{1, false}}));
  CHECK(Passes(XXloper::Number(-1e300), xltypeNum, {.upper = Bound{1}}));
  CHECK_FALSE(Passes(XXloper::Integer(2), xltypeInt, range));
  for (const double number :
       {std::numeric_limits<double>::infinity(), -std::numeric_limits<double>::infinity(),
        std::numeric_limits<double>::quiet_NaN()})
    CHECK_FALSE(Passes(XXloper::Number(number), xltypeNum));
}

TEST_CASE("Every output is its input, though an earlier parameter fails") {
  Parameter parameters[] = {{.input = XXloper::Number(1), .acceptable_types = xltypeStr},
                            {.input = XXloper::Number(2), .acceptable_types = xltypeNum}};
  CHECK_FALSE(CheckParameters(parameters));
  CHECK(parameters[1].output.record().val.num == 2);
  CHECK(CheckParameters(std::span(parameters).subspan(1)));
  CHECK(CheckParameters({}));
}

TEST_CASE("A parameter and its value describe themselves in one line") {
  Parameter parameter{.input = XXloper::Number(0.5), .acceptable_types = xltypeNum | xltypeMulti};
  parameter.range = {.lower = Bound{0}, .upper = Bound{1, false}};
  CHECK(parameter.Text() ==
        "{ inParam=XLOPER of type 1: 0.5, acceptableTypes=0041, range=[0, 1), outParam=? }");
  parameter.range = {.upper = Bound{2}};
  CHECK(parameter.range.Text() == "(-inf, 2]");

  XXloperArray array(2, 2);
  array.SetText(0, u"a\n\u00FC");
  array.SetBoolean(1, true);
  array.SetEmpty(2);
  CHECK(ValueText(std::move(array).Finish().record()) ==
        "XLOPER array (2 x 2) = {\"a \u00FC\", TRUE; , #N/A}");
  CHECK(ValueText(XXloper::Missing().record()) == "XLOPER of type 128");
  CHECK(ValueText(ReferenceTo({1, 3, 0, 26})) == "XLOPER of type 1024: A2:AA4");
  CHECK(ValueText(XXloperArray(100000, 10).Finish().record()).size() < 1000);
  CHECK(ValueText(XXloper::Text(std::u16string(30000, u'x')).record()).size() < 150);
  XLOPER12 hostile{};
  hostile.xltype = xltypeMulti;
  hostile.val.array = {nullptr, 3, -3};
  CHECK(ValueText(hostile) == "XLOPER array (3 x -3) = {}");
  hostile = {};
  hostile.xltype = xltypeRef;
  CHECK(ValueText(hostile) == "XLOPER of type 8");
}
