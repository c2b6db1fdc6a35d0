#include "distributions/beta_prime.h"

#include <boost/math/special_functions/beta.hpp>
#include <boost/math/special_functions/digamma.hpp>
#include <cmath>

#include "distributions/catalogue.h"
#include "distributions/cores.h"
#include "distributions/moments.h"

namespace DistLib {

Moments BetaPrime::Moments() const {
  const auto raw = [this](int r) {
    Real product = 1;
    for (int i = 0; i < r; ++i) product *= (a_ + i) / (b_ - 1 - i);
    return product;
  };
  return Moved(FromRawMoments(raw, b_, a_ > 1 ? (a_ - 1) / (b_ + 1) : 0), 0, scale_);
}

std::optional<Real> BetaPrime::Entropy() const {
  using boost::math::digamma;
  const Real whole = digamma(a_ + b_), log_x = digamma(a_) - whole, log_y = digamma(b_) - whole;
  const Real log_beta = std::lgamma(a_) + std::lgamma(b_) - std::lgamma(a_ + b_);
  return log_beta - (a_ - 1) * log_x - (b_ + 1) * log_y + std::log(scale_);
}

Real BetaPrime::DensityAt(Real x) const {
  if (x > 0) return BetaPower(At(x)).Value() / x;
  if (a_ == 1) return b_ / scale_;
  return a_ < 1 ? kRealInfinity : 0;
}

/// Half the logarithm of an F variable is approximately normal (Fisher).
Real BetaPrime::ValueNear(Real z) const {
  const Real m = 1 / a_, n = 1 / b_;
  return scale_ * a_ / b_ * std::exp((n - m) / 2 + z * std::sqrt(m + n));
}

BetaPoint BetaPrime::At(Real x) const {
  const Real odds = x / scale_, whole = 1 + odds;
  return {a_, b_, odds / whole, 1 / whole, (a_ - b_ * odds) / whole, rest_};
}

const Description kPearsonVI{
    .name = "Pearson VI",
    .other_names = {"beta prime", "inverted beta", "Pearson type VI"},
    .parameters = {{"shape1", kDegrees, {}}, {"shape2", kDegrees, {}}, {"scale", kPositive, 1.0}},
    .support = "numbers from 0",
    .formula = "x / (x + scale) has the beta distribution with shape1 and shape2",
    .source = "Johnson, Kotz and Balakrishnan 1995, chapter 27",
    .make = Make<BetaPrime, 3>};

}  // namespace DistLib
