// Linked into the add-in where there are no companion files.
#include "bindings/distribution_library.h"

namespace zavrel {

const DistributionFunctions* DistributionCompanion() {
  static constexpr DistributionFunctions kLinked{&pdfNormal, &pdfStudent, &pdfChisq, &pdfF,
                                                 &pdfBinomial};
  return &kLinked;
}

}  // namespace zavrel
