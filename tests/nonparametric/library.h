#pragma once
// The two companions as another program would use them: on Windows the files that ship.

#include "contracts/eutility.h"
#include "contracts/nonparametric_tests.h"

namespace zavrel::tests {

struct Libraries {
  decltype(&::WSRExactPValMaxSample) WSRExactPValMaxSample;
  decltype(&::WSRTiesAndSums) WSRTiesAndSums;
  decltype(&::WSRpValue) WSRpValue;
  decltype(&::MWUsingNormalApproximation) MWUsingNormalApproximation;
  decltype(&::MWTiesAndSums) MWTiesAndSums;
  decltype(&::MWpValue) MWpValue;
  decltype(&::KWData) KWData;
  decltype(&::KWpValue) KWpValue;
  decltype(&::KWpValueComputationMethod) KWpValueComputationMethod;
};
extern const Libraries library;

}  // namespace zavrel::tests
