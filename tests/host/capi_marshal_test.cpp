// Arguments and results by type text.
#include <doctest/doctest.h>

#include "host/capi/type_text.h"
#include "host/planted_add_in.h"

namespace zavhost::tests {

TEST_CASE("arguments of every letter arrive, and results that are no values become what shows") {
  auto engine = PlantedEngine();
  CheckFormulas(*engine, R"(
      GoodMix(1.5,-2,3,4.5,TRUE,6,7.5,-8,9.5,10.5,11.5,12.5,13.5) -> 696.5
      GoodMany(1,2,3,4,5,6,7,8,9,10,11,12,13,14,15,16,17,18,19,20,21,22,23,24,25,26,27,28,29,30) -> 9455
      GoodPointers(1.5,TRUE,-3,4) -> 3711.5 | GoodWide("ä€") -> ä€!
      GoodCountedWide("abc") -> cba | GoodCounted("abc") -> cba | GoodInPlaceText("abc") -> ABC
      GoodInPlaceCounted("abc") -> ab | GoodInPlaceCountedWide("abc") -> ab
      GoodInPlaceNumber(21) -> 42 | GoodVoid("once") -> once more
      GoodTranspose({1,2,3;4,5,6}) -> 1,4;2,5;3,6; | GoodTranspose(A1:A3) -> 1,2,3;
      GoodSmallSum(A1:A7) -> 15 | GoodBoolean(FALSE) -> TRUE | GoodShort(-32768) -> -32768
      GoodUnsigned(65535) -> 65535 | GoodInteger(2147483647) -> -2147483647
      GoodSpecial(0) -> #NUM! | GoodSpecial(1) -> #NUM! | GoodSpecial(2) -> 0
      GoodNothing(0) -> #NUM! | GoodNothing(1) -> 0 | GoodNothing(2) -> 0)");
  CheckFormulas(*engine, "GoodNarrow(\"ä€\") -> ä?!");  // Latin-1 has no euro sign
  CHECK(engine->judge().count() == 0);
}

TEST_CASE("values are converted, cannot be, or are taken element by element") {
  auto engine = PlantedEngine();
  CheckFormulas(*engine, R"(
      GoodInteger("12") -> -12 | GoodInteger(TRUE) -> -1 | GoodInteger(-2.9) -> 2
      GoodInteger() -> 0 | GoodInteger("twelve") -> #VALUE! | GoodInteger(B3) -> #VALUE!
      GoodInteger(3E9) -> #NUM! | GoodShort(40000) -> #NUM! | GoodUnsigned(-1) -> #NUM!
      GoodBoolean("true") -> FALSE | GoodBoolean("yes") -> #VALUE! | GoodWide(1.5) -> 1.5!
      GoodWide(TRUE) -> TRUE! | GoodWide(B3) -> #VALUE! | GoodTranspose(A1:B1) -> #VALUE!
      GoodInteger(1,2) -> #VALUE! | GoodInteger({1,2;3,4}) -> -1,-2;-3,-4;
      GoodInteger(A1:A3) -> -1;-2;-3; | GoodSmallSum(A1:A65535) -> 15
      GoodSmallSum(A1:A65536) -> #VALUE!)");
  const std::string long_text(254, 'x');
  CHECK(Shown(*engine, "GoodNarrow(\"" + long_text + "\")").size() == 255);
  CHECK(Shown(*engine, "GoodNarrow(\"" + long_text + "\"&\"xx\")") == "#VALUE!");
}

TEST_CASE("value records say what stands in the formula") {
  CheckFormulas(*PlantedEngine(), R"(
      GoodDescribe(1) -> number | GoodDescribe("abc") -> text of 3 | GoodDescribe(B2) -> boolean
      GoodDescribe(#N/A) -> error 42 | GoodDescribe() -> missing | GoodDescribe(C9) -> nil
      GoodDescribe(B1:C2) -> 2x2 of text of 4 | GoodDescribe({#DIV/0!}) -> 1x1 of error 7
      GoodDescribeU(1) -> number | GoodDescribeU(A2) -> sref 1,0:1,0
      GoodDescribeU((A1,B2:C3)) -> ref 0,0:0,0 1,1:2,2 | GoodDescribeU(A:A) -> sref 0,0:1048575,0
      GoodReference(A2:A3) -> 2;3;)");

  Workbook two_sheets = SmallWorkbook();
  two_sheets.sheets.emplace_back(u"Other").Set(0, 0, 8.0);
  EngineOptions options;
  options.behaviour.external_references_only = true;
  CheckFormulas(*PlantedEngine(std::move(two_sheets), options), R"(
      GoodDescribeU(Other!A1) -> ref 0,0:0,0 | GoodDescribeU(A1) -> ref 0,0:0,0
      GoodSum(Other!A1:A2)+GoodSum(A1:A2) -> 11)");
}

TEST_CASE("type texts") {
  const auto refused = [&](std::u16string_view text) {
    const auto parsed = ParseTypeText(text);
    const std::string* reason = std::get_if<std::string>(&parsed);
    return reason == nullptr ? std::string() : *reason;
  };
  const TypeText type = std::get<TypeText>(ParseTypeText(u"QUC%!#"));
  CHECK(type.arguments == std::vector{TypeLetter::kValueOrReference, TypeLetter::kWideText});
  CHECK(type.is_volatile);
  CHECK(type.is_macro_type);
  CHECK(refused(u"PR").find("before Excel 2007") != std::string::npos);
  CHECK(refused(u"QR").find("before Excel 2007") != std::string::npos);
  for (const char16_t* text :
       {u"", u"!", u"Z", u"QO", u"QX", u"Q%", u"Q$#", u"3F", u"1B", u">", u"Q Q", u"QU\u20ac"}) {
    CAPTURE(Utf8FromUtf16(text));
    CHECK(!refused(text).empty());
  }
  using enum TypeLetter;
  for (const auto& [text, letter] : {std::pair{u"1L", kBooleanPointer},
                                     {u"1E", kNumberPointer},
                                     {u"1M", kShortPointer},
                                     {u"1N", kIntegerPointer},
                                     {u"1F", kNarrowBuffer},
                                     {u"1G", kCountedNarrowBuffer},
                                     {u">F%", kWideBuffer},
                                     {u"1G%", kCountedWideBuffer},
                                     {u"1K", kSmallNumberArray},
                                     {u"2BK%", kNumberArray}})
    CHECK(std::get<TypeText>(ParseTypeText(text)).result == letter);
  for (const char16_t* text : {u"1A", u"1J", u"1C%", u"1Q", u"1U"}) CHECK(!refused(text).empty());
  CHECK(refused(std::u16string(61, u'B')).empty());
  CHECK(!refused(std::u16string(62, u'B')).empty());
}

}  // namespace zavhost::tests
