// Formulas between languages and reference styles.
#include "formula/translate.h"

#include <doctest/doctest.h>

#include <string>

#include "formula/language_table.h"
#include "platform/utf.h"

namespace {

using formula::Dialect;
using formula::Language;
using formula::ReferenceStyle;

const Language& Named(const char* code) {
  static const auto english = formula::FindLanguage("en", {}).language;
  static const auto german = formula::FindLanguage("de", {}).language;
  return std::string_view(code) == "en" ? *english : *german;
}

const Dialect kEnglish{Named("en")}, kGerman{Named("de")};
const Dialect kEnglishR1C1{Named("en"), ReferenceStyle::kR1C1};
const Dialect kGermanR1C1{Named("de"), ReferenceStyle::kR1C1};
constexpr formula::BaseCell kD5{4, 3};

/// The translation, or "reason at position".
std::string Translated(std::u16string_view text, const Dialect& from, const Dialect& to,
                       formula::BaseCell base = kD5) {
  const auto result = TranslateFormula(text, from, to, base);
  if (const auto* translated = std::get_if<std::u16string>(&result))
    return zavrel::Utf8FromUtf16(*translated);
  static const char* const reasons[] = {"too long", "unreadable", "unclosed", "unpaired",
                                        "off sheet"};
  const auto& problem = std::get<formula::TranslationProblem>(result);
  return reasons[static_cast<int>(problem.reason)] + std::string(" at ") +
         std::to_string(problem.position);
}

void CheckBothWays(std::u16string_view english, std::u16string_view german, const Dialect& en,
                   const Dialect& de) {
  CHECK(Translated(english, en, de) == zavrel::Utf8FromUtf16(german));
  CHECK(Translated(german, de, en) == zavrel::Utf8FromUtf16(english));
}

void CheckPair(std::u16string_view english, std::u16string_view german) {
  CheckBothWays(english, german, kEnglish, kGerman);
}

}  // namespace

TEST_CASE("formulas in English and in German Excel") {
  CheckPair(u"=SUM(A1,2.5)", u"=SUMME(A1;2,5)");
  CheckPair(u"SUM ( A1 ,\n2 )", u"SUMME ( A1 ;\n2 )");
  CheckPair(u"=IF(A1>=1.5E-3,TRUE,FALSE())", u"=WENN(A1>=1,5E-3;WAHR;FALSCH())");
  CheckPair(u"=VLOOKUP(.5,{1,2.5;TRUE,-3;#N/A,\"a,b\"},2,0)",
            u"=SVERWEIS(,5;{1.2,5;WAHR.-3;#NV.\"a,b\"};2;0)");
  CheckPair(u"=SUM((A1:B2,C3),3:7,$B:$D 4:4)%", u"=SUMME((A1:B2;C3);3:7;$B:$D 4:4)%");
  CheckPair(u"=IFERROR(#DIV/0!,Sheet1!#REF!)&#REF!A1",
            u"=WENNFEHLER(#DIV/0!;Sheet1!#BEZUG!)&#BEZUG!A1");
  CheckPair(u"=ERROR.TYPE(#SPILL!)=@A1#", u"=FEHLER.TYP(#ÜBERLAUF!)=@A1#");
  CheckPair(u"=DB(1,2,3,4)+LOG10 (5)+ATAN2(1,2)", u"=GDA2(1;2;3;4)+LOG10 (5)+ARCTAN2(1;2)");
  CheckPair(u"=DB (1,2)", u"=GDA2 (1;2)");
  CheckPair(u"=F.DIST.RT(1,2,3)", u"=F.VERT.RE(1;2;3)");
}

TEST_CASE("what is not the language's own stays") {
  CheckPair(u"=\"SUM(1,2.5)\"&'SUM, 1.5'!A1&'a\"b'!B2", u"=\"SUM(1,2.5)\"&'SUM, 1.5'!A1&'a\"b'!B2");
  CheckPair(u"=SUM+Sum.x*_TRUE+Sheet1!TRUEs", u"=SUM+Sum.x*_TRUE+Sheet1!TRUEs");
  CheckPair(u"=Table1[[#This Row],[a,b.5]]-[@Sum]", u"=Table1[[#This Row],[a,b.5]]-[@Sum]");
  CheckPair(u"=[Book.1.xlsx]Sheet1!A1+'C:\\a\\[b,c.xlsx]S'!A1:B2+Jan:March!A1",
            u"=[Book.1.xlsx]Sheet1!A1+'C:\\a\\[b,c.xlsx]S'!A1:B2+Jan:March!A1");
  CheckPair(u"=ZavMean(A1,1)+_xll.ZavMean(1)", u"=ZavMean(A1;1)+_xll.ZavMean(1)");
  CheckPair(u"=_xlfn.STDEV.S(1,2)+_xlfn._xlws.SORT(A1)",
            u"=_xlfn.STDEV.S(1;2)+_xlfn._xlws.SORT(A1)");
  CheckPair(u"=Sheet1!SUM(1,2)+Unknown(3,4)", u"=Sheet1!SUM(1;2)+Unknown(3;4)");
  // An English name means nothing to German Excel. A name in other case becomes Excel's own.
  CHECK(Translated(u"=SUM(1;2)", kGerman, kEnglish) == "=SUM(1,2)");
  CHECK(Translated(u"=summe(wahr;GlÄtten(a))", kGerman, kEnglish) == "=SUM(TRUE,TRIM(a))");
  CHECK(Translated(u"=sum(True,1.5)", kEnglish, kEnglish) == "=sum(True,1.5)");
}

