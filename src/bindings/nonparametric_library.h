#pragma once
// The functions of the companions for nonparametric tests, as the add-in gets them.

#include "contracts/eutility.h"
#include "contracts/nonparametric_tests.h"

namespace zavrel {

struct NonparametricFunctions {
  decltype(&WSRExactPValMaxSample) wsr_exact_largest;
  decltype(&WSRTiesAndSums) wsr_ties_and_sums;
  decltype(&WSRpValue) wsr_p_value;
  decltype(&MWUsingNormalApproximation) mw_using_normal_approximation;
  decltype(&MWTiesAndSums) mw_ties_and_sums;
  decltype(&MWpValue) mw_p_value;
  decltype(&KWData) kw_data;
  decltype(&KWpValue) kw_p_value;
  decltype(&KWpValueComputationMethod) kw_p_value_computation_method;
};

/// Null when one of the two companions, or one of their functions, is missing. Looked for once, at
/// the first call: the user is told then why not, or where there is no user the log, and nothing is
/// tried again while the process lives.
const NonparametricFunctions* NonparametricCompanions();

/// Whether the extension's functions are to be registered: its library is in its folder and can be
/// loaded.
bool ExtensionIsPresent();

}  // namespace zavrel
