#include "analyses/analysis.h"

#include <algorithm>
#include <string>

#include "analyses/builders.h"

namespace zavrel::analyses {
namespace {

constexpr Analysis kAll[] = {
    {.name = "summary",
     .title = "Summary statistics",
     .about = "count, mean, standard deviation, quartiles, skewness and kurtosis, by group too",
     .groups = Groups::kOptional,
     .build = &BuildSummary},
    {.name = "frequencies",
     .title = "Frequencies",
     .about = "classes of equal width with counts and shares, and histograms",
     .build = &BuildFrequencies},
    {.name = "percentiles",
     .title = "Percentiles",
     .about = "nine percentiles of each variable",
     .build = &BuildPercentiles},
    {.name = "outliers",
     .title = "Outliers",
     .about = "values beyond 1.5 and 3 interquartile ranges",
     .least_numbers = 4,
     .build = &BuildOutliers},
    {.name = "box-plots",
     .title = "Box plots",
     .about = "box plots of the variables, or of one variable by group",
     .least_numbers = 4,
     .groups = Groups::kOptional,
     .build = &BuildBoxPlots},
    {.name = "qq-plots",
     .title = "Normal Q-Q plots",
     .about = "each variable against the normal distribution",
     .least_numbers = 3,
     .build = &BuildQuantilePlots},
    {.name = "scatter-plots",
     .title = "Scatter plot matrix",
     .about = "a scatter plot of every pair of variables",
     .least_variables = 2,
     .most_variables = 6,
     .build = &BuildScatterPlots},
    {.name = "covariances",
     .title = "Covariance matrix",
     .about = "covariances and variances, with gaps left out pair by pair",
     .least_variables = 2,
     .build = &BuildCovariances},
    {.name = "correlations",
     .title = "Correlation matrix",
     .about = "Pearson's and Spearman's coefficients",
     .least_variables = 2,
     .build = &BuildCorrelations},
    {.name = "principal-components",
     .title = "Principal components",
     .about = "eigenvalues and loadings of the correlations, scores, scree plot and biplot",
     .least_variables = 2,
     .least_numbers = 3,
     .build = &BuildPrincipalComponents},
    {.name = "two-groups",
     .title = "Comparison of two groups",
     .about = "the Mann-Whitney test, exact and with ties",
     .groups = Groups::kTwo,
     .build = &BuildTwoGroups},
    {.name = "several-groups",
     .title = "Comparison of several groups",
     .about = "the Kruskal-Wallis test, corrected for ties",
     .groups = Groups::kSeveral,
     .build = &BuildSeveralGroups},
    {.name = "signed-ranks",
     .title = "Comparison of pairs",
     .about = "Wilcoxon's signed-rank test of two variables, row by row",
     .least_variables = 2,
     .most_variables = 2,
     .build = &BuildSignedRanks},
    {.name = "distribution-fits",
     .title = "Fitting a distribution",
     .about = "the distributions that fit best, the estimates of the best, and its Q-Q plot",
     .most_variables = 4,
     .least_numbers = 5,
     .build = &BuildDistributionFits},
};

constexpr std::size_t kMostGroups = 12;

std::string Counted(std::size_t count, const std::string& what) {
  return std::to_string(count) + " " + what + (count == 1 ? "" : "s");
}

std::string ProblemWithGroups(const Analysis& analysis, const Data& data) {
  if (!data.grouping) {
    const bool needed = analysis.groups == Groups::kTwo || analysis.groups == Groups::kSeveral;
    return needed ? "it needs a column that divides the rows into groups" : "";
  }
  const auto& [name, values, categories] = *data.grouping;
  if (analysis.groups == Groups::kNone) return "it does not divide the rows into groups";
  if (analysis.groups == Groups::kTwo && categories.size() != 2)
    return "it compares two groups, but " + name + " has " + Counted(categories.size(), "group");
  if (categories.size() < 2) return name + " has only " + Counted(categories.size(), "group");
  if (categories.size() > kMostGroups)
    return name + " has " + Counted(categories.size(), "group") + ", more than " +
           std::to_string(kMostGroups);
  return "";
}

}  // namespace

std::span<const Analysis> AllAnalyses() { return kAll; }

const Analysis* FindAnalysis(std::string_view name) {
  const auto* const found = std::ranges::find(kAll, name, &Analysis::name);
  return found == std::ranges::end(kAll) ? nullptr : found;
}

std::string ProblemWith(const Analysis& analysis, const Data& data) {
  const std::size_t count = data.variables.size();
  if (count < analysis.least_variables)
    return "it needs " + Counted(analysis.least_variables, "column") + " of numbers, and there " +
           (count == 1 ? "is " : "are ") + std::to_string(count);
  if (count > analysis.most_variables)
    return "it takes at most " + Counted(analysis.most_variables, "column") +
           " of numbers, and there are " + std::to_string(count);
  for (const Variable& variable : data.variables) {
    if (variable.numbers < analysis.least_numbers)
      return variable.name + " has only " + Counted(variable.numbers, "number");
    const bool complete = variable.numbers == variable.values.rows;
    if (analysis.build == &BuildPrincipalComponents && !complete)
      return "it needs a number in every row, and " + variable.name + " has gaps";
  }
  return ProblemWithGroups(analysis, data);
}

}  // namespace zavrel::analyses
