#pragma once

#include "fitting/fit.h"
#include "fitting/sample.h"

namespace DistLib {

/// The logarithm of a sample's likelihood, as a function of a distribution's parameters. Refers to
/// what it is made of.
class LogLikelihood {
 public:
  LogLikelihood(const Description& description, const Sample& sample, const Cancelled& cancelled)
      : description_(description), sample_(sample), cancelled_(cancelled) {}

  const Description& description() const { return description_; }
  const Sample& sample() const { return sample_; }
  const Cancelled& cancelled() const { return cancelled_; }

  /// Minus infinity where the parameters do not fit together, or where the density of a value is 0,
  /// infinite or cannot be computed. Throws FitCancelled.
  double operator()(std::span<const double> parameters) const;
  /// The distribution with these parameters, or null if they do not fit together.
  std::unique_ptr<PdfDist> Distribution(std::span<const double> parameters) const;
  /// The first value without finite density, or nothing.
  std::optional<double> Misfit(std::span<const double> parameters) const;

 private:
  void MaybeCancel() const {
    if (cancelled_ && cancelled_()) throw FitCancelled();
  }

  const Description& description_;
  const Sample& sample_;
  const Cancelled& cancelled_;
};

}  // namespace DistLib
