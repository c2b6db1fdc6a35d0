#include "excel/parameter.h"

#include <doctest/doctest.h>

#include <limits>

#include "excel/value_text.h"
#include "support/records.h"

using namespace zavrel;
using namespace zavrel::tests;

namespace {

using Limits = std::numeric_limits<double>;

bool Passes(const Argument& input, std::uint32_t types, NumericRange range = {}) {
  Parameter parameters[] = {{.input = XXloper::FromArgument(input),
                             .acceptable_types = static_cast<std::uint16_t>(types)}};
  parameters[0].range = range;
  return CheckParameters(parameters);
}

}  // namespace

TEST_CASE("A parameter passes by type and, without the error bit, without errors") {
  const Argument text(Cell(u"x")), missing(xltypeMissing), error(Cell(ErrorCell{xlerrNA})),
      big_data(xltypeBigData), errors(2, 2, {1.0, 1.0, 1.0, ErrorCell{xlerrNull}});
  CHECK(Passes(text, xltypeNum | xltypeStr));
  CHECK_FALSE(Passes(text, xltypeNum));
  CHECK_FALSE(Passes(missing, xltypeNum));
  CHECK(Passes(missing, xltypeNum | xltypeMissing));
  CHECK_FALSE(Passes(error, xltypeNum));
  CHECK(Passes(error, xltypeNum | xltypeErr));
  CHECK_FALSE(Passes(errors, xltypeMulti));
  CHECK(Passes(errors, xltypeMulti | xltypeErr));
  CHECK_FALSE(Passes(big_data, 0xFFFF));
}

TEST_CASE("A number lies within its range, ends counted as they are given") {
  const NumericRange half_open{.lower = Bound{0, false}, .upper = Bound{1, true}};
  const struct {
    double number;
    NumericRange range;
    bool passes;
  } cases[] = {{0, half_open, false},
               {Limits::denorm_min(), half_open, true},
               {1, half_open, true},
               {1.0000000000000002, half_open, false},
               {0, {.lower = Bound{0}}, true},
               {1, {.upper = Bound{1, false}}, false},
               {-1e300, {.upper = Bound{1}}, true},
               {Limits::infinity(), {}, false},
               {-Limits::infinity(), {}, false},
               {Limits::quiet_NaN(), {}, false}};
  for (const auto& [number, range, passes] : cases) {
    CAPTURE(number);
    CHECK(Passes(Argument(Cell(number)), xltypeNum, range) == passes);
  }
  Parameter integer[] = {{.input = XXloper::Integer(2), .acceptable_types = xltypeInt}};
  integer[0].range = half_open;
  CHECK_FALSE(CheckParameters(integer));
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

  const auto text = [](const XLOPER12* value) { return ValueText(*value); };
  CHECK(text(Argument(2, 2, {u"a\n\u00FC", true, Cell(), ErrorCell{xlerrNA}})) ==
        "XLOPER array (2 x 2) = {\"a \u00FC\", TRUE; , #N/A}");
  CHECK(text(Argument(xltypeMissing)) == "XLOPER of type 128");
  CHECK(text(Reference({1, 3, 0, 26})) == "XLOPER of type 1024: A2:AA4");
  CHECK(text(Argument(100000, 10)).size() < 1000);
  CHECK(text(Argument(Cell(std::u16string(30000, u'x')))).size() < 150);
  XLOPER12 hostile{};
  hostile.xltype = xltypeMulti;
  hostile.val.array = {nullptr, 3, -3};
  CHECK(ValueText(hostile) == "XLOPER array (3 x -3) = {}");
  CHECK(text(Argument(xltypeRef)) == "XLOPER of type 8");
}
