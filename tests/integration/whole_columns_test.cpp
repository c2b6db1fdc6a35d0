// The one rule of whole columns, in every function that reads data: they count as their used part.
#include <doctest/doctest.h>

#include <string>

#include "integration/running_add_in.h"

namespace zavrel::tests {
namespace {

// Every worksheet function with a data argument, which is marked by "%".
constexpr std::string_view kFunctions = R"(
    ZavMin(%) | ZavMinI(%) | ZavMax(%) | ZavMaxI(%) | ZavMean(%) | ZavMeanI(%) | ZavStdDev(%)
    ZavStdDevP(%) | ZavVariance(%) | ZavVarianceP(%) | ZavSkewness(%) | ZavSkewnessP(%)
    ZavKurtosis(%) | ZavKurtosisP(%) | ZavSum(%,7) | ZavSumI(%) | ZavProduct(%) | ZavProductI(%)
    ZavRange(%) | ZavRangeI(%) | ZavCount(%) | ZavAveDev(%) | ZavSumSq(%) | ZavSumDevSq(%)
    ZavMeanAbs(%) | ZavMode(%) | ZavPercentile(%,0.3) | ZavQuartile(%,1) | ZavMedian(%)
    ZavCountRange(%,2,6) | ZavCountCellsByType(%,0) | ZavCountCellsByType(%,1)
    ZavCountCellsByType(%,2) | ZavCountCellsByType(%,3) | ZavCountCellsByType(%,4)
    ZavGetCellValues(%,0) | ZavGetCellValues(%,4) | ZavPower(%,2) | ZavLog(%,2) | ZavDummy(%,"a")
    ZavInteraction(%,"",%,"") | ZavPairCount(%,%) | ZavPairMean(%,%) | ZavPairStdDev(%,%)
    ZavPairMedian(%,%) | ZavPairMeanQuotient(%,%) | ZavPairMeanAbsQuotient(%,%)
    ZavPairCountRange(%,%,0,1) | ZavCovariance(%,%) | ZavCovarianceP(%,%)
    ZavCorrelationCoeff(%,%) | ZavCovarianceMatrix(0,1,0,%,%) | ZavCorrelationMatrix(1,1,1,%,%)
    ZavEigenvalues(%) | ZavEigenvectors(%) | ZavEigendata(%) | ZavPCAScores(%)
    ZavCountCategories(%) | ZavCategoryNames(%) | ZavCategoryOccurrenceCount(%,5)
    ZavCategoryIndices(%,5) | ZavMean(ZavDestack(%,%,5)) | ZavMulti(0,%) | ZavMulti(1,%)
    ZavDurbinWatson(%) | ZavAutocorrelation(%,1) | ZavRunsTest(%,4) | ZavLilliefors(%)
    ZavBoxPlotX(%,0,1) | ZavBoxPlotCountOutliers(%,0) | ZavOutlierType(%,0,5)
    ZavScatterPlot(%,%,0) | ZavQQPlotStandardize(%) | ZavQQPlotSort(%) | ZavQQPlotZValue(%)
    ZavMWTies(%,%) | ZavMWTieCorrectionTerm(%,%) | ZavMWRankSum1(%,%) | ZavMWRankSum2(%,%)
    ZavWSRTies(%,4) | ZavWSRTieCorrectionTerm(%,4) | ZavWSRNegative(%,4) | ZavWSRPositive(%,4)
    ZavWSRPairTies(%,%,1) | ZavWSRPairTieCorrectionTerm(%,%,1) | ZavWSRPairNegative(%,%,1)
    ZavWSRPairPositive(%,%,1) | ZavKWData(0,%,%) | ZavKWpValue(1,%,%)
    ZavKWpValueComputationMethod(%))";

std::string FilledIn(std::string formula, const std::string& argument) {
  for (std::size_t at = 0; (at = formula.find('%', at)) != std::string::npos;)
    formula.replace(at, 1, argument);
  return formula;
}

}  // namespace

TEST_CASE("a whole column gives what its used part gives, in every function") {
  const zavhost::Workbook book =
      BookOf({"A: 3 | | text | 5 | 5 | 9", "B: 1 | 2 | 4 | 4", "C: | | 5 | TRUE | #N/A"});
  InEachHost(book, [](zavhost::Engine& engine) {
    for (const std::string& function : zavhost::tests::CasesIn(kFunctions)) {
      for (const auto& [whole, part] :
           {std::pair{"A:A", "A1:A6"}, {"B:B", "B1:B4"}, {"C:C", "C1:C5"}}) {
        CAPTURE(function);
        CAPTURE(whole);
        CHECK(Shown(engine, FilledIn(function, whole)) == Shown(engine, FilledIn(function, part)));
      }
    }
    // Used further down, and less far again.
    for (const auto& [edit, cells] : {std::pair{"D70001 = 7", "70001;1;"},
                                      {"D70000 = 8", "70001;2;"},
                                      {"D70001 =", "70000;1;"},
                                      {"D70002 = 9", "70002;2;"}}) {
      Edit(engine, edit);
      CHECK(Shown(engine, "ZavCountCellsByType(D:D,0)") + ';' + Shown(engine, "ZavCount(D:D)") +
                ';' ==
            cells);
    }
    CheckFormulas(engine, R"(
        ZavCountCellsByType(A:B,0) -> 12 | ZavCountCellsByType(Y:Z,0) -> 0
        ZavCountCellsByType(1:1,0) -> 2 | ZavCountCellsByType(2:3,0) -> 6
        ZavCountCellsByType((B:B,2:2),0) -> 6 | ZavCountCellsByType(A2:A19,0) -> 18)");
  });
}

}  // namespace zavrel::tests
