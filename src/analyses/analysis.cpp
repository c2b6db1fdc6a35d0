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
     .of_distributions = true,
     .build = &BuildDistributionFits},
};

constexpr std::size_t kMostGroups = 12;

std::optional<Message> ProblemWithGroups(const Analysis& analysis, const Data& data) {
  if (!data.grouping) {
    const bool needed = analysis.groups == Groups::kTwo || analysis.groups == Groups::kSeveral;
    if (needed) return Message{"a column that divides the rows into groups is needed", {}};
    return std::nullopt;
  }
  const std::string& name = data.grouping->name;
  const std::size_t count = data.grouping->categories.size();
  if (analysis.groups == Groups::kNone)
    return Message{"the rows are not divided into groups here", {}};
  if (count < 2) return Message{"{0} does not have two groups", {name}};
  if (analysis.groups == Groups::kTwo && count != 2)
    return Message{"two groups are compared, and {0} has {1}", {name, std::to_string(count)}};
  if (count > kMostGroups) {
    return Message{"{0} has {1} groups, more than {2}",
                   {name, std::to_string(count), std::to_string(kMostGroups)}};
  }
  return std::nullopt;
}

/// Why the analysis cannot be made of the data; nothing if it can.
std::optional<Message> ProblemWith(const Analysis& analysis, const Data& data) {
  const std::string count = std::to_string(data.variables.size());
  const std::size_t least = analysis.least_variables, most = analysis.most_variables;
  if (data.variables.size() < least)
    return Message{"columns of numbers needed: {0}, given: {1}", {std::to_string(least), count}};
  if (data.variables.size() > most)
    return Message{"columns of numbers at most: {0}, given: {1}", {std::to_string(most), count}};
  for (const Variable& variable : data.variables) {
    if (variable.numbers < analysis.least_numbers) {
      return Message{"{0} has fewer than {1} numbers",
                     {variable.name, std::to_string(analysis.least_numbers)}};
    }
    const bool complete = variable.numbers == variable.values.rows;
    if (analysis.build == &BuildPrincipalComponents && !complete)
      return Message{"every row needs a number, and {0} has gaps", {variable.name}};
  }
  return ProblemWithGroups(analysis, data);
}

}  // namespace

std::span<const Analysis> AllAnalyses() { return kAll; }

const Analysis* FindAnalysis(std::string_view name) {
  const auto* const found = std::ranges::find(kAll, name, &Analysis::name);
  return found == std::ranges::end(kAll) ? nullptr : found;
}

ReportSheet MakeSheet(const Analysis& analysis, const Data& data) {
  if (auto problem = ProblemWith(analysis, data)) throw DataProblem(*std::move(problem));
  return analysis.build(data);
}

}  // namespace zavrel::analyses
