// Arguments and results by type text.
#include <doctest/doctest.h>

#include "host/capi/type_text.h"
#include "host/planted_add_in.h"

namespace zavhost::tests {

TEST_CASE("arguments of every letter arrive, in registers and on the stack") {
  auto engine = PlantedEngine();
  const auto shown = [&](const char16_t* formula) { return Shown(*engine, formula); };
  CHECK(shown(u"GoodMix(1.5,-2,3,4.5,TRUE,6,7.5,-8,9.5,10.5,11.5,12.5,13.5)") == "696.5");
  CHECK(shown(u"GoodMany(1,2,3,4,5,6,7,8,9,10,11,12,13,14,15,16,17,18,19,20,21,22,23,24,25,26,27,"
              u"28,29,30)") == "9455");
  CHECK(shown(u"GoodPointers(1.5,TRUE,-3,4)") == "3711.5");
  CHECK(shown(u"GoodWide(\"\u00e4\u20ac\")") == "\u00e4\u20ac!");
  CHECK(shown(u"GoodNarrow(\"\u00e4\u20ac\")") == "\u00e4?!");  // Latin-1 has no euro sign
  CHECK(shown(u"GoodCountedWide(\"abc\")") == "cba");
  CHECK(shown(u"GoodCounted(\"abc\")") == "cba");
  CHECK(shown(u"GoodInPlaceText(\"abc\")") == "ABC");
  CHECK(shown(u"GoodInPlaceNumber(21)") == "42");
  CHECK(shown(u"GoodVoid(\"once\")") == "once more");
  CHECK(shown(u"GoodTranspose({1,2,3;4,5,6})") == "1,4;2,5;3,6;");
  CHECK(shown(u"GoodTranspose(A1:A3)") == "1,2,3;");
  CHECK(shown(u"GoodSmallSum(A1:A7)") == "15");  // blank cells count nothing
  CHECK(shown(u"GoodBoolean(FALSE)") == "TRUE");
  CHECK(shown(u"GoodShort(-32768)") == "-32768");
  CHECK(shown(u"GoodUnsigned(65535)") == "65535");
  CHECK(shown(u"GoodInteger(2147483647)") == "-2147483647");
  CHECK(engine->judge().count() == 0);
}

TEST_CASE("values that cannot be converted are answered without a call") {
  auto engine = PlantedEngine();
  const auto shown = [&](const char16_t* formula) { return Shown(*engine, formula); };
  CHECK(shown(u"GoodInteger(\"12\")") == "-12");
  CHECK(shown(u"GoodInteger(TRUE)") == "-1");
  CHECK(shown(u"GoodInteger(-2.9)") == "2");
  CHECK(shown(u"GoodInteger()") == "0");
  CHECK(shown(u"GoodInteger(\"twelve\")") == "#VALUE!");
  CHECK(shown(u"GoodInteger(B3)") == "#VALUE!");
  CHECK(shown(u"GoodInteger(3E9)") == "#NUM!");
  CHECK(shown(u"GoodShort(40000)") == "#NUM!");
  CHECK(shown(u"GoodUnsigned(-1)") == "#NUM!");
  CHECK(shown(u"GoodBoolean(\"true\")") == "FALSE");
  CHECK(shown(u"GoodBoolean(\"yes\")") == "#VALUE!");
  CHECK(shown(u"GoodWide(1.5)") == "1.5!");
  CHECK(shown(u"GoodWide(TRUE)") == "TRUE!");
  CHECK(shown(u"GoodWide(B3)") == "#VALUE!");
  const std::u16string long_text(254, u'x');
  CHECK(Shown(*engine, u"GoodNarrow(\"" + long_text + u"\")").size() == 255);
  CHECK(Shown(*engine, u"GoodNarrow(\"" + long_text + u"\"&\"xx\")") == "#VALUE!");
  CHECK(shown(u"GoodTranspose(A1:B1)") == "#VALUE!");
  CHECK(shown(u"GoodInteger(1,2)") == "#VALUE!");
}

TEST_CASE("an array in the place of one value is taken element by element") {
  auto engine = PlantedEngine();
  CHECK(Shown(*engine, u"GoodInteger({1,2;3,4})") == "-1,-2;-3,-4;");
  CHECK(Shown(*engine, u"GoodInteger(A1:A3)") == "-1;-2;-3;");
}

TEST_CASE("value records say what stands in the formula") {
  auto engine = PlantedEngine();
  const auto shown = [&](const char16_t* formula) { return Shown(*engine, formula); };
  CHECK(shown(u"GoodDescribe(1)") == "number");
  CHECK(shown(u"GoodDescribe(\"abc\")") == "text of 3");
  CHECK(shown(u"GoodDescribe(B2)") == "boolean");
  CHECK(shown(u"GoodDescribe(#N/A)") == "error 42");
  CHECK(shown(u"GoodDescribe()") == "missing");
  CHECK(shown(u"GoodDescribe(C9)") == "nil");
  CHECK(shown(u"GoodDescribe(B1:C2)") == "2x2 of text of 4");
  CHECK(shown(u"GoodDescribe({#DIV/0!})") == "1x1 of error 7");
  CHECK(shown(u"GoodDescribeU(1)") == "number");
  CHECK(shown(u"GoodDescribeU(A2)") == "sref 1,0:1,0");
  CHECK(shown(u"GoodDescribeU((A1,B2:C3))") == "ref 0,0:0,0 1,1:2,2");
  CHECK(shown(u"GoodDescribeU(A:A)") == "sref 0,0:1048575,0");
  CHECK(shown(u"GoodReference(A2:A3)") == "2;3;");

  Workbook two_sheets = SmallWorkbook();
  two_sheets.sheets.emplace_back(u"Other").Set(0, 0, 8.0);
  EngineOptions options;
  options.behaviour.external_references_only = true;
  auto other = PlantedEngine(std::move(two_sheets), options);
  CHECK(Shown(*other, u"GoodDescribeU(Other!A1)") == "ref 0,0:0,0");
  CHECK(Shown(*other, u"GoodDescribeU(A1)") == "ref 0,0:0,0");
  CHECK(Shown(*other, u"GoodSum(Other!A1:A2)+GoodSum(A1:A2)") == "11");
}

TEST_CASE("results that are no values become what a cell shows for them") {
  auto engine = PlantedEngine();
  const auto shown = [&](const char16_t* formula) { return Shown(*engine, formula); };
  CHECK(shown(u"GoodSpecial(0)") == "#NUM!");
  CHECK(shown(u"GoodSpecial(1)") == "#NUM!");
  CHECK(shown(u"GoodSpecial(2)") == "0");
  CHECK(shown(u"GoodNothing(0)") == "#NUM!");  // a null pointer
  CHECK(shown(u"GoodNothing(1)") == "0");
  CHECK(shown(u"GoodNothing(2)") == "0");
  CHECK(engine->judge().count() == 0);
}

TEST_CASE("type texts") {
  const auto parse = [](const char16_t* text) { return ParseTypeText(text); };
  const auto refused = [&](const char16_t* text) {
    const auto parsed = parse(text);
    const std::string* reason = std::get_if<std::string>(&parsed);
    return reason == nullptr ? std::string() : *reason;
  };
  const TypeText type = std::get<TypeText>(parse(u"QUC%!#"));
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
  CHECK(refused((u"B" + std::u16string(60, u'B')).c_str()).empty());
  CHECK(!refused((u"B" + std::u16string(61, u'B')).c_str()).empty());
}

}  // namespace zavhost::tests
