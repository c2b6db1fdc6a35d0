#include "excel/scalar_argument.h"

#include <doctest/doctest.h>

#include "support/fake_excel.h"

using namespace zavrel;
using namespace zavrel::tests;

namespace {

using enum ScalarStatus;

Scalar<ScalarValue> Read(char letter, const XXloper& argument) {
  const auto kind = ScalarKindOf(letter);
  REQUIRE(kind.has_value());
  return ReadScalar(*kind, argument);
}

double Number(char letter, const XXloper& argument) {
  const Scalar<ScalarValue> read = Read(letter, argument);
  REQUIRE(read.given());
  return std::get<double>(read.value);
}

std::int32_t Integer(const XXloper& argument) {
  const Scalar<std::int32_t> read = ReadInteger(argument, Presence::kRequired);
  REQUIRE(read.given());
  return read.value;
}

bool FailsUnnamed(char letter, const XXloper& argument) {
  const Scalar<ScalarValue> read = Read(letter, argument);
  return read.status == kFailed && !read.error;
}

}  // namespace

TEST_CASE("Letters mean what they say; those of data sets mean nothing here") {
  for (const char letter : {'R', 'r', 'V', 'v', 'P', ' '}) CHECK_FALSE(ScalarKindOf(letter));
  for (const char letter : {'D', 'L', 'S', 'B'}) {
    CHECK(FailsUnnamed(letter, XXloper::Missing()));
    const auto optional_letter = static_cast<char>(letter - 'A' + 'a');
    CHECK(Read(optional_letter, XXloper::Missing()).status == kNotGiven);
    CHECK(Read(optional_letter, XXloper::Nil()).status == kNotGiven);
  }
  CHECK(Number('D', XXloper::Nil()) == 0);
  CHECK(std::get<std::int32_t>(Read('L', XXloper::Nil()).value) == 0);
  CHECK(std::get<std::u16string>(Read('S', XXloper::Nil()).value).empty());
  CHECK(std::get<bool>(Read('B', XXloper::Nil()).value) == false);
}

TEST_CASE("Numbers and integers") {
  FakeExcel excel;
  excel.AnswerCoercions();
  CHECK(Number('d', XXloper::Number(-2.5)) == -2.5);
  CHECK(Number('D', XXloper::Boolean(true)) == 1);
  CHECK(Number('D', XXloper::Integer(7)) == 7);
  CHECK(excel.calls.empty());
  CHECK(Number('D', XXloper::Text(u"12.5")) == 12.5);
  for (const XXloper& bad : {XXloper::Text(u"abc"), XXloper::Text(u""), XXloper::Number(1.0 / 0.0)})
    CHECK(FailsUnnamed('d', bad));

  CHECK(Integer(XXloper::Number(2.9)) == 2);
  CHECK(Integer(XXloper::Number(-2.9)) == -2);
  CHECK(Integer(XXloper::Number(2147483647.5)) == 2147483647);
  CHECK(Integer(XXloper::Text(u"3.7")) == 3);
  CHECK(FailsUnnamed('L', XXloper::Number(2147483648.0)));
  CHECK(FailsUnnamed('L', XXloper::Number(-2147483649.0)));
}

TEST_CASE("Texts and booleans speak the host's language") {
  FakeExcel excel;
  excel.AnswerCoercions();
  const auto text = [](const XXloper& value) { return ReadText(value, Presence::kOptional).value; };
  CHECK(text(XXloper::Text(u"qtox")) == u"qtox");
  CHECK(text(XXloper::Number(2.5)) == u"2,5");
  CHECK(text(XXloper::Boolean(true)) == u"WAHR");

  const auto boolean = [](const XXloper& value) {
    const Scalar<bool> read = ReadBoolean(value, Presence::kRequired);
    REQUIRE(read.given());
    return read.value;
  };
  CHECK(boolean(XXloper::Number(-0.5)));
  CHECK_FALSE(boolean(XXloper::Number(0)));
  CHECK(boolean(XXloper::Text(u"WAHR")));
  CHECK_FALSE(boolean(XXloper::Text(u"0")));
  CHECK(FailsUnnamed('B', XXloper::Text(u"maybe")));
}

TEST_CASE("An array gives its upper left element, unless it holds an error") {
  XXloperArray array(2, 1);
  array.SetNumber(0, 4);
  array.SetText(1, u"x");
  CHECK(Number('D', std::move(array).Finish()) == 4);
  XXloperArray empty_first(1, 2, ExcelError::kNum);
  empty_first.SetEmpty(0);
  empty_first.SetNumber(1, 1);
  CHECK(Read('d', std::move(empty_first).Finish()).status == kNotGiven);

  XXloperArray with_errors(1, 3, ExcelError::kNA);
  with_errors.SetNumber(0, 4);
  with_errors.SetError(1, ExcelError::kDiv0);
  const XXloper errors = std::move(with_errors).Finish();
  for (const char letter : {'D', 'l', 'S', 'b'}) {
    const auto read = Read(letter, errors);
    CHECK(read.status == kFailed);
    CHECK(read.error == xlerrDiv0);
    CHECK(Read(letter, XXloper::ErrorByCode(xlerrNull)).error == xlerrNull);
  }
  XLOPER12 hostile{};
  hostile.xltype = xltypeMulti;
  hostile.val.array = {nullptr, 1000000, 16384};
  CHECK(FailsUnnamed('S', XXloper::FromArgument(&hostile)));
  hostile.xltype = xltypeFlow;
  CHECK(FailsUnnamed('D', XXloper::FromArgument(&hostile)));
}

TEST_CASE("A reference is looked up, one cell of it; uncalculated cells are told apart") {
  FakeExcel excel;
  const Reference column({4, kExcelRows - 1, 2, 9});
  const XXloper reference = XXloper::FromArgument(column);
  excel.On(xlCoerce, [](FakeExcel::Arguments arguments, XLOPER12& result) {
    CHECK(arguments.size() == 1);
    const XLREF12& asked = arguments[0]->val.sref.ref;
    CHECK((asked.rwFirst == 4 && asked.rwLast == 4 && asked.colFirst == 2 && asked.colLast == 2));
    result = XXloper::Number(6).record();
    return xlretSuccess;
  });
  CHECK(Number('D', reference) == 6);
  excel.AnswerCoercions(XXloper::Nil());
  CHECK(Read('d', reference).status == kNotGiven);
  excel.AnswerCoercions(XXloper::Error(ExcelError::kRef));
  CHECK(Read('L', reference).error == xlerrRef);

  for (const int code : {xlretUncalced, xlretAbort}) {
    excel.On(xlCoerce, [code](FakeExcel::Arguments, XLOPER12&) { return code; });
    for (const char letter : {'d', 'L', 'S', 'b'})
      CHECK(Read(letter, reference).status == kUncalculated);
    CHECK(Read('B', XXloper::Text(u"x")).status == kUncalculated);
  }
  // A host that answers with an array: its first element is read before the array is freed.
  excel.On(xlCoerce, [&](FakeExcel::Arguments, XLOPER12& result) {
    excel.GiveArray(1, 2, result);
    result.val.array.lparray[0] = XXloper::Number(8).record();
    return xlretSuccess;
  });
  CHECK(Number('D', reference) == 8);
  excel.On(xlCoerce, [](FakeExcel::Arguments, XLOPER12&) { return xlretFailed; });
  CHECK(FailsUnnamed('D', reference));
  const Reference nowhere({-1, 5, 0, 0});
  CHECK(FailsUnnamed('D', XXloper::FromArgument(nowhere)));
}
