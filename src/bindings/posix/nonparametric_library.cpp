// Linked into the add-in where there are no companion files.
#include "bindings/nonparametric_library.h"

namespace zavrel {

const NonparametricFunctions* NonparametricCompanions() {
  static constexpr NonparametricFunctions kLinked{&WSRExactPValMaxSample,
                                                  &WSRTiesAndSums,
                                                  &WSRpValue,
                                                  &MWUsingNormalApproximation,
                                                  &MWTiesAndSums,
                                                  &MWpValue,
                                                  &KWData,
                                                  &KWpValue,
                                                  &KWpValueComputationMethod};
  return &kLinked;
}

bool ExtensionIsPresent() { return true; }

}  // namespace zavrel
