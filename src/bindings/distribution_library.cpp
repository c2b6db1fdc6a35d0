#include "bindings/distribution_library.h"

#include "bindings/binding.h"

namespace zavrel {
namespace {

void Bind(Binding& binding, DistributionFunctions& functions) {
  binding.From(DistributionsLibrary())
      .Bind("pdfNormal", functions.normal)
      .Bind("pdfStudent", functions.student)
      .Bind("pdfChisq", functions.chisq)
      .Bind("pdfF", functions.f)
      .Bind("pdfBinomial", functions.binomial);
}

}  // namespace

const DistributionFunctions* DistributionCompanion() {
  static constinit BoundFunctions<DistributionFunctions> bound(Told::kLogAlone, Bind);
  return bound.Get();
}

}  // namespace zavrel
