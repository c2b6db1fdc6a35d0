#include "data/scalar_argument.h"

#include <doctest/doctest.h>

#include <string>

#include "platform/utf.h"
#include "support/fake_excel.h"

using namespace zavrel;
using namespace zavrel::tests;

namespace {

/// What a letter makes of an argument: "2.5", "7 whole", "text", "TRUE"; "left out"; "#15", or
/// "wait" when it cannot be told yet.
std::string Read(char letter, const XXloper& argument) {
  const auto read = ReadScalar(ScalarKindOf(letter).value(), &argument.record());
  if (!read.ok())
    return read.failure().uncalculated() ? "wait" : Shown(read.failure().value().record());
  if (const auto* whole = std::get_if<std::int32_t>(&*read))
    return std::to_string(*whole) + " whole";
  if (const auto* text = std::get_if<std::u16string>(&*read)) return Utf8FromUtf16(*text);
  if (const auto* boolean = std::get_if<bool>(&*read)) return *boolean ? "TRUE" : "FALSE";
  if (const auto* number = std::get_if<double>(&*read))
    return Shown(XXloper::Number(*number).record());
  return "left out";
}

XXloper Number(double number) { return XXloper::Number(number); }
XXloper Text(const char16_t* text) { return XXloper::Text(text); }

}  // namespace

TEST_CASE("Letters mean what they say; those of data sets mean nothing here") {
  for (const char letter : {'R', 'r', 'V', 'v', 'P', ' '}) CHECK_FALSE(ScalarKindOf(letter));
  for (const auto& [letter, blank] :
       {std::pair{'D', "0"}, {'L', "0 whole"}, {'S', ""}, {'B', "FALSE"}}) {
    CHECK(Read(letter, XXloper::Missing()) == "#15");
    CHECK(Read(letter, XXloper::Nil()) == blank);
    const auto optional_letter = static_cast<char>(letter - 'A' + 'a');
    CHECK(Read(optional_letter, XXloper::Missing()) == "left out");
    CHECK(Read(optional_letter, XXloper::Nil()) == "left out");
  }
}

TEST_CASE("Values of every kind, texts and booleans in the host's language") {
  FakeExcel excel;
  excel.AnswerCoercions();
  const struct {
    char letter;
    XXloper argument;
    const char* read;
  } cases[] = {{'d', Number(-2.5), "-2.5"},        {'D', XXloper::Boolean(true), "1"},
               {'D', XXloper::Integer(7), "7"},    {'D', Text(u"12.5"), "12.5"},
               {'d', Text(u"abc"), "#15"},         {'d', Text(u""), "#15"},
               {'d', Number(1.0 / 0.0), "#15"},    {'L', Number(2.9), "2 whole"},
               {'L', Number(-2.9), "-2 whole"},    {'L', Number(2147483647.5), "2147483647 whole"},
               {'L', Number(2147483648.0), "#15"}, {'L', Number(-2147483649.0), "#15"},
               {'L', Text(u"3.7"), "3 whole"},     {'s', Text(u"qtox"), "qtox"},
               {'s', Number(2.5), "2,5"},          {'s', XXloper::Boolean(true), "WAHR"},
               {'B', Number(-0.5), "TRUE"},        {'B', Number(0), "FALSE"},
               {'B', Text(u"WAHR"), "TRUE"},       {'B', Text(u"0"), "FALSE"},
               {'B', Text(u"maybe"), "#15"}};
  for (const auto& given : cases) {
    INFO(given.letter, " of ", Shown(given.argument.record()));
    CHECK(Read(given.letter, given.argument) == given.read);
  }
  excel.calls.clear();
  for (const XXloper& plain : {Number(1), XXloper::Boolean(true)}) Read('D', plain);
  CHECK(excel.calls.empty());
}

TEST_CASE("An array gives its upper left element, unless it holds an error") {
  CHECK(Read('D', XXloper::FromArgument(Argument(2, 1, {4.0, u"x"}))) == "4");
  CHECK(Read('d', XXloper::FromArgument(Argument(1, 2, {Cell(), 1.0}))) == "left out");
  const Argument errors(1, 3, {4.0, ErrorCell{xlerrDiv0}, ErrorCell{xlerrNA}});
  for (const char letter : {'D', 'l', 'S', 'b'}) {
    CHECK(Read(letter, XXloper::FromArgument(errors)) == "#7");
    CHECK(Read(letter, XXloper::ErrorByCode(xlerrNull)) == "#0");
  }
  XLOPER12 hostile{};
  hostile.xltype = xltypeMulti;
  hostile.val.array = {nullptr, 1000000, 16384};
  CHECK(Read('S', XXloper::FromArgument(&hostile)) == "#15");
  hostile.xltype = xltypeFlow;
  CHECK(Read('D', XXloper::FromArgument(&hostile)) == "#15");
}

TEST_CASE("A reference is looked up, one cell of it; uncalculated cells are told apart") {
  FakeExcel excel;
  const Reference column({4, kExcelRows - 1, 2, 9}), nowhere({-1, 5, 0, 0});
  const XXloper reference = XXloper::FromArgument(column);
  excel.On(xlCoerce, [](FakeExcel::Arguments arguments, XLOPER12& result) {
    CHECK(arguments.size() == 1);
    const XLREF12& asked = arguments[0]->val.sref.ref;
    CHECK((asked.rwFirst == 4 && asked.rwLast == 4 && asked.colFirst == 2 && asked.colLast == 2));
    result = XXloper::Number(6).record();
    return xlretSuccess;
  });
  CHECK(Read('D', reference) == "6");
  excel.AnswerCoercions(XXloper::Nil());
  CHECK(Read('d', reference) == "left out");
  excel.AnswerCoercions(XXloper::Error(ExcelError::kRef));
  CHECK(Read('L', reference) == "#23");
  for (const int code : {xlretUncalced, xlretAbort}) {
    excel.On(xlCoerce, [code](FakeExcel::Arguments, XLOPER12&) { return code; });
    for (const char letter : {'d', 'L', 'S', 'b'}) CHECK(Read(letter, reference) == "wait");
    CHECK(Read('B', Text(u"x")) == "wait");
  }
  // A host that answers with an array: its first element is read before the array is freed.
  excel.On(xlCoerce, [&](FakeExcel::Arguments, XLOPER12& result) {
    excel.GiveArray(1, 2, result);
    result.val.array.lparray[0] = XXloper::Number(8).record();
    return xlretSuccess;
  });
  CHECK(Read('D', reference) == "8");
  excel.On(xlCoerce, [](FakeExcel::Arguments, XLOPER12&) { return xlretFailed; });
  CHECK(Read('D', reference) == "#15");
  CHECK(Read('D', XXloper::FromArgument(nowhere)) == "#15");
}
