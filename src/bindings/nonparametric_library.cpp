#include "bindings/nonparametric_library.h"

#include "bindings/binding.h"

namespace zavrel {
namespace {

void Bind(Binding& binding, NonparametricFunctions& functions) {
  binding.From(NonparametricTestsLibrary(), {u"NonparametricTestsLoadDll", u"NonparametricTests"})
      .Bind("WSRExactPValMaxSample", functions.wsr_exact_largest)
      .Bind("WSRTiesAndSums", functions.wsr_ties_and_sums)
      .Bind("WSRpValue", functions.wsr_p_value)
      .Bind("MWUsingNormalApproximation", functions.mw_using_normal_approximation)
      .Bind("MWTiesAndSums", functions.mw_ties_and_sums)
      .Bind("MWpValue", functions.mw_p_value);
  binding.From(EUtilityLibrary(), {u"EUtilityLibraryLoadDll", u"NonparametricTests"})
      .Bind("KWData", functions.kw_data)
      .Bind("KWpValue", functions.kw_p_value)
      .Bind("KWpValueComputationMethod", functions.kw_p_value_computation_method);
}

}  // namespace

const NonparametricFunctions* NonparametricCompanions() {
  static constinit BoundFunctions<NonparametricFunctions> bound(Told::kUserToo, Bind);
  return bound.Get();
}

bool ExtensionIsPresent() { return NonparametricTestsLibrary().IsPresent(); }

}  // namespace zavrel
