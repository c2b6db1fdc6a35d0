// Categories, stacked and multi-range data as a workbook's user meets them.
#include <doctest/doctest.h>

#include <string>

#include "integration/running_add_in.h"

namespace zavrel::tests {
namespace {

zavhost::Workbook SmallBook() {
  return BookOf({"A: North | \"north \" | | South | #N/A | \"a\nb\"", "B: 1 | 2 | 3 | 4 | 5 | 6",
                 "C: 10 | 9 | 10 | TRUE | 9 | \"9\"", "Other!A: 7 | 8 | 9", "X: x | | | | | | x",
                 "Y: \"a\nb\" | \"A b\" | \"a\r\nb\" | \"a  B\" | \"\u00A0NORTH\r\n\""});
}

}  // namespace

TEST_CASE("categories counted, named and compared") {
  InEachHost(SmallBook(), [](zavhost::Engine& engine) {
    CheckFormulas(engine, R"(
        ZavCountCategories(A1:A6) -> 3 | ZavCountCategories(A:A) -> 3 | ZavCountCategories(Z1:Z9) -> 0
        ZavCountCategories(C1:C6) -> 3 | ZavCountCategories((A1:A2,C1:C3)) -> 3
        ZavCountCategories({1,"1","x";TRUE,"true",""}) -> 3
        ZavCategoryOccurrenceCount(A1:A6,"NORTH") -> 2 | ZavCategoryOccurrenceCount(A1:A6," A B") -> 1
        ZavCategoryOccurrenceCount(A1:A6,"East") -> 0 | ZavCategoryOccurrenceCount(A1:A6,A3) -> 0
        ZavCategoryOccurrenceCount(A1:A6,A5) -> #VALUE! | ZavCategoryOccurrenceCount(A1:A6,) -> #VALUE!
        ZavCategoryOccurrenceCount(C1:C6,9) -> 3 | ZavCategoryOccurrenceCount(C:C,C4) -> 1
        ZavCategoryNames(A1:A6) -> North;South;a b; | ZavCategoryNames(C1:C6) -> 10;9;TRUE;
        ZavCategoryNames(Y1:Y5) -> NORTH;a  b;a b;
        ZavCategoryOccurrenceCount(A1:A6,Y5) -> 2 | ZavCategoryOccurrenceCount(Y1:Y5,Y1) -> 2
        ZavCategoryNames({"été","ÉTÉ","Straße","STRASSE","straße","𐐀x","𐐨X"}) -> STRASSE;Straße;été;𐐀x;
        ZavCategoryNames({"Ａ","😀","alpha","Zeta","alp"}) -> Zeta;alp;alpha;😀;Ａ;
        ZavCategoryNames((A3,A5)) -> #N/A; | ZavCategoryNames({"","  "}) -> #N/A;
        ZavCategoryNames(Z1:Z9) -> #N/A; | ZavCategoryIndices(A1:A6,"north") -> 1;
        ZavCategoryIndices(A1:A6,"East") -> #N/A)");
    CheckFormulas(engine, "TRUE", R"(
        ZavCategoryNameCompare("abc","ABC") | ZavCategoryNameCompare(A1,A2)
        ZavCategoryNameCompare(A6," A B ") | ZavCategoryNameCompare("Straße","STRAßE")
        ZavCategoryNameCompare("ÉTÉ","été") | ZavCategoryNameCompare(9,"9"))");
    CheckFormulas(engine, "FALSE", "ZavCategoryNameCompare(A1,A4) | ZavCategoryNameCompare(A1,A3)");
    CheckFormulas(engine, "#VALUE!", R"(
        ZavCategoryNameCompare(A3,A1) | ZavCategoryNameCompare(" "," ")
        ZavCategoryNameCompare(A1,A5))");
  });
}

TEST_CASE("names and positions over more cells than there are") {
  CheckEntered(SmallBook(), R"(
      E1:E5 = ZavCategoryNames(A1:A6) -> North;South;a b;#N/A;#N/A;
      F1:G1 = ZavCategoryNames(A1:A6) -> North,South;
      K1:K3 = ZavCategoryIndices(Y1:Y5,"A  b") -> 3;4;#N/A;
      L1:L2 = ZavCategoryIndices({"Straße","STRASSE","straße"},"STRAßE") -> 1;3;
      F2:G3 = ZavCategoryIndices(C1:C6,"9") -> 2,5;6,#N/A;
      F4:G5 = ZavCategoryIndices(C1:C6,"none") -> #N/A,#N/A;#N/A,#N/A;)");
}

TEST_CASE("a handle of stacked data in the place of a range") {
  InEachHost(SmallBook(), [](zavhost::Engine& engine) {
    const std::string handle = Shown(engine, "ZavDestack(B1:B6,A1:A6,\"NORTH\")");
    CHECK((handle.size() == 11 && handle.starts_with("\x01\x02")));
    CHECK(Shown(engine, "ZavDestack(B1:B6,A1:A6,\"NORTH\",,)") == handle);
    CHECK(Shown(engine, "ZavDestack(B1:B6,A1:A6,\"NORTH\",C1:C6,9)") != handle);
    CheckFormulas(engine, R"(
        ZavSum(ZavDestack(B1:B6,A1:A6,"NORTH")) -> 3 | ZavMean(ZavDestack(B:B,A:A,A1)) -> 1.5
        ZavSum(ZavDestack(B1:B6,A1:A6,A1,C1:C6,9),100,ZavDestack(B1:B6,C1:C6,10)) -> 106
        ZavPercentile(ZavDestack(B1:B6,C1:C6,"9"),1) -> 6
        ZavPairCount(ZavDestack(B1:B6,C1:C6,9),B1:B6) -> 3
        ZavCountCellsByType(ZavDestack(B1:B6,C1:C6,9),0) -> 3
        ZavGetCellValues(ZavDestack(A1:A6,C1:C6,10),2) -> North;
        ZavCategoryNames(ZavDestack(A1:A6,C1:C6,9)) -> a b;north;
        ZavCountCategories(ZavDestack(A1:A6,C1:C6,TRUE)) -> 1
        ZavMean(ZavDestack({1;2;3},{"a";"b";"A"},"a")) -> 2
        ZavSum(ZavDestack(ZavDestack(B1:B6,C1:C6,9),{"x";"y";"x"},"x")) -> 8
        ZavSum(ZavDestack(ZavMulti(0,B1:B2,Other!A1:A3),{1;2;1;2;1},1)) -> 17
        ZavSum(ZavMulti(0,ZavDestack(B1:B6,C1:C6,10),B6)) -> 10
        ZavCountCellsByType(ZavDestack(B:B,X:X,"x"),0) -> 2 | ZavCount(ZavDestack(B:B,X:X,"x")) -> 1
        ZavSum(ZavDestack(B:B,X:X,"x",C:C,10)) -> 1
        ZavCount(ZavDestack(B1:B6,A1:A6,"East")) -> 0 | ZavCount(ZavDestack(B1:B6,A1:A6,A3)) -> 0)");
    // Values and categories that differ in size or shape.
    CheckFormulas(engine, "#REF!", R"(
        ZavMean(ZavDestack(B:B,A2:A6,"North")) | ZavMean(ZavDestack(B1:B6,A1:A5,"North"))
        ZavMean(ZavDestack((A:A,B:B),A:A,"North")) | ZavMean(ZavDestack(B1:C6,A1:A6,"North"))
        ZavMean(ZavDestack(B1:B6,A:A,"North"))
        ZavMean(ZavDestack({1,2,3},{"a";"b";"A"},"a")) | ZavMean(ZavDestack(B1:B6,A1:A6,A1,C2:C6,9)))");
    CheckFormulas(engine, "#REF!",
                  "ZavMean(\"\x01\x02"
                  "000000005\")");
    // What a text result has for an error.
    CheckFormulas(engine, "#NUM!", R"(
        ZavDestack(B1:B6,A1:A6) | ZavDestack(,A1:A6,"x") | ZavDestack(B1:B6,A1:A6,A5)
        ZavDestack(B1:B6,A1:A6,"x",C1:C6) | ZavDestack(B1:B6,A1:A6,"x",,9))");
    // A handle of an earlier session.
    Edit(engine, "J1 = " + handle);
    CheckFormulas(engine, "ZavSum(J1) -> 3");
    CloseClean(engine);
    engine.LoadAddIn(AddInFile());
    engine.Announce(5);
    CheckFormulas(engine, R"(
        ZavSum(J1) -> #REF! | ZavSum(ZavDestack(Other!A1:A3,Other!A1:A3,8)) -> 8
        ZavSum(J1) -> #REF! | ZavSum(ZavDestack(B1:B6,A1:A6,"NORTH")) -> 3)");
  });
}

TEST_CASE("handles in cells follow every edit, whatever is calculated first") {
  zavhost::Workbook book = SmallBook();
  book.sheets[0].Set(0, 9, u"North");
  // The sums before their handle, and that before its categories.
  AddFormulas(book, R"(
      E1 = ZavSum(H1) | E2 = ZavSum(H1,1000) | H1 = ZavDestack(B1:B6,I1:I6,$J$1)
      I1 = IF(ZavIsBlank(A1),"none",A1) | I2 = IF(ZavIsBlank(A2),"none",A2)
      I3 = IF(ZavIsBlank(A3),"none",A3) | I4 = IF(ZavIsBlank(A4),"none",A4)
      I5 = IF(ZavIsBlank(A5),"none",A5) | I6 = IF(ZavIsBlank(A6),"none",A6))");
  InEachHost(book, [](zavhost::Engine& engine) {
    for (const auto& [edit, shown] : {std::pair{"A1 = North", "3;1003;"},
                                      {"B1 = 5", "7;1007;"},
                                      {"A4 = NORTH", "11;1011;"},
                                      {"J1 = none", "3;1003;"},
                                      {"J1 = North", "11;1011;"}}) {
      CAPTURE(edit);
      Edit(engine, edit);
      engine.Recalculate();
      CHECK(ShownCells(engine, "E1:E2") == shown);
    }
  });
}

TEST_CASE("several ranges as one") {
  CheckEntered(SmallBook(), R"(
      E1:E6 = ZavMulti(0,(B1:C2,B6),Other!A1) -> 1;10;2;9;6;7;
      F1:F6 = ZavMulti(1,(B1:C2,B6),Other!A1) -> 1;2;10;9;6;7;
      G1:G7 = ZavMulti(1,Other!2:3,{1,2;3,4}) -> 8;9;1;3;2;4;#N/A;)");
  InEachHost(SmallBook(), [](zavhost::Engine& engine) {
    CheckFormulas(engine, R"(
        ZavSum(ZavMulti(0,B1:B6,Other!A:A)) -> 45 | ZavSum(ZavMulti(1,B:B,Other!A:A)) -> 45
        ZavCount(ZavMulti(0,B1:B6,ZavMulti(0,Other!A1:A3,{1,2}))) -> 11 | ZavSum(ZavMulti(0,5)) -> 5
        ZavMedian(ZavMulti(1,(B1:B2,B4:B6),Other!A1:A3),0) -> 5.5
        ZavCountCategories(ZavMulti(0,A1:A6,{"NORTH","West"})) -> 4
        ZavMulti(1,{1,2;3,4},{5,6;7,8}) -> 1;3;2;4;5;7;6;8;)");
    CheckFormulas(engine, "#REF!",
                  "ZavMulti(0,\"\x01\x02"
                  "000000005\")");
    CheckFormulas(engine, "#VALUE!", R"(
        ZavMulti(2,B1:B6) | ZavMulti(-1,B1:B6) | ZavMulti("x",B1:B6) | ZavMulti(0,)
        ZavMulti(0,A1:B700000,A1))");
  });
}

}  // namespace zavrel::tests
