#include "data/scalar_argument.h"

#include <doctest/doctest.h>

#include "support/fake_excel.h"

using namespace zavrel;
using namespace zavrel::tests;

namespace {

OrFailure<ScalarValue> Read(char letter, const XXloper& argument) {
  const auto kind = ScalarKindOf(letter);
  REQUIRE(kind.has_value());
  return ReadScalar(*kind, &argument.record());
}

double Number(char letter, const XXloper& argument) {
  return std::get<double>(*Read(letter, argument));
}

std::int32_t Integer(const XXloper& argument) {
  return (*ReadInteger(&argument.record(), Presence::kRequired)).value();
}

bool IsLeftOut(char letter, const XXloper& argument) {
  const auto read = Read(letter, argument);
  return read.ok() && std::holds_alternative<std::monostate>(*read);
}

/// The error that a reading fails with; -1 when it does not, or only has to wait.
std::int32_t ErrorOf(char letter, const XXloper& argument) {
  const auto read = Read(letter, argument);
  return read.ok() || read.failure().uncalculated() ? -1 : read.failure().value().record().val.err;
}

bool Fails(char letter, const XXloper& argument) { return ErrorOf(letter, argument) == xlerrValue; }

}  // namespace

TEST_CASE("Letters mean what they say; those of data sets mean nothing here") {
  for (const char letter : {'R', 'r', 'V', 'v', 'P', ' '}) CHECK_FALSE(ScalarKindOf(letter));
  for (const char letter : {'D', 'L', 'S', 'B'}) {
    CHECK(Fails(letter, XXloper::Missing()));
    const auto optional_letter = static_cast<char>(letter - 'A' + 'a');
    CHECK(IsLeftOut(optional_letter, XXloper::Missing()));
    CHECK(IsLeftOut(optional_letter, XXloper::Nil()));
  }
  CHECK(Number('D', XXloper::Nil()) == 0);
  CHECK(std::get<std::int32_t>(*Read('L', XXloper::Nil())) == 0);
  CHECK(std::get<std::u16string>(*Read('S', XXloper::Nil())).empty());
  CHECK(std::get<bool>(*Read('B', XXloper::Nil())) == false);
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
    CHECK(Fails('d', bad));

  CHECK(Integer(XXloper::Number(2.9)) == 2);
  CHECK(Integer(XXloper::Number(-2.9)) == -2);
  CHECK(Integer(XXloper::Number(2147483647.5)) == 2147483647);
  CHECK(Integer(XXloper::Text(u"3.7")) == 3);
  CHECK(Fails('L', XXloper::Number(2147483648.0)));
  CHECK(Fails('L', XXloper::Number(-2147483649.0)));
}

TEST_CASE("Texts and booleans speak the host's language") {
  FakeExcel excel;
  excel.AnswerCoercions();
  const auto text = [](const XXloper& value) {
    return (*ReadText(&value.record(), Presence::kOptional)).value();
  };
  CHECK(text(XXloper::Text(u"qtox")) == u"qtox");
  CHECK(text(XXloper::Number(2.5)) == u"2,5");
  CHECK(text(XXloper::Boolean(true)) == u"WAHR");

  const auto boolean = [](const XXloper& value) {
    return (*ReadBoolean(&value.record(), Presence::kRequired)).value();
  };
  CHECK(boolean(XXloper::Number(-0.5)));
  CHECK_FALSE(boolean(XXloper::Number(0)));
  CHECK(boolean(XXloper::Text(u"WAHR")));
  CHECK_FALSE(boolean(XXloper::Text(u"0")));
  CHECK(Fails('B', XXloper::Text(u"maybe")));
}

TEST_CASE("An array gives its upper left element, unless it holds an error") {
  XXloperArray array(2, 1);
  array.SetNumber(0, 4);
  array.SetText(1, u"x");
  CHECK(Number('D', std::move(array).Finish()) == 4);
  XXloperArray empty_first(1, 2, ExcelError::kNum);
  empty_first.SetEmpty(0);
  empty_first.SetNumber(1, 1);
  CHECK(IsLeftOut('d', std::move(empty_first).Finish()));

  XXloperArray with_errors(1, 3, ExcelError::kNA);
  with_errors.SetNumber(0, 4);
  with_errors.SetError(1, ExcelError::kDiv0);
  const XXloper errors = std::move(with_errors).Finish();
  for (const char letter : {'D', 'l', 'S', 'b'}) {
    CHECK(ErrorOf(letter, errors) == xlerrDiv0);
    CHECK(ErrorOf(letter, XXloper::ErrorByCode(xlerrNull)) == xlerrNull);
  }
  XLOPER12 hostile{};
  hostile.xltype = xltypeMulti;
  hostile.val.array = {nullptr, 1000000, 16384};
  CHECK(Fails('S', XXloper::FromArgument(&hostile)));
  hostile.xltype = xltypeFlow;
  CHECK(Fails('D', XXloper::FromArgument(&hostile)));
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
  CHECK(IsLeftOut('d', reference));
  excel.AnswerCoercions(XXloper::Error(ExcelError::kRef));
  CHECK(ErrorOf('L', reference) == xlerrRef);

  for (const int code : {xlretUncalced, xlretAbort}) {
    excel.On(xlCoerce, [code](FakeExcel::Arguments, XLOPER12&) { return code; });
    for (const char letter : {'d', 'L', 'S', 'b'})
      CHECK(Read(letter, reference).failure().uncalculated());
    CHECK(Read('B', XXloper::Text(u"x")).failure().uncalculated());
  }
  // A host that answers with an array: its first element is read before the array is freed.
  excel.On(xlCoerce, [&](FakeExcel::Arguments, XLOPER12& result) {
    excel.GiveArray(1, 2, result);
    result.val.array.lparray[0] = XXloper::Number(8).record();
    return xlretSuccess;
  });
  CHECK(Number('D', reference) == 8);
  excel.On(xlCoerce, [](FakeExcel::Arguments, XLOPER12&) { return xlretFailed; });
  CHECK(Fails('D', reference));
  const Reference nowhere({-1, 5, 0, 0});
  CHECK(Fails('D', XXloper::FromArgument(nowhere)));
}
