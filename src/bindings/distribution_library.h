#pragma once
// The functions of the distribution companion, as the add-in calls them.

#include "contracts/pdflib.h"

namespace zavrel {

struct DistributionFunctions {
  decltype(&pdfNormal) normal;
  decltype(&pdfStudent) student;
  decltype(&pdfChisq) chisq;
  decltype(&pdfF) f;
  decltype(&pdfBinomial) binomial;
};

/// Null when the companion or one of its functions is missing. It is looked for only once in a
/// process; if it is missing, the log says why.
const DistributionFunctions* DistributionCompanion();

}  // namespace zavrel
