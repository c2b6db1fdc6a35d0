#pragma once
// Maximum-likelihood estimates of a distribution's parameters.

#include <cstddef>
#include <exception>
#include <functional>
#include <optional>
#include <span>
#include <stdexcept>
#include <vector>

#include "distributions/description.h"

namespace DistLib {

/// An estimated distribution. The standard errors come from the observed information. They are
/// not-a-number for a fixed parameter and where the information says nothing: for a parameter that
/// ended at a value of the sample (the ends of a uniform, the minimum of a Pareto, the location of
/// a Laplace), at the end of its domain, or that is a whole number.
struct Fit {
  std::vector<double> parameters;  // all, in the description's order
  std::vector<double> standard_errors;
  double log_likelihood = 0;
  double aic = 0;
  double bic = 0;
  std::size_t count = 0;  // values of the sample
  int free_parameters = 0;
};

/// Why a sample has no fit; the message is for people.
class FitError : public std::domain_error {
 public:
  using std::domain_error::domain_error;
};

/// The caller has cancelled the computation. No FitError: it says nothing about the sample.
class FitCancelled : public std::exception {
 public:
  const char* what() const noexcept override { return "the computation was cancelled"; }
};

/// Empty, or an entry for each parameter: its value, if it is not to be estimated.
using FixedParameters = std::span<const std::optional<double>>;

/// Asked between steps of a computation; true cancels it. May be empty.
using Cancelled = std::function<bool()>;

/// The parameters of greatest likelihood. Throws FitError if there are none, ParameterError for a
/// fixed parameter outside its domain, std::invalid_argument for a wrong number of them.
///
/// Whole parameters must be fixed, such as the trials of a binomial, except the shape of Erlang and
/// the ends of the discrete uniform. Parameters that the sample cannot tell from others have their
/// defaults unless they are fixed: the scale of Johnson SL and the weight of PERT. Where the
/// likelihood is unbounded, as for a three-parameter Weibull with its location next to the smallest
/// value, the fit is a local maximum inside, the one that the most likely start leads to. Without
/// one there is an error.
Fit FitDistribution(const Description& description, std::span<const double> values,
                    FixedParameters fixed = {}, const Cancelled& cancelled = {});

}  // namespace DistLib
