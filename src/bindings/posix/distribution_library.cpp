// Without companion files the functions are linked into the add-in.
#include "bindings/distribution_library.h"

namespace zavrel {

const DistributionFunctions* DistributionCompanion() {
  static constexpr DistributionFunctions kLinked{&pdfNormal, &pdfStudent, &pdfChisq, &pdfF,
                                                 &pdfBinomial};
  return &kLinked;
}

}  // namespace zavrel
