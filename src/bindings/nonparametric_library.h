#pragma once
// The functions of the companions for nonparametric tests, as the add-in calls them.

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

/// Null when one of the two companions or one of their functions is missing. They are looked for
/// only once in a process, at the first call; if something is missing, the log says why, and so
/// does a message box where a user can read it.
const NonparametricFunctions* NonparametricCompanions();

/// Whether the extension's functions are to be registered: true when its library is in its folder
/// and can be loaded.
bool ExtensionIsPresent();

}  // namespace zavrel
