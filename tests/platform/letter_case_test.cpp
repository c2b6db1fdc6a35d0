#include "platform/letter_case.h"

#include <doctest/doctest.h>

#include "platform/utf.h"
#include "platform/white_space.h"

namespace zavrel {
namespace {

TEST_CASE("lower case by Unicode, letter for letter") {
  const struct {
    std::u16string_view text;
    std::u16string_view lower;
  } cases[] = {
      {u"", u""},
      {u"North 12_[@`{", u"north 12_[@`{"},
      {u"Straße STRASSE STRA\u1E9EE", u"straße strasse straße"},
      {u"ÉTÉ ÀÖØÞ ×÷ÿŸ", u"été àöøþ ×÷ÿÿ"},
      {u"МОСКВА Ёлка Ї", u"москва ёлка ї"},
      {u"ΝΌΤΟΣ νότος", u"νότοσ νότοσ"},
      {u"ＦＵＬＬ Ⅷ Ⓐ", u"ｆｕｌｌ ⅷ ⓐ"},
      {u"ǅ Ǆ ǆ", u"ǆ ǆ ǆ"},
      {u"日本 \u0130 \u0131", u"日本 i \u0131"},
      {u"\U00010400\U0001F600\U00010428", u"\U00010428\U0001F600\U00010428"},  // Deseret
  };
  for (const auto& [text, lower] : cases) {
    CAPTURE(Utf8FromUtf16(text));
    CHECK(Utf8FromUtf16(LowerCase(text)) == Utf8FromUtf16(lower));
    CHECK(LowerCase(LowerCase(text)) == LowerCase(text));
    CHECK(EqualIgnoringCase(text, lower));
  }
}

TEST_CASE("upper case is found letter by letter") {
  CHECK(UpperCase(u"aé ß σς \U00010428\xD801") == u"AÉ ß ΣΣ \U00010400\xD801");
  CHECK(IsLetter(U'é'));
  CHECK(IsLetter(U'語'));
  CHECK(!IsLetter(U'7'));
  CHECK(!IsLetter(0xD800));
}

TEST_CASE("two texts are equal but for case exactly when their lower case is the same") {
  const std::u16string texts[] = {u"",           u"a",       u"A",          u"ab",
                                  u"aB",         u"É",       u"é",          u"e\u0301",
                                  u"Σ",          u"ς",       u"\U00010400", u"\U00010428",
                                  u"\U00010401", u"\xD801",  u"\xDC28",     u"\xDC00\xD801",
                                  u"\xD801x",    u"\xD801X", u"k",          u"\u212A",
                                  u"xk",         u"X\u212A"};
  for (const std::u16string& a : texts) {
    for (const std::u16string& b : texts) {
      CHECK(EqualIgnoringCase(a, b) == (LowerCase(a) == LowerCase(b)));
      CHECK(CompareIgnoringCase(a, b) == -CompareIgnoringCase(b, a));
    }
  }
  CHECK(CompareIgnoringCase(u"É", u"éa") < 0);
  CHECK(CompareIgnoringCase(u"AB", u"aC") < 0);
  CHECK(CompareIgnoringCase(u"_", u"A") < 0);
}

TEST_CASE("every unit that is no capital stays as it is, unpaired surrogates among them") {
  const std::u16string unpaired[] = {
      {0xD800}, {0xDC00}, {0xDFFF, 0xDBFF}, {u'x', 0xD801}, {0xD801, 0xD801, 0xDC28}};
  for (const std::u16string& text : unpaired) CHECK(LowerCase(text) == text);
  for (char32_t unit = 0; unit < 0x10000; ++unit) {
    const std::u16string text(1, static_cast<char16_t>(unit));
    CHECK(LowerCase(text).size() == 1);
  }
  for (char32_t code = 0x10000; code < 0x20000; ++code) {
    std::u16string text;
    AppendUtf16(code, text);
    CHECK(LowerCase(text).size() == 2);
  }
}

TEST_CASE("white space goes at both ends and stays within") {
  CHECK(Trimmed(u" \t\u00A0a b\u2003\r\n\u3000\u0085") == u"a b");
  CHECK(Trimmed(u" \u00A0 ").empty());
  CHECK(Trimmed(u"").empty());
  CHECK(Trimmed(u"\u200Bx\u001F") == u"\u200Bx\u001F");  // not white space
}

}  // namespace
}  // namespace zavrel
