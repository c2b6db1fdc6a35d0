#include "host/formula/evaluate.h"

#include <doctest/doctest.h>

#include <string>
#include <utility>
#include <vector>

#include "formula/sample_context.h"

namespace {

using sample::Context;
using zavhost::CellAddress;
using Table = std::vector<std::pair<std::u16string, std::string>>;

void CheckTable(Context& context, const Table& table, bool as_array = false) {
  for (const auto& [formula, expected] : table) {
    CAPTURE(zavhost::Utf8FromUtf16(formula));
    CHECK(context.Evaluate(formula, as_array) == expected);
  }
}

TEST_CASE("precedence and associativity") {
  Context context;
  CheckTable(context, {{u"-2^2", "4"},
                       {u"2^3^2", "64"},
                       {u"2^-2", "0.25"},
                       {u"2^-1^2", "0.25"},
                       {u"0-2^2", "-4"},
                       {u"--+-3", "-3"},
                       {u"50%%", "0.005"},
                       {u"2^50%", "1.4142135623731"},
                       {u"-50%", "-0.5"},
                       {u"200%^2", "4"},
                       {u"1+2*3^2", "19"},
                       {u"10-4-3", "3"},
                       {u"64/4/2", "8"},
                       {u"(1+2)*3", "9"},
                       {u"1+2&3+4", "\"37\""},
                       {u"1&2=12", "FALSE"},
                       {u"1&2=\"12\"", "TRUE"},
                       {u"1<2=TRUE", "TRUE"},
                       {u"3>2>1", "TRUE"},
                       {u"2*-3", "-6"},
                       {u"2--3", "5"},
                       {u"SUM(A1:B2:C3)", "45"},
                       {u"SUM(A1:C2 B1:B4)", "7"},
                       {u"SUM((A1,B1:C1 C1:C4))", "4"},
                       {u"SUM (1,ABS\n (-2))", "3"},
                       {u"-A1:A1", "-1"}});
}

TEST_CASE("coercion, errors and comparison") {
  Context context;
  CheckTable(context, {{u"\"3\"+\" 4.5 \"", "7.5"},
                       {u"\"50%\"*2", "1"},
                       {u"\"abc\"+1", "#VALUE!"},
                       {u"\"\"+1", "#VALUE!"},
                       {u"TRUE+TRUE", "2"},
                       {u"F1+1", "1"},
                       {u"F1", "0"},
                       {u"F1&\"\"", "\"\""},
                       {u"+\"a\"", "\"a\""},
                       {u"-\"2\"", "-2"},
                       {u"-TRUE", "-1"},
                       {u"1/0", "#DIV/0!"},
                       {u"0/0", "#DIV/0!"},
                       {u"0^0", "#NUM!"},
                       {u"0^-1", "#DIV/0!"},
                       {u"(-8)^0.5", "#NUM!"},
                       {u"1E308*10", "#NUM!"},
                       {u"1E-300*1E-10", "0"},
                       {u"1E-400", "0"},
                       {u"1/0+#N/A", "#DIV/0!"},
                       {u"#N/A+1/0", "#N/A"},
                       {u"\"abc\"+#N/A", "#VALUE!"},
                       {u"#REF!&1", "#REF!"},
                       {u"Sheet1!#REF!+1", "#REF!"},
                       {u"1.50&TRUE&\"x\"&1E+20", "\"1.5TRUEx1E+20\""},
                       {u"99<\"1\"", "TRUE"},
                       {u"\"zzz\"<FALSE", "TRUE"},
                       {u"\"abc\"=\"ABC\"", "TRUE"},
                       {u"\"\u00E4\"=\"\u00C4\"", "TRUE"},
                       {u"\"a\"<\"B\"", "TRUE"},
                       {u"\"_\"<\"A\"", "TRUE"},
                       {u"\"a\"<>\"b\"", "TRUE"},
                       {u"F1=0", "TRUE"},
                       {u"F1=\"\"", "TRUE"},
                       {u"F1=FALSE", "TRUE"},
                       {u"F1<-1", "FALSE"},
                       {u"F1=F2", "TRUE"},
                       {u"\"1\"=1", "FALSE"},
                       {u"0.1+0.2=0.3", "TRUE"},
                       {u"1.0000000000001=1", "FALSE"},
                       {u"#N/A=#N/A", "#N/A"},
                       {u"\"say \"\"hi\"\"\"", "\"say \"hi\"\""}});
}

TEST_CASE("references, implicit intersection and sheets") {
  Context context;
  context.set_caller({0, 1, 9});  // J2
  CheckTable(context, {{u"A1:A4", "4"},
                       {u"B:B*10", "50"},
                       {u"$B$1:$B$4", "5"},
                       {u"A1:C1", "#VALUE!"},
                       {u"A1:C4", "#VALUE!"},
                       {u"A3:A4", "#VALUE!"},
                       {u"@A1:A4+1", "5"},
                       {u"@{7,8}", "7"},
                       {u"_xlfn.SINGLE(A1:A4)", "4"},
                       {u"A1#", "#REF!"},
                       {u"C4:A1 B2", "5"},
                       {u"A1:A2 C1:C2", "#NULL!"},
                       {u"(A1,B1)", "#VALUE!"},
                       {u"1:A1", "#VALUE!"},
                       {u"'OTHER SHEET'!A2", "200"},
                       {u"'Other sheet'!A1:A3", "200"},
                       {u"None!A1", "#REF!"},
                       {u"Sheet1:Sheet3!A1", "#REF!"},
                       {u"[1]Sheet1!A1", "#REF!"},
                       {u"[0]Sheet1!A1", "1"},
                       {u"Table1[Column]", "#REF!"},
                       {u"A1:'Other sheet'!A2", "#VALUE!"},
                       {u"SUM(Sheet1!A1:Sheet1!B2)", "12"},
                       {u"SUM(A1:INDEX(A1:C4,2,3))", "21"},
                       {u"SUM(INDEX(A1:C4,0,2):C4)", "56"},
                       {u"SUM(2:3)", "39"},
                       {u"SUM(A:A,$C:$C)", "52"},
                       {u"XFD1048576", "0"}});
}

TEST_CASE("arguments arrive as the function takes them") {
  Context context;
  context.set_caller({0, 1, 9});
  CheckTable(context, {{u"echor(A1:B2)", "\"0!A1:B2\""},
                       {u"EchoR((A1:A2,C4),1)", "\"0!A1:A2,C4 | 1\""},
                       {u"EchoR(A1:A2*2)", "\"8\""},
                       {u"EchoR(A1:C4 B2:C9)", "\"0!B2:C4\""},
                       {u"EchoR('Other sheet'!A:A)", "\"1!A:A\""},
                       {u"EchoR(,)", "\"missing | missing\""},
                       {u"EchoR()", "\"\""},
                       {u"EchoR(1,)", "\"1 | missing\""},
                       {u"EchoR(none)", "\"#NAME?\""},
                       {u"EchoA(A1:B2,F1,A1)", "\"{1,2;4,5} | blank | 1\""},
                       {u"EchoA(A1:A3*10)", "\"{10;40;70}\""},
                       {u"EchoA(-ABS(A1:A3))", "\"{-1;-4;-7}\""},
                       {u"EchoA({1,-2;\"a\",TRUE})", "\"{1,-2;\"a\",TRUE}\""},
                       {u"EchoA((A1,B1))", "\"#VALUE!\""},
                       {u"EchoS(A1:A4)", "\"4\""},
                       {u"EchoS(A1:C1)", "\"#VALUE!\""},
                       {u"EchoS({1,2},7)", "{\"1 | 7\",\"2 | 7\"}"},
                       {u"_xll.EchoS(1)", "\"1\""},
                       {u"Book.xlam!EchoS(1)", "\"1\""},
                       {u"EchoX(1)", "#NAME?"}});
  CheckTable(context,
             {{u"EchoR(A1:A2)", "\"0!A1:A2\""},
              {u"EchoR(A1:A2*2)", "\"{2;8}\""},
              {u"EchoS(A1:A2,B1:C1)", "{\"1 | 2\",\"1 | 3\";\"4 | 2\",\"4 | 3\"}"}},
             true);
  // A registered function goes before the built-in one of its name.
  CHECK(context.Evaluate(u"ABS(-1)") == "1");
  context.Register(u"ABS", "S");
  CHECK(context.Evaluate(u"abs(-1)") == "\"-1\"");
}

TEST_CASE("arrays spread over each other") {
  Context context;
  CheckTable(context, {{u"{1,2}*{3;4}", "{3,6;4,8}"},
                       {u"{1,2,3}+{10,20}", "{11,22,#N/A}"},
                       {u"{1,2}+A1", "{2,3}"},
                       {u"-{1,\"x\"}", "{-1,#VALUE!}"},
                       {u"{ 1 , +2 ; #N/A , FALSE }", "{1,2;#N/A,FALSE}"},
                       {u"ABS({-1,2})", "{1,2}"},
                       {u"IF({TRUE,FALSE,#N/A},1,\"no\")", "{1,\"no\",#N/A}"},
                       {u"IFERROR({1,#N/A,#REF!},0)", "{1,0,0}"},
                       {u"IFNA({1,#N/A,#REF!},0)", "{1,0,#REF!}"},
                       {u"TRANSPOSE({1,2;3,4})", "{1,3;2,4}"},
                       {u"INDEX({1,2;3,4},2,0)", "{3,4}"},
                       {u"INDEX(A1:A4,{1,3})", "{1,7}"}});
  CheckTable(context,
             {{u"A1:B2", "{1,2;4,5}"},
              {u"E1:F1", "{\"x\",0}"},
              {u"A1:A2*B1:C1", "{2,3;8,12}"},
              {u"ROW(A2:A4)", "{2;3;4}"},
              {u"COLUMN(B1:C1)", "{2,3}"},
              {u"IF(A1:A3>2,A1:A3)", "{FALSE;4;7}"},
              {u"SUM(IF(A1:C4>6,1,0))", "6"},
              {u"ROW(A:A)*COLUMN(1:1)", "#VALUE!"}},
             true);
}

TEST_CASE("only the chosen branch is evaluated") {
  Context context;
  CheckTable(context, {{u"IF(TRUE,1,EchoR(1))", "1"},
                       {u"IF(0,EchoR(1),2)", "2"},
                       {u"IFERROR(3,EchoR(1))", "3"},
                       {u"IFNA(#REF!,EchoR(1))", "#REF!"},
                       {u"IF(#N/A,EchoR(1),EchoR(1))", "#N/A"},
                       {u"IF(FALSE,1)", "FALSE"},
                       {u"IF(TRUE,)", "0"},
                       {u"IF(\"true\",1,2)", "1"},
                       {u"IF(\"x\",1,2)", "#VALUE!"},
                       {u"SUM(IF(TRUE,A1:C1,A2:C2))", "6"}});
  CHECK(context.function(u"ECHOR").calls() == 0);
  CHECK(context.cells_read() == 3);
}

TEST_CASE("built-in functions") {
  Context context;
  CheckTable(context, {{u"SUM(A1:C4,1,\"2\",TRUE)", "82"},
                       {u"SUM(E1:E3)", "0"},
                       {u"SUM(E1:E4)", "#N/A"},
                       {u"SUM(\"x\")", "#VALUE!"},
                       {u"SUM({1,\"2\",TRUE},)", "1"},
                       {u"AVERAGE(A1:A4)", "5.5"},
                       {u"AVERAGE(E1:E3)", "#DIV/0!"},
                       {u"MIN(A1:C4,-3)", "-3"},
                       {u"MAX(E1:E2)", "0"},
                       {u"COUNT(A1:F4,\"7\",\"x\",)", "14"},
                       {u"COUNTA(E1:F4,\"\")", "5"},
                       {u"AND(A1:C4)", "TRUE"},
                       {u"AND(A1,0)", "FALSE"},
                       {u"OR(E1:E2)", "#VALUE!"},
                       {u"OR(FALSE,\"true\")", "TRUE"},
                       {u"NOT(2)", "FALSE"},
                       {u"ISBLANK(F1)", "TRUE"},
                       {u"ISBLANK(\"\")", "FALSE"},
                       {u"ISNUMBER(E2)", "FALSE"},
                       {u"ISTEXT(E2)", "TRUE"},
                       {u"ISNA(E4)", "TRUE"},
                       {u"ISERROR(1/0)", "TRUE"},
                       {u"ISNA(1/0)", "FALSE"},
                       {u"ERROR.TYPE(E4)", "7"},
                       {u"ERROR.TYPE(\"#N/A\")", "#N/A"},
                       {u"NA()", "#N/A"},
                       {u"ROUND(2.675,2)", "2.68"},
                       {u"ROUND(-2.5,0)", "-3"},
                       {u"ROUND(1250,-2)", "1300"},
                       {u"ROUND(2.5,)", "3"},
                       {u"ROUND(1E+300,2)", "1E+300"},
                       {u"ROUND(5,400)", "5"},
                       {u"ROUND(5,-400)", "0"},
                       {u"ROUNDUP(2.001,2)", "2.01"},
                       {u"ROUNDUP(-3.1,0)", "-4"},
                       {u"ROUNDDOWN(0.29*100,0)", "29"},
                       {u"INT(-1.5)", "-2"},
                       {u"MOD(-3,2)", "1"},
                       {u"MOD(3,-2)", "-1"},
                       {u"MOD(3,0)", "#DIV/0!"},
                       {u"SQRT(-1)", "#NUM!"},
                       {u"LN(0)", "#NUM!"},
                       {u"LOG(8,2)", "3"},
                       {u"LOG(1000)", "3"},
                       {u"LOG(8,1)", "#DIV/0!"},
                       {u"EXP(1000)", "#NUM!"},
                       {u"POWER(0,0)", "#NUM!"},
                       {u"SIGN(-2)", "-1"},
                       {u"CONCATENATE(\"a\",1,TRUE)", "\"a1TRUE\""},
                       {u"LEN(123.5)", "5"},
                       {u"ROW()&\",\"&COLUMN()", "\"10,10\""},
                       {u"ROW(C4)", "4"},
                       {u"ROWS(A1:C4)*COLUMNS(A1:C4)", "12"},
                       {u"ROWS({1;2;3})", "3"},
                       {u"INDEX(A1:C4,2,3)", "6"},
                       {u"INDEX(A1:C1,2)", "2"},
                       {u"INDEX(A1:C4,5,1)", "#REF!"},
                       {u"INDEX(A1:C4,-1,1)", "#VALUE!"},
                       {u"INDEX((A1:A2,C3:C4),2,1,2)", "12"},
                       {u"INDEX((A1,B1),1,1,3)", "#REF!"},
                       {u"_xlfn.IFNA(#N/A,1)", "1"},
                       {u"ABS()", "#VALUE!"},
                       {u"ABS(1,2)", "#VALUE!"}});
}

TEST_CASE("a shared text moves with its cell") {
  Context context;
  const CellAddress origin{0, 0, 3};  // D1
  context.set_caller({0, 2, 4});      // E3
  CHECK(context.EvaluateFrom(u"EchoR(A1,$A1,A$1,$A$1)", origin) == "\"0!B3 | 0!A3 | 0!B1 | 0!A1\"");
  CHECK(context.EvaluateFrom(u"EchoR(A1:$B2,A:$C,1:$4)", origin) == "\"0!B3:B4 | 0!B:C | 0!3:4\"");
  CHECK(context.EvaluateFrom(u"EchoR(A1048575,XFD1,XFD:XFD)", origin) ==
        "\"#REF! | #REF! | #REF!\"");
  context.set_caller({0, 0, 0});
  CHECK(context.EvaluateFrom(u"EchoR(C1,D1,$A1)", origin) == "\"#REF! | 0!A1 | 0!A1\"");
}

TEST_CASE("defined names") {
  Context context;
  context.DefineName(u"Total", u"Sheet1!$A$1:$A$4");
  context.DefineName(u"Total", u"'Other sheet'!$A$1", 1);
  context.DefineName(u"Twice", u"total*2");
  context.DefineName(u"Areas", u"Sheet1!$A$1:$A$2,Sheet1!$C$1");
  context.DefineName(u"Above", u"Sheet1!A1048576");
  context.DefineName(u"Loop", u"Pool+1");
  context.DefineName(u"Pool", u"IF(TRUE,LOOP)");
  context.DefineName(u"Broken", u"1+");
  CheckTable(context, {{u"SUM(TOTAL)", "22"},
                       {u"'Other sheet'!Total", "100"},
                       {u"[0]!Twice", "{2;8;14;20}"},
                       {u"Book1.xlsx!Areas", "#VALUE!"},
                       {u"SUM(Twice)", "44"},
                       {u"SUM(Areas)", "8"},
                       {u"EchoR(Above)", "\"0!J9\""},
                       {u"None!Total", "#NAME?"},
                       {u"missing+1", "#NAME?"},
                       {u"Loop", "error: name Loop refers to itself"},
                       {u"IF(FALSE,Loop,1)", "1"},
                       {u"Broken", "error: name Broken: the formula is not complete"}});
  context.set_caller({0, 1, 9});
  CHECK(context.Evaluate(u"Total") == "4");
}

TEST_CASE("what a formula uses") {
  Context context;
  context.DefineName(u"Total", u"Sheet1!$A$1:$A$4+Loop");
  context.DefineName(u"Loop", u"Total+'Other sheet'!$A$1");
  const auto formula = zavhost::ParseFormula(
      u"_xll.ZavMean(A1:INDEX(B1:B3,2))+zavmean(Total)+_xlfn.IFNA(Sheet1!B2:Sheet1!C1,[1]S!A1)");
  CHECK(zavhost::FunctionsCalled(*formula) ==
        std::vector<std::u16string>{u"INDEX", u"ZavMean", u"IFNA"});
  std::vector<std::string> shown;
  const CellAddress origin{0, 0, 0};
  for (const auto& reference :
       zavhost::ReferencesOf(*formula, origin, {0, 1, 0}, context.workbook())) {
    shown.push_back(sample::Shown(reference));
  }
  CHECK(shown == std::vector<std::string>{"0!A2", "0!B2:B4", "0!B2:C3", "0!A1:A4", "1!A1"});
}

}  // namespace
