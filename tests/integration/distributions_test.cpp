// The distributions as a workbook's user meets them.
#include <doctest/doctest.h>

#include "integration/running_add_in.h"

namespace zavrel::tests {

TEST_CASE("every property of a distribution, by a word or a number") {
  InEachHost({}, [](zavhost::Engine& engine) {
    CheckFormulas(engine, R"(
        ZavNormal(10,2,1) -> 10 | ZavNormal(10,2,2) -> 2 | ZavNormal(10,2,3) -> 4
        ZavNormal(10,2,4) -> 0 | ZavNormal(10,2,5) -> 3 | ZavNormal(10,2,6) -> 10
        ZavNormal(10,2,"St Dev") -> 2 | ZavNormal(10,2,"mean",5) -> 10
        ZavNormal(10,2,"xtoy",14) ~ 0.02699548325659403 | ZavNormal(0,1,9,0) -> 0.5
        ZavNormal(10,2,"xtop",14) ~ 0.9772498680518208 | ZavNormal(0,1,"xtop",TRUE) ~ ZavNormal(0,1,9,1)
        ZavNormal(10,2,"xtoq",14) ~ 0.022750131948179207
        ZavNormal(10,2,"ptox",0.025) ~ 10-2*1.959963984540054
        ZavNormal(10,2,"qtox",0.025) ~ 10+2*1.959963984540054
        ZavStudent(2,"xtop",SQRT(2)) ~ 0.5+0.25*SQRT(2) | ZavStudent(1,"Mode") -> 0
        ZavStudent(4,"Var") -> 2 | ZavChisq(2.9,"xtop",1) ~ 1-EXP(-0.5) | ZavChisq(4,"mode") -> 2
        ZavF(2.9,4,"xtop",1) ~ 1-1/2.25 | ZavF(4,2,"xtop",1) ~ 4/9 | ZavF(2,2,"xtoq",3) -> 0.25
        ZavBinomial(4,0.25,"xtop",1) ~ 189/256 | ZavBinomial(4,0.25,"1") -> 1
        ZavBinomial(10,0.5,"ptox",0.05) -> 2)");
  });
}

TEST_CASE("properties that there are not, and arguments that are refused") {
  InEachHost({}, [](zavhost::Engine& engine) {
    for (const char* moment : {"Mean", "StDev", "Var", "Skew", "Kurt", "DiscreteMean"})
      CheckFormulas(engine, "#NUM!", "ZavStudent(1,\"" + std::string(moment) + "\")");
    for (const char* property : {"xtoy", "xtop", "ptox", "xtoq", "qtox"})
      CheckFormulas(engine, "#NUM!",
                    "ZavNormal(10,2,\"" + std::string(property) + "\") |" + "ZavNormal(10,2,\"" +
                        property + "\",1.01E+300)");
    CheckFormulas(engine, "#NUM!", R"(
        ZavNormal(10,2,"DiscreteMean") | ZavNormal(10,2,"ptox",1) | ZavNormal(10,2,"ptox",-0.1)
        ZavNormal(10,2,"",1) | ZavNormal(10,2,"0",1) | ZavNormal(10,2,"abc",1) | ZavNormal(10,2,13,1)
        ZavStudent(0,"Mode") | ZavNormal(0,0,"Mean") | ZavF(0,3,"Mode"))");
    CheckFormulas(engine, "#VALUE!", R"(
        ZavNormal(,1,"Mean") | ZavNormal("x",1,"Mean") | ZavNormal(1,1,) | ZavStudent(1E+10,"Mean")
        ZavNormal(10,2,"xtop","text"))");
  });
}

}  // namespace zavrel::tests