TEST_CASE("a table that names some functions leaves the others in English") {
  const auto table = formula::ReadLanguageTable(
      "SUM = SOMME\nIF = SI\nTRUE = VRAI\nlist = ;\ndecimal = ,\narray column = \\\n"
      "row letter = L\ndistance brackets = ()");
  const auto& language = std::get<Language>(table);
  const Dialect french{language}, french_r1c1{language, ReferenceStyle::kR1C1};
  CheckBothWays(u"=IF({TRUE,1.5},SUM(1),ABS(2))", u"=SI({VRAI\\1,5};SOMME(1);ABS(2))", kEnglish,
                french);
  CheckBothWays(u"=ABS(WENN(1))", u"=ABS(WENN(1))", kEnglish, french);
  CheckBothWays(u"=WENN(1;ABS(2,5))", u"=SI(1;ABS(2,5))", kGerman, french);
  CheckBothWays(u"=Z(-1)S4", u"=L(-1)C4", kGermanR1C1, french_r1c1);
  CHECK(Translated(u"=SUM(1)", kGerman, french) == "=SUM(1)");
}

TEST_CASE("references in R1C1 style") {
  const auto check = [](std::u16string_view en_a1, std::u16string_view en, std::u16string_view de) {
    CheckBothWays(en_a1, en, kEnglish, kEnglishR1C1);
    CheckBothWays(en_a1, de, kEnglish, kGermanR1C1);
    CheckBothWays(en, de, kEnglishR1C1, kGermanR1C1);
  };
  check(u"D5", u"RC", u"ZS");
  check(u"=$A$1+C6*$D4", u"=R1C1+R[1]C[-1]*R[-1]C4", u"=Z1S1+Z(1)S(-1)*Z(-1)S4");
  check(u"=A1:XFD1048576", u"=R[-4]C[-3]:R[1048571]C[16380]", u"=Z(-4)S(-3):Z(1048571)S(16380)");
  check(u"=D:D $A:E", u"=C C1:C[1]", u"=S S1:S(1)");
  check(u"=5:5,3:$7,$2:$2", u"=R,R[-2]:R7,R2", u"=Z;Z(-2):Z7;Z2");
  check(u"='a!b'!D5:D5-Sheet1!#REF!-#REF!D6", u"='a!b'!RC:RC-Sheet1!#REF!-#REF!R[1]C",
        u"='a!b'!ZS:ZS-Sheet1!#BEZUG!-#BEZUG!Z(1)S");
  check(u"=$A$1:INDEX(D5,1)", u"=R1C1:INDEX(RC,1)", u"=Z1S1:INDEX(ZS;1)");
  CHECK(Translated(u"=rc[1]+A1+R1048577+R1C16385+Rx", kEnglishR1C1, kGermanR1C1) ==
        "=zs(1)+A1+R1048577+R1C16385+Rx");
  CHECK(Translated(u"=R[-5]C", kEnglishR1C1, kEnglish) == "off sheet at 1");
  CHECK(Translated(u"=1+R:RC[16381]", kEnglishR1C1, kEnglish) == "off sheet at 5");
  CHECK(Translated(u"=RC[-4]", kEnglishR1C1, kEnglish) == "off sheet at 1");
  CHECK(Translated(u"=R[1048572]C", kEnglishR1C1, kEnglish) == "off sheet at 1");
  CHECK(Translated(u"=R[-5]C", kEnglishR1C1, kGermanR1C1) == "=Z(-5)S");
}

TEST_CASE("what cannot be read is refused with its place") {
  CHECK(Translated(u"=1.5", kGerman, kEnglish) == "unreadable at 2");
  CHECK(Translated(u"=SUM(1;2)", kEnglish, kGerman) == "unreadable at 6");
  CHECK(Translated(u"=1~2", kEnglish, kGerman) == "unreadable at 2");
  CHECK(Translated(u"=\"abc", kEnglish, kGerman) == "unclosed at 1");
  CHECK(Translated(u"=1+'abc!A1", kEnglish, kGerman) == "unclosed at 3");
  CHECK(Translated(u"=1+'abc'", kEnglish, kGerman) == "unreadable at 3");
  CHECK(Translated(u"=T[a", kEnglish, kGerman) == "unclosed at 1");
  CHECK(Translated(u"=SUM((1)", kEnglish, kGerman) == "unpaired at 1");
  CHECK(Translated(u"=(1))", kEnglish, kGerman) == "unpaired at 4");
  CHECK(Translated(u"={1", kEnglish, kGerman) == "unpaired at 1");
  CHECK(Translated(u"={1)", kEnglish, kGerman) == "unreadable at 3");
  CHECK(Translated(u"=(1}", kEnglish, kGerman) == "unpaired at 3");
  CHECK(Translated(u"={A1}", kEnglish, kGerman) == "unreadable at 2");
  CHECK(Translated(u"={{1}}", kEnglish, kGerman) == "unreadable at 2");
  CHECK(Translated(std::u16string(8192, u'1'), kEnglish, kGerman).size() == 8192);
  CHECK(Translated(std::u16string(8193, u'1'), kEnglish, kGerman) == "too long at 8192");
  std::u16string longer = u"N(1";
  while (longer.size() < 8000) longer += u"+AND(1)+PI()+MOD(5,3)";
  CHECK(Translated(longer + u")", kEnglish, kEnglish).size() > 8000);
  CHECK(Translated(longer + u")", kEnglish, kGerman).starts_with("too long"));
  CHECK(Translated(u"", kEnglish, kGerman).empty());
}
