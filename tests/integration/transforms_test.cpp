// Variables made of others, as a workbook's user meets them. An empty cell of an array result shows
// as 0.
#include <doctest/doctest.h>

#include <string>
#include <tuple>

#include "integration/running_add_in.h"

namespace zavrel::tests {
namespace {

zavhost::Workbook SmallBook() {
  return BookOf({"A: 4 | | \"4\" | TRUE | #N/A | -8", "B: Male | male | Female | | #N/A | TRUE",
                 "C: 2 | 12 | \"2\" | 2 | 0", "D: | #N/A | 1 | TRUE | 0",
                 "E: #DIV/0! | | text | a | #NULL!", "F: a | b | a", "G: 1 | 2 | 3 | 4 | 5"});
}

std::string Interaction(const std::string& x, const std::string& y) {
  return "ZavInteraction(" + x + ",\"\"," + y + ",\"\")";
}

}  // namespace

TEST_CASE("standardizing, logarithms and powers, and each cell's failure") {
  InEachHost(SmallBook(), [](zavhost::Engine& engine) {
    CheckFormulas(engine, R"(
        ZavStandardize(5,3,4) -> 0.5 | ZavStandardize(5,3,-4) -> -0.5
        ZavStandardize(1.7E+308,-1.7E+308,0) -> #DIV/0! | ZavStandardize(1.7E+308,-1.7E+308,4) -> #NUM!
        ZavStandardize(3,3,0) -> #DIV/0!
        ZavStandardize(1.7E+308,3,0) -> #DIV/0! | ZavStandardize(1E+300,0,1E-300) -> #NUM!
        ZavStandardize(1,3,) -> #VALUE! | ZavLn(EXP(1)) ~ 1
        ZavLn(0) -> #NUM! | ZavLn(-1) -> #NUM! | ZavLn() -> #VALUE!
        ZavPower(A1:A6,0.5) -> 2;0;#VALUE!;#VALUE!;#N/A;#NUM!;
        ZavPower(A1:A6,2) -> 16;0;#VALUE!;#VALUE!;#N/A;64;
        ZavPower(A1:A6,1E+6) -> #NUM!;0;#VALUE!;#VALUE!;#N/A;#NUM!;
        ZavPower({0;2},-1) -> #NUM!;0.5; | ZavPower(9,0.5) -> 3; | ZavPower(C1:D2,2) -> 4;0;144;#N/A;
        ZavPower(G:G,2) -> 1;4;9;16;25; | ZavSum(ZavPower(G:G,2)) -> 55
        ZavLog({100,0,1,#DIV/0!,""},10) -> 2;#NUM!;0;#DIV/0!;#VALUE!;
        ZavLog({100,0,1,#DIV/0!,""},-10) -> #VALUE!;#VALUE!;#VALUE!;#DIV/0!;#VALUE!;
        ZavLog({100,0,1,#DIV/0!,""},1) -> #NUM!;#NUM!;#NUM!;#DIV/0!;#VALUE!;
        ZavLog(A1:A6,2) -> 2;0;#VALUE!;#VALUE!;#N/A;#NUM!; | ZavPower(Z:Z,2) -> 0
        ROUND(ZavLog(100,0.5),10) -> -6.6438561898;)");
    CheckFormulas(engine, "#VALUE!", R"(
        ZavPower(A1:A6,"x") | ZavPower(A1:A6,) | ZavLog(A1:A6,"x") | ZavLog(A1:A6,))");
  });
}

TEST_CASE("an indicator of a category, whatever its letter case") {
  InEachHost(SmallBook(), [](zavhost::Engine& engine) {
    CheckFormulas(engine, R"(
        ZavDummy(B1:B6,"MALE") -> 1;1;0;0;#N/A;#VALUE!; | ZavDummy(B1:B6,"") -> 0;0;0;0;#N/A;#VALUE!;
        ZavDummy({"Male ";""},"male") -> 0;0; | ZavDummy(B1:B5,) -> 0 | ZavDummy(B1:B5,B5) -> #VALUE!
        ZavDummy({"ÉTÉ","тУлА","STRASSE","ETE"},"été") -> 1;0;0;0;
        ZavDummy({"тУлА","Т"},"ТУЛА") -> 1;0; | ZavDummy({"𐐨","𐐩"},"𐐀") -> 1;0;
        ZavDummy(C1:C5,2) -> 1;0;1;1;0; | ZavDummy(C:C,"12") -> 0;1;0;0;0;
        ZavDummy(C1:C5,Z1) -> 0;0;0;0;0;)");
  });
}

TEST_CASE("a product of indicators and numbers, of which the leftmost that fails decides") {
  InEachHost(SmallBook(), [](zavhost::Engine& engine) {
    CheckFormulas(engine, R"(
        ZavInteraction({"a","B","b","c"},"b",{10;20;30;40},"") -> 0;20;30;0;
        ZavInteraction({"a","B","b","c"},"",{10;20;30;40},"") -> #VALUE!;#VALUE!;#VALUE!;#VALUE!;
        ZavInteraction({"a","B","b","c"},"b",{"a","B","b","c"},"c") -> 0;0;0;0;
        ZavInteraction({10;20},"",{10;20},"",{10;20}) -> 1000;8000;
        ZavInteraction({1;2;3},Z1,{"b";"B";"c"},"b",,"b",,,,,,,{"b";"B";"b"},"b") -> 1;2;0;
        ZavInteraction({10;20;30},30,{10;20;30},"") -> 0;0;30;
        ZavInteraction({1E+308;-1E+308;0;1},"",{10;20;30;40},"") -> #NUM!;#NUM!;0;40;
        ZavInteraction(D1:D5,"",E1:E5,"") -> 0;#N/A;#VALUE!;#VALUE!;#NULL!;
        ZavInteraction(E1:E5,"",D1:D5,"") -> #DIV/0!;0;#VALUE!;#VALUE!;#NULL!;
        ZavInteraction(E1:E5,"a",D1:D5,"") -> #DIV/0!;0;0;#VALUE!;#NULL!;
        ZavInteraction(F:F,"a",G:G,"") -> 1;0;3;0;0; | ZavInteraction(G1:G5,"",F:F,"a") -> 1;0;3;0;0;
        ZavInteraction(F:F,"a",G1:G3,"") -> 1;0;3;)");
    CheckFormulas(engine, "#VALUE!", R"(
        ZavInteraction(G:G,"",G1:G3,"") | ZavInteraction(G1:G5,"",G1:G3,"")
        ZavInteraction(F:F,"a",,"") | ZavInteraction(F:F,,G:G,"") | ZavInteraction(F1:F3,"a"))");
    Edit(engine, "F2 = A | F4 = a");
    CheckFormulas(engine, "ZavInteraction(F:F,\"a\",G:G,\"\") -> 1;2;3;4;0;");
    Edit(engine, "F2 = 2 | G2 = \"2\"");
    CheckFormulas(engine, R"(
        ZavInteraction(F1:F2,"2",G1:G2,"") -> 0;#VALUE!; | ZavInteraction(F1:F2,"2",G1:G2,"2") -> 0;1;
        ZavDummy(F1:F2,"2") -> 0;1;)");
  });
}

TEST_CASE("variables go together only where their cells belong together") {
  // A:B is used to row 3, D:F to row 2, H:I to row 4; of the other sheet rows 21:22 and 41:42 to
  // column 3, 31:32 to 4, 51:53 to 2.
  zavhost::Workbook book = BookOf(
      {"A: 1 | 2 | 3", "B: | | 20", "D: | 4", "F: | 5", "H: | | 7", "I: | | 8 | 6", "Rows!A: "});
  for (const auto& [row, column, number] : std::initializer_list<std::tuple<int, int, double>>{
           {20, 1, 5}, {20, 2, 7}, {31, 1, 2}, {31, 3, 8}, {41, 2, 9}, {50, 1, 10}})
    book.sheets[1].Set(row, column, number);
  InEachHost(book, [](zavhost::Engine& engine) {
    CheckFormulas(engine, R"(
        ZavInteraction(A:B,"",H:I,"") -> 0;0;0;0;21;160;0;0; | ZavInteraction(A:A,"",I:I,"") -> 0;0;24;0;
        ZavInteraction(Rows!21:21,"",Rows!32:32,"") -> 0;10;0;0;
        ZavInteraction(Rows!21:22,"",Rows!41:42,"") -> 0;0;0;0;0;0;
        ZavInteraction(A:B,"",H1:I3,"") -> 0;0;0;0;21;160;)");
    // As many cells in rows of another length, or cut in different places, or used to different
    // columns, or in more rows; one row and several.
    for (const auto& [one, other] : {std::pair{"A:B", "D:F"},
                                     {"A:B", "A61:C62"},
                                     {"A:A", "A61:A62"},
                                     {"(A:A,I:I)", "(I:I,A:A)"},
                                     {"Rows!21:22", "Rows!31:32"},
                                     {"Rows!21:22", "Rows!51:53"},
                                     {"Rows!21:21", "Rows!51:53"},
                                     {"Rows!21:22", "A61:C62"}}) {
      for (const auto& [x, y] : {std::pair{one, other}, {other, one}})
        CheckFormulas(engine, "#VALUE!", Interaction(x, y));
    }
  });
}

}  // namespace zavrel::tests
