#pragma once

#include "fitting/methods.h"
#include "fitting/scale.h"

namespace DistLib {

/// Parameters on the way to the greatest likelihood.
struct Estimate {
  std::vector<double> parameters;
  /// Those that are searched. One that ends at a value of the sample or at an end of its domain is
  /// no longer searched.
  std::vector<bool> free;
  double log_likelihood = -kInfinity;
  bool converged = false;
};

/// Searches for the greatest likelihood of a sample from given starts.
class Estimator {
 public:
  /// `start` has a finite likelihood and says which parameters are ends of the support.
  Estimator(const LogLikelihood& likelihood, const Method& method, std::span<const double> start);

  /// The local maximum that a start leads to.
  Estimate From(Estimate start) const;
  /// The maximum to more digits with its standard errors, which are empty if the likelihood is not
  /// smooth. Throws FitError if it is no maximum.
  std::vector<double> Finish(Estimate& estimate) const;

  /// Says if the likelihood rises without bound where a parameter approaches a value of the sample.
  std::optional<std::string> Unbounded(const Estimate& estimate) const;

 private:
  void FindEnds(std::span<const double> start);
  bool AreEnds(std::span<const double> parameters, std::size_t i, bool lower) const;
  void Search(Estimate& estimate) const;
  void SearchWithEnds(Estimate& estimate) const;
  bool PinAtEnds(Estimate& estimate) const;
  bool MoveToValue(Estimate& estimate, std::size_t i) const;
  void SearchKinked(Estimate& estimate, std::size_t kinked) const;
  void SearchCounted(Estimate& estimate, std::size_t counted) const;
  std::optional<std::string> Endless(const Estimate& estimate) const;
  void Suspect(const Estimate& estimate, bool sure) const;

  const LogLikelihood& likelihood_;
  Method method_;
  std::vector<Scale> scales_;
};

}  // namespace DistLib
