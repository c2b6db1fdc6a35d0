#include "host/formula/evaluate.h"

#include <doctest/doctest.h>

#include <string>
#include <vector>

#include "formula/sample_context.h"
#include "support/workbooks.h"

namespace {

using sample::Context;
using zavhost::CellAddress;

/// Formulas beside what they give: "1+2 -> 3 | 1/0 -> #DIV/0!".
void CheckTable(Context& context, std::string_view table, bool as_array = false) {
  for (const std::string& text : zavhost::tests::CasesIn(table)) {
    INFO(text);
    const auto [formula, expected] = zavhost::tests::SplitAt(text, " -> ");
    CHECK(context.Evaluate(zavhost::Utf16FromUtf8(formula), as_array) == expected);
  }
}

TEST_CASE("precedence and associativity") {
  Context context;
  CheckTable(context, R"(
      -2^2 -> 4 | 2^3^2 -> 64 | 2^-2 -> 0.25 | 2^-1^2 -> 0.25 | 0-2^2 -> -4 | --+-3 -> -3
      50%% -> 0.005 | 2^50% -> 1.4142135623731 | -50% -> -0.5 | 200%^2 -> 4 | 1+2*3^2 -> 19
      10-4-3 -> 3 | 64/4/2 -> 8 | (1+2)*3 -> 9 | 1+2&3+4 -> "37" | 1&2=12 -> FALSE
      1&2="12" -> TRUE | 1<2=TRUE -> TRUE | 3>2>1 -> TRUE | 2*-3 -> -6 | 2--3 -> 5
      SUM(A1:B2:C3) -> 45 | SUM(A1:C2 B1:B4) -> 7 | SUM((A1,B1:C1 C1:C4)) -> 4 | -A1:A1 -> -1)");
  CHECK(context.Evaluate(u"SUM (1,ABS\n (-2))") == "3");
}

TEST_CASE("coercion, errors and comparison") {
  Context context;
  CheckTable(context, R"(
      "3"+" 4.5 " -> 7.5 | "50%"*2 -> 1 | "abc"+1 -> #VALUE! | ""+1 -> #VALUE! | TRUE+TRUE -> 2
      F1+1 -> 1 | F1 -> 0 | F1&"" -> "" | +"a" -> "a" | -"2" -> -2 | -TRUE -> -1 | 1/0 -> #DIV/0!
      0/0 -> #DIV/0! | 0^0 -> #NUM! | 0^-1 -> #DIV/0! | (-8)^0.5 -> #NUM! | 1E308*10 -> #NUM!
      1E-300*1E-10 -> 0 | 1E-400 -> 0 | 1/0+#N/A -> #DIV/0! | #N/A+1/0 -> #N/A
      "abc"+#N/A -> #VALUE! | #REF!&1 -> #REF! | Sheet1!#REF!+1 -> #REF!
      1.50&TRUE&"x"&1E+20 -> "1.5TRUEx1E+20" | 99<"1" -> TRUE | "zzz"<FALSE -> TRUE
      "abc"="ABC" -> TRUE | "ä"="Ä" -> TRUE | "a"<"B" -> TRUE | "_"<"A" -> TRUE | "a"<>"b" -> TRUE | F1=0 -> TRUE
      F1="" -> TRUE | F1=FALSE -> TRUE | F1<-1 -> FALSE | F1=F2 -> TRUE | "1"=1 -> FALSE
      0.1+0.2=0.3 -> TRUE | 1.0000000000001=1 -> FALSE | #N/A=#N/A -> #N/A
      "say ""hi""" -> "say "hi""
      0.5-0.4-0.1 -> 0 | (0.5-0.4-0.1) -> -2.77555756156289E-17 | (0.5-0.4-0.1)*1 -> -2.77555756156289E-17
      0.1+0.2-0.3 -> 0 | 4.35*100-435 -> 0 | SUM({1.1,1}-{1,1}) -> 0.1 | 1-0.999999999999 -> 9.99977878279878E-13
      "0.3"-(0.1+0.2) -> 0)");
}

TEST_CASE("references, implicit intersection and sheets") {
  Context context;
  context.set_caller({0, 1, 9});  // J2
  CheckTable(context, R"(
      A1:A4 -> 4 | B:B*10 -> 50 | $B$1:$B$4 -> 5 | A1:C1 -> #VALUE! | A1:C4 -> #VALUE!
      A3:A4 -> #VALUE! | @A1:A4+1 -> 5 | @{7,8} -> 7 | _xlfn.SINGLE(A1:A4) -> 4 | SUM(A1#) -> 22 | A2# -> #REF!
      C4:A1 B2 -> 5 | A1:A2 C1:C2 -> #NULL! | (A1,B1) -> #VALUE! | 1:A1 -> #VALUE!
      'OTHER SHEET'!A2 -> 200 | 'Other sheet'!A1:A3 -> 200 | None!A1 -> #REF!
      Sheet1:Sheet3!A1 -> #REF! | [1]Sheet1!A1 -> #REF! | [0]Sheet1!A1 -> 1
      Table1[Column] -> #REF! | A1:'Other sheet'!A2 -> #VALUE! | SUM(Sheet1!A1:Sheet1!B2) -> 12
      SUM(A1:INDEX(A1:C4,2,3)) -> 21 | SUM(INDEX(A1:C4,0,2):C4) -> 56 | SUM(2:3) -> 39
      SUM(A:A,$C:$C) -> 52 | XFD1048576 -> 0)");
}

TEST_CASE("functions that choose evaluate only what they need, for each element of an array") {
  Context context;
  CheckTable(context, R"(
      IFS(A1=2,1/0,A1=1,"one") -> "one" | IFS(FALSE,1) -> #N/A | IFS(#REF!,1) -> #REF!
      SWITCH(A2,1,1/0,4,"four") -> "four" | SWITCH(9,1,"a","none") -> "none" | SWITCH(9,1,"a") -> #N/A
      SWITCH("B","a",1,"b",2) -> 2 | SWITCH(#N/A,1,2) -> #N/A | SWITCH(1,1,,9) -> 0
      CHOOSE(2,1/0,"b") -> "b" | CHOOSE(2.9,1,2,3) -> 2 | CHOOSE(3,1,2) -> #VALUE!
      CHOOSE("x",1) -> #VALUE! | SUM(CHOOSE(2,A1:A4,B1:B4)) -> 26 | SUM(A1:CHOOSE(2,A2,A3)) -> 12
      CHOOSE({2,1,3},"a",A1) -> {1,"a",#VALUE!} | IFS({1,0},"a",{0,1},"b") -> {"a","b"}
      SWITCH({1,2,3},1,"a",2,"b","-") -> {"a","b","-"} | ROWS(IFERROR(1/0,A1:A3)) -> 3)",
             true);
}

TEST_CASE("a function of single values is not called for the elements of arrays without end") {
  Context context;
  CHECK(context.Evaluate(u"SUM(COUNTIF(1:1048576,SEQUENCE(20)))", true) == "13");
  context.Fill("XFD1048576", "1");
  CHECK(context.Evaluate(u"SUM(COUNTIF(1:1048576,SEQUENCE(20)))", true) == "#VALUE!");
}

TEST_CASE("LET gives names to values") {
  Context context;
  context.DefineName(u"x", u"100");
  context.DefineName(u"usesX", u"x+1");
  CheckTable(context, R"(
      LET(x,5,x+1) -> 6 | _xlfn.LET(_xlpm.a,2,_xlpm.b,_xlpm.a*3,_xlpm.a+_xlpm.b) -> 8
      LET(x,1,LET(x,2,x)+x) -> 3 | LET(X,7,x) -> 7 | LET(x,1,usesX+x) -> 102 | LET(x,1,2)+x -> 102
      SUM(LET(r_,A1:B2,r_)) -> 12 | ROWS(LET(t,A1:A3,t)) -> 3 | LET(x,A1:A2,x*10) -> {10;40}
      LET(x,1/0,2) -> 2 | LET(x,1/0,x) -> #DIV/0! | LET(1,2,3) -> #NAME? | LET(x,1,y,2) -> #VALUE!)",
             true);
}

TEST_CASE("structured references") {
  Context context;  // A1:C4 as a table with headings in row 1 and totals in row 4
  context.DefineTable({u"Sales", 0, {0, 0, 3, 2}, 1, 1, {u"Item", u"Unit price", u"Tax[1]"}});
  context.DefineTable({u"Bare", 1, {0, 0, 2, 0}, 0, 0, {u"Column1"}});
  CheckTable(context, R"(
      Sales[Item] -> {4;7} | sales[ITEM] -> {4;7} | SUM(Sales[]) -> 39 | SUM(Sales) -> 39
      SUM(Sales[#All]) -> 78 | SUM(Sales[#Data]) -> 39 | Sales[#Headers] -> {1,2,3}
      Sales[[#Totals],[Unit price]] -> 11 | Sales[[Item]:[Unit price]] -> {4,5;7,8}
      Sales[[#Headers],[#Data],[Unit price]] -> {2;5;8} | Sales[[#Data],[#Totals],[Item]] -> {4;7;10}
      Sales[[#Headers],[#Totals]] -> #REF! | Sales[Tax'[1']] -> {6;9} | Sales[ [#All], [Item] ] -> {1;4;7;10}
      Sales[None] -> #REF! | None[Item] -> #REF! | Bare[Column1] -> {100;200;300} | Bare[#Headers] -> #REF!
      Sales[[#This Row],[Item]] -> #VALUE! | Sales[@Item] -> #VALUE! | [Item] -> #REF!
      SUM(Sales[Item]:Sales[Unit price]) -> 24)",
             true);
  context.set_caller({0, 2, 1});  // B3
  CheckTable(context, R"(
      Sales[[#This Row],[Item]] -> 7 | Sales[@[Unit price]] -> 8 | Sales[@Item] -> 7 | [@Item]*2 -> 14
      SUM(Sales[@]) -> 24 | SUM([Item]) -> 11 | Sales[[#This Row],[Item]:[Unit price]] -> {7,8})",
             true);
  context.set_caller({0, 2, 9});
  CheckTable(context, "Sales[@Item] -> 7 | Sales[Item] -> 7");
}

TEST_CASE("arguments arrive as the function takes them") {
  Context context;
  context.set_caller({0, 1, 9});
  CheckTable(context, R"(
      echor(A1:B2) -> "0!A1:B2" | EchoR((A1:A2,C4),1) -> "0!A1:A2,C4 & 1" | EchoR(A1:A2*2) -> "8"
      EchoR(A1:C4 B2:C9) -> "0!B2:C4" | EchoR('Other sheet'!A:A) -> "1!A:A"
      EchoR(,) -> "missing & missing" | EchoR() -> "" | EchoR(1,) -> "1 & missing"
      EchoR(none) -> "#NAME?" | EchoA(A1:B2,F1,A1) -> "{1,2;4,5} & blank & 1"
      EchoA(A1:A3*10) -> "{10;40;70}" | EchoA(-ABS(A1:A3)) -> "{-1;-4;-7}"
      EchoA({1,-2;"a",TRUE}) -> "{1,-2;"a",TRUE}" | EchoA((A1,B1)) -> "#VALUE!"
      EchoS(A1:A4) -> "4" | EchoS(A1:C1) -> "#VALUE!" | EchoS({1,2},7) -> {"1 & 7","2 & 7"}
      _xll.EchoS(1) -> "1" | Book.xlam!EchoS(1) -> "1" | EchoX(1) -> #NAME?)");
  CheckTable(context, R"(
      EchoR(A1:A2) -> "0!A1:A2" | EchoR(A1:A2*2) -> "{2;8}"
      EchoS(A1:A2,B1:C1) -> {"1 & 2","1 & 3";"4 & 2","4 & 3"})",
             true);
  // A registered function goes before the built-in one of its name.
  CHECK(context.Evaluate(u"ABS(-1)") == "1");
  context.Register(u"ABS", "S");
  CHECK(context.Evaluate(u"abs(-1)") == "\"-1\"");
}

TEST_CASE("arrays spread over each other") {
  Context context;
  CheckTable(context, R"(
      {1,2}*{3;4} -> {3,6;4,8} | {1,2,3}+{10,20} -> {11,22,#N/A} | {1,2}+A1 -> {2,3}
      -{1,"x"} -> {-1,#VALUE!} | { 1 , +2 ; #N/A , FALSE } -> {1,2;#N/A,FALSE}
      ABS({-1,2}) -> {1,2} | IF({TRUE,FALSE,#N/A},1,"no") -> {1,"no",#N/A}
      IFERROR({1,#N/A,#REF!},0) -> {1,0,0} | IFNA({1,#N/A,#REF!},0) -> {1,0,#REF!}
      TRANSPOSE({1,2;3,4}) -> {1,3;2,4} | INDEX({1,2;3,4},2,0) -> {3,4}
      INDEX(A1:A4,{1,3}) -> {1,7})");
  CheckTable(context, R"(
      A1:B2 -> {1,2;4,5} | E1:F1 -> {"x",0} | A1:A2*B1:C1 -> {2,3;8,12} | ROW(A2:A4) -> {2;3;4}
      COLUMN(B1:C1) -> {2,3} | IF(A1:A3>2,A1:A3) -> {FALSE;4;7} | SUM(IF(A1:C4>6,1,0)) -> 6
      ROW(A:A)*COLUMN(1:1) -> #VALUE!)",
             true);
}

TEST_CASE("only the chosen branch is evaluated") {
  Context context;
  CheckTable(context, R"(
      IF(TRUE,1,EchoR(1)) -> 1 | IF(0,EchoR(1),2) -> 2 | IFERROR(3,EchoR(1)) -> 3
      IFNA(#REF!,EchoR(1)) -> #REF! | IF(#N/A,EchoR(1),EchoR(1)) -> #N/A | IF(FALSE,1) -> FALSE
      IF(TRUE,) -> 0 | IF("true",1,2) -> 1 | IF("x",1,2) -> #VALUE!
      SUM(IF(TRUE,A1:C1,A2:C2)) -> 6)");
  CHECK(context.function(u"ECHOR").calls() == 0);
  CHECK(context.cells_read() == 3);
}

TEST_CASE("built-in functions") {
  Context context;
  CheckTable(context, R"(
      SUM(A1:C4,1,"2",TRUE) -> 82 | SUM(E1:E3) -> 0 | SUM(E1:E4) -> #N/A | SUM("x") -> #VALUE!
      SUM({1,"2",TRUE},) -> 1 | AVERAGE(A1:A4) -> 5.5 | AVERAGE(E1:E3) -> #DIV/0!
      MIN(A1:C4,-3) -> -3 | MAX(E1:E2) -> 0 | COUNT(A1:F4,"7","x",) -> 14 | COUNTA(E1:F4,"") -> 5
      AND(A1:C4) -> TRUE | AND(A1,0) -> FALSE | OR(E1:E2) -> #VALUE! | OR(FALSE,"true") -> TRUE
      NOT(2) -> FALSE | ISBLANK(F1) -> TRUE | ISBLANK("") -> FALSE | ISNUMBER(E2) -> FALSE
      ISTEXT(E2) -> TRUE | ISNA(E4) -> TRUE | ISERROR(1/0) -> TRUE | ERROR.TYPE(E4) -> 7 | ERROR.TYPE("#N/A") -> #N/A
       ISNA(1/0) -> FALSE
      NA() -> #N/A | ROUND(2.675,2) -> 2.68 | ROUND(-2.5,0) -> -3 | ROUND(1250,-2) -> 1300
      ROUND(2.5,) -> 3 | ROUND(1E+300,2) -> 1E+300 | ROUND(5,400) -> 5 | ROUND(5,-400) -> 0
      ROUNDUP(2.001,2) -> 2.01 | ROUNDUP(-3.1,0) -> -4 | ROUNDDOWN(0.29*100,0) -> 29
      INT(-1.5) -> -2 | MOD(-3,2) -> 1 | MOD(3,-2) -> -1 | MOD(3,0) -> #DIV/0! | SQRT(-1) -> #NUM!
      LN(0) -> #NUM! | LOG(8,2) -> 3 | LOG(1000) -> 3 | LOG(8,1) -> #DIV/0! | EXP(1000) -> #NUM!
      POWER(0,0) -> #NUM! | SIGN(-2) -> -1 | CONCATENATE("a",1,TRUE) -> "a1TRUE" | LEN(123.5) -> 5
      ROW()&","&COLUMN() -> "10,10" | ROW(C4) -> 4 | ROWS(A1:C4)*COLUMNS(A1:C4) -> 12
      ROWS({1;2;3}) -> 3 | INDEX(A1:C4,2,3) -> 6 | INDEX(A1:C1,2) -> 2 | INDEX(A1:C4,5,1) -> #REF!
      INDEX(A1:C4,-1,1) -> #VALUE! | INDEX((A1:A2,C3:C4),2,1,2) -> 12
      INDEX((A1,B1),1,1,3) -> #REF! | _xlfn.IFNA(#N/A,1) -> 1 | ABS() -> #VALUE!
      ABS(1,2) -> #VALUE!)");
}

TEST_CASE("a shared text moves with its cell") {
  Context context;
  const CellAddress origin{0, 0, 3};  // D1
  context.set_caller({0, 2, 4});      // E3
  CHECK(context.EvaluateFrom(u"EchoR(A1,$A1,A$1,$A$1)", origin) == "\"0!B3 & 0!A3 & 0!B1 & 0!A1\"");
  CHECK(context.EvaluateFrom(u"EchoR(A1:$B2,A:$C,1:$4)", origin) == "\"0!B3:B4 & 0!B:C & 0!3:4\"");
  CHECK(context.EvaluateFrom(u"EchoR(A1048575,XFD1,XFD:XFD)", origin) ==
        "\"#REF! & #REF! & #REF!\"");
  context.set_caller({0, 0, 0});
  CHECK(context.EvaluateFrom(u"EchoR(C1,D1,$A1)", origin) == "\"#REF! & 0!A1 & 0!A1\"");
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
  CheckTable(context, R"(
      SUM(TOTAL) -> 22 | 'Other sheet'!Total -> 100 | [0]!Twice -> {2;8;14;20}
      Book1.xlsx!Areas -> #VALUE! | SUM(Twice) -> 44 | SUM(Areas) -> 8 | EchoR(Above) -> "0!J9"
      None!Total -> #NAME? | missing+1 -> #NAME? | Loop -> error: name Loop refers to itself
      IF(FALSE,Loop,1) -> 1 | Broken -> error: name Broken: the formula is not complete)");
  context.set_caller({0, 1, 9});
  CHECK(context.Evaluate(u"Total") == "4");
}

TEST_CASE("what a formula reads") {
  Context context;
  context.DefineName(u"Total", u"Sheet1!$A$1:$A$4+Loop");
  context.DefineName(u"Loop", u"Total+'Other sheet'!$A$1");
  const auto formula = zavhost::ParseFormula(
      u"_xll.ZavMean(A1:INDEX(B1:B3,2))+zavmean(Total)+_xlfn.IFNA(Sheet1!B2:Sheet1!C1,[1]S!A1)");
  std::vector<std::string> shown;
  const CellAddress origin{0, 0, 0};
  for (const auto& reference :
       zavhost::ReferencesOf(*formula, origin, {0, 1, 0}, context.workbook())) {
    shown.push_back(sample::Shown(reference));
  }
  CHECK(shown == std::vector<std::string>{"0!A2", "0!B2:B4", "0!B2:C3", "0!A1:A4", "1!A1"});
}

}  // namespace
