// Without companion files the functions are linked into the add-in.
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
