#pragma once
// Tests of whether a sample can come from a distribution.

#include <cstdint>

#include "fitting/fit.h"

namespace DistLib {

enum class FitTest { kKolmogorovSmirnov, kAndersonDarling, kPearsonChiSquare };

struct FitTestResult {
  double statistic = 0;
  double p_value = 0;
  double degrees_of_freedom = 0;  // of chi-square; not-a-number for the others
};

/// Against a distribution that was known before the sample. Throws FitError for a sample without
/// result, ParameterError as MakeDistribution does.
///
/// - Kolmogorov-Smirnov: the two-sided distance, its p-value exact for small samples. For a
///   discrete distribution the p-value is an upper bound.
/// - Anderson-Darling: only for continuous distributions; the p-value has about six decimals.
/// - Chi-square: 2 n^(2/5) classes of equal probability, but at least 5 expected values in each;
///   for a discrete distribution, neighbouring values are pooled until a class has as much.
FitTestResult TestFit(FitTest kind, const Description& description,
                      std::span<const double> parameters, std::span<const double> values);

/// With parameters estimated from this sample, `fixed` as they were for the fit. The p-value comes
/// from a parametric bootstrap: samples are drawn from the fit and fitted anew, and it is the share
/// of those with a statistic at least as great, the sample itself counted among them. The degrees
/// of freedom are less by the number of free parameters; the p-value does not use them. The same
/// seed gives the same result.
FitTestResult TestFitted(FitTest kind, const Description& description, const Fit& fit,
                         std::span<const double> values, std::uint64_t seed, int replicates,
                         FixedParameters fixed = {}, const Cancelled& cancelled = {});

}  // namespace DistLib
