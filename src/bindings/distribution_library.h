#pragma once
// The functions of the distribution companion, as the add-in gets them.

#include "contracts/pdflib.h"

namespace zavrel {

struct DistributionFunctions {
  decltype(&pdfNormal) normal;
  decltype(&pdfStudent) student;
  decltype(&pdfChisq) chisq;
  decltype(&pdfF) f;
  decltype(&pdfBinomial) binomial;
};

/// Null when the companion, or one of its functions, is missing. Looked for once: the log says then
/// why not, and nothing is tried again while the process lives.
const DistributionFunctions* DistributionCompanion();

}  // namespace zavrel
