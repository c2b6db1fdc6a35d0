// The distributions' add-in beside the other one, as a workbook's user meets it.
#include <doctest/doctest.h>

#include "integration/running_add_in.h"

namespace zavrel::tests {
namespace {

zavhost::Workbook Book() {
  return BookOf({"A: 0.5 | | \"4\" | TRUE | #N/A | -8", "B: 2 | 3", "C: 1.5 | 2",
                 "D: 2.1 | 3.4 | 1.2 | 5.6 | 4.4 | 0.7 | 2.9 | 3.8 | 1.9 | 2.4",
                 "E: 2 | 3 | 0 | 1 | 4 | 2 | 2 | 1 | 0 | 3", "F: 1 | 1 | 1", "G: x"});
}

}  // namespace

TEST_CASE("values of a distribution, in the shape of x, and each cell's failure") {
  InEachHost(Book(), [](zavhost::Engine& engine) {
    CheckFormulas(engine, R"(
        ZavDistCumulative("uniform",0.25) -> 0.25 | ZavDistCumulative("Uniform",3,2,6) -> 0.25
        ZavDistDensity("EXPONENTIAL",0) -> 1 | ZavDistDensity("exponential",-1) -> 0
        ZavDistCumulative("exponential",-1) -> 0 | ZavDistUpperTail("exponential",-1) -> 1
        ZavDistCumulative("uniform",7) -> 1 | ZavDistUpperTail("uniform",7) -> 0
        ZavDistUpperTail("exponential",700) ~ 9.8596765437597E-305
        ZavDistQuantile("uniform",0.25,0,4) -> 1 | ZavDistUpperQuantile("uniform",0.25,0,4) -> 3
        ZavDistUpperQuantile("Gumbel",1/100,10,2) ~ 19.20029845355316
        ZavDistQuantile("binomial",0.5,10,0.5) -> 5 | ZavDistDensity("binomial",2.5,10,0.5) -> 0
        ZavDistCumulative("uniform",A1:A6) -> 0.5;;#VALUE!;#VALUE!;#N/A;0;
        ZavDistCumulative("uniform",{0.25,0.5;0.75,"x"}) -> 0.25,0.5;0.75,#VALUE!;
        ZavDistQuantile("uniform",A1:A6) -> 0.5;;#VALUE!;#VALUE!;#N/A;#NUM!;
        ZavDistCumulative("Weibull",2,C1:C2) ~ 0.63212055882856
        ZavDistCumulative("Weibull",2,1.5,2) ~ 0.63212055882856
        ZavDistCumulative("uniform",3,B1:B2) -> 1 | ZavDistCumulative("uniform",2.5,,5) -> 0.5
        ZavDistCumulative("normal",A2) -> )");
    CheckFormulas(engine, "#NUM!", R"(
        ZavDistCumulative("Weibull",2,-1) | ZavDistQuantile("normal",0) | ZavDistQuantile("normal",2)
        ZavDistDensity("uniform",1,3,2) | ZavDistDensity("beta",0,0.5,0.5))");
    CheckFormulas(engine, "#VALUE!", R"(
        ZavDistCumulative("Weibull",2) | ZavDistCumulative("Weibull",2,"a") | ZavDistCumulative("Weibull",2,TRUE)
        ZavDistCumulative("Weibull",2,1,2,3) | ZavDistCumulative("normal",TRUE) | ZavDistCumulative("normal","1"))");
    CheckFormulas(engine, "#N/A", R"(
        ZavDistCumulative("Weibul",2,1) | ZavDistCumulative("",2) | ZavDistCumulative("Weibull",2,A5))");
  });
}

TEST_CASE("random values fill their range, and are those of their seed") {
  CheckEntered(Book(), R"(
      H1:I2 = ZavDistRandom("discrete uniform",1,7,7) -> 7,7;7,7;
      H3:H3 = ZavDistRandom("uniform",1)=ZavDistRandom("uniform",1) -> TRUE;
      H4:H4 = ZavDistRandom("uniform",1)=ZavDistRandom("uniform",2) -> FALSE;
      H5:H5 = ZavDistRandom("uniform","x") -> #VALUE!;
      H6:H6 = ZavDistRandom("uniform",1,3,2) -> #NUM!;)");
}

TEST_CASE("properties, names and what is wrong with parameters") {
  InEachHost(Book(), [](zavhost::Engine& engine) {
    CheckFormulas(engine, R"(
        ZavDistProperty("uniform","mean",2,6) -> 4 | ZavDistProperty("uniform","Standard Deviation",0,6) ~ 1.7320508075689
        ZavDistProperty("exponential","kurtosis") -> 9 | ZavDistProperty("normal","median",3) -> 3
        ZavDistProperty("uniform","entropy") -> 0 | ZavDistProperty("uniform","highest",2,6) -> 6
        ZavDistProperty("gamma 3P","name") -> Pearson III | ZavDistProperty("Poisson","kind") -> discrete
        ZavDistProperty("Weibull","parameters") -> shape must be greater than 0; scale must be greater than 0, 1 by default
        ZavDistProperty("Weibull","problem",-2) -> shape must be greater than 0, is -2
        ZavDistProperty("Weibull","problem") -> shape is missing | ZavDistProperty("Weibull","problem",2) ->
        ZavDistProperty("Cauchy","mean") -> #N/A | ZavDistProperty("normal","highest") -> #N/A
        ZavDistProperty("normal","colour") -> #VALUE! | ZavDistProperty("Weibull","mean",-1) -> #NUM!
        INDEX(ZavDistNames(),1) -> arcsine | INDEX(ZavDistNames("Discrete"),1) -> Bernoulli
        ROWS(ZavDistNames())=ROWS(ZavDistNames("continuous"))+ROWS(ZavDistNames("discrete")) -> TRUE
        ZavDistNames("other") -> #VALUE!)");
  });
}

TEST_CASE("fits, tests, rankings and Q-Q plots, and why there is none") {
  InEachHost(Book(), [](zavhost::Engine& engine) {
    CheckFormulas(engine, R"(
        ROUND(INDEX(ZavDistFit("exponential",D1:D10),1,2),9) -> 0.352112676
        ROUND(INDEX(ZavDistFit("exponential",D1:D10),1,3),6) -> 0.111348
        INDEX(ZavDistFit("normal",D1:D10),1,1) -> mean | INDEX(ZavDistFit("normal",D1:D10,3),1,2) -> 3
        INDEX(ZavDistFit("normal",D1:D10,3),1,3) -> | INDEX(ZavDistFit("normal",D:D),6,2) -> 10
        ROUND(INDEX(ZavDistFit("normal",D1:D10,,2),1,2),9) -> 2.84 | INDEX(ZavDistFit("normal",D1:D10,,2),2,2) -> 2
        ROUND(INDEX(ZavDistFit("Poisson",E1:E10),1,2),9) -> 1.8
        INDEX(ZavDistFit("normal",D1:D10),5,1) -> BIC | ROWS(ZavDistFit("normal",D1:D10)) -> 6
        ZavDistFit("gamma",{1,2,-8,3}) -> the value -8 of the sample is outside the support, numbers from 0,#NUM!,#NUM!;
        ZavDistFit("nothing",D1:D10) -> #N/A | ZavDistFit("normal",D1:D10,"x") -> #VALUE!
        INDEX(ZavDistFit("normal",F1:F3),1,2) -> #NUM!
        ZavDistFit("normal",D1:D10,0,-1) -> standard deviation must be greater than 0, is -1,#NUM!,#NUM!;
        ZavDistFit("normal",D1:D10,0,1,2) -> normal has only 2 parameters,#NUM!,#NUM!;
        ROUND(INDEX(ZavDistFitTest("uniform",{0.1,0.4,0.7},"KS",,,0,1),1,2),9) -> 0.3
        INDEX(ZavDistFitTest("normal",D1:D10,"AD",19,1),2,2)=INDEX(ZavDistFitTest("normal",D1:D10,"AD",19,1),2,2) -> TRUE
        ZavDistFitTest("normal",D1:D10,"other") -> #VALUE! | ZavDistFitTest("normal",D1:D10,,0) -> #NUM!
        ZavDistFitTest("normal",D1:D10,,,,0,-1) -> standard deviation must be greater than 0, is -1,#NUM!;
        ROWS(ZavDistRank(D1:D10,3)) -> 3 | INDEX(ZavDistRank(D1:D10),1,2)<=INDEX(ZavDistRank(D1:D10),2,2) -> TRUE
        ZavDistRank(D1:D10,0) -> #NUM! | ISTEXT(INDEX(ZavDistRank(G1:G2),1,1)) -> TRUE
        ZavDistQQ("uniform",{3;1},0,4) -> 1,1;3,3;
        ZavDistQQ("uniform",G1:G2) -> #VALUE! | ZavDistQQ("uniform",D1:D10,2,1) -> #NUM!)");
  });
}

TEST_CASE("a fit follows its cells") {
  auto engine = ServingAddIn(Book());
  engine->LoadAddIn(DistributionsFile());
  const char* const rate = "ROUND(INDEX(ZavDistFit(\"exponential\",D1:D10),1,2),6)";
  CheckFormulas(*engine, std::string(rate) + " -> 0.352113");
  Edit(*engine, "D1 = 30.5");
  CheckFormulas(*engine, std::string(rate) + " -> 0.176056");
  Edit(*engine, "D1 = 2.1");
  CheckFormulas(*engine, std::string(rate) + " -> 0.352113");
  CloseClean(*engine);
}

}  // namespace zavrel::tests
