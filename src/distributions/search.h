#pragma once
// Quantiles and moments of distributions that have no closed form of them.

#include <algorithm>
#include <cmath>
#include <functional>

#include "distributions/catalogue.h"
#include "distributions/cores.h"
#include "distributions/moments.h"

namespace DistLib {

// The values as functions of a coordinate u that runs over all numbers: 0 is about the middle, and
// far out in a tail the logarithm of the probability is about proportional to u or to x.

inline constexpr Real kLargestDouble = std::numeric_limits<double>::max();
inline constexpr Real kSmallestDouble = std::numeric_limits<double>::denorm_min();

/// Positive values.
struct LogScale {
  Real centre;

  static double Lowest() { return 0; }
  static double Highest() { return kInfinity; }
  Real LowestCoordinate() const { return std::log(kSmallestDouble / centre); }
  Real HighestCoordinate() const { return std::log(kLargestDouble / centre); }
  Real At(Real u) const { return centre * std::exp(u); }
  Real Slope(Real u) const { return At(u); }
};

/// All numbers.
struct SinhScale {
  Real centre;
  Real width;

  static double Lowest() { return -kInfinity; }
  static double Highest() { return kInfinity; }
  Real LowestCoordinate() const { return -HighestCoordinate(); }
  Real HighestCoordinate() const { return std::asinh(kLargestDouble / width); }
  Real At(Real u) const { return centre + width * std::sinh(u); }
  Real Slope(Real u) const { return width * std::cosh(u); }
};

/// An interval, whose values keep the digits of their distance from the nearer end or the middle.
struct LogitScale {
  Real low;
  Real high;

  double Lowest() const { return static_cast<double>(low); }
  double Highest() const { return static_cast<double>(high); }
  static Real LowestCoordinate() { return -HighestCoordinate(); }
  static Real HighestCoordinate() { return 2000; }
  Real At(Real u) const {
    if (std::fabs(u) < 1) return (low + high) / 2 + (high - low) / 2 * std::tanh(u / 2);
    const Real from_nearer = (high - low) / (1 + std::exp(std::fabs(u)));
    return u < 0 ? low + from_nearer : high - from_nearer;
  }
  Real Slope(Real u) const {
    const Real part = 1 / (1 + std::exp(std::fabs(u)));
    return (high - low) * part * (1 - part);
  }
};

/// A tail at a coordinate, and the derivative of the probability below.
struct Probe {
  Real tail;
  Real slope;
};

/// The coordinate between low and high at which a tail is p, by Newton's method for its logarithm
/// from 0 on, with a bracket; the tail beyond it is the upper one or the lower one.
Real SearchedCoordinate(Real p, bool upper, Real low, Real high,
                        const std::function<Probe(Real u)>& probe);

/// A value and its density as a function of the coordinate.
struct Weighted {
  Real value;
  Real density;
};

/// Moments by the trapezoidal rule from a middle outwards, in steps that are halved until nothing
/// changes; `width` is about a standard deviation of the coordinate.
Moments MomentsByQuadrature(Real middle, Real width, std::optional<Real> mode,
                            const std::function<Weighted(Real u)>& at);

/// A distribution on a scale (LogScale and the others) whose quantiles are searched for.
template <class Scale>
class Searched : public PdfDist {
 protected:
  explicit Searched(const Scale& scale) : Searched(scale, scale.Lowest(), scale.Highest()) {}
  /// For a support that goes on beyond the scale, where nothing is left of the probability.
  Searched(const Scale& scale, double lowest, double highest)
      : PdfDist(lowest, highest), scale_(scale) {}

  const Scale& scale() const { return scale_; }
  DistLib::Moments SearchedMoments(std::optional<Real> mode) const {
    const Real quartiles[2] = {CoordinateOf(0.25L, false), CoordinateOf(0.25L, true)};
    const auto at = [this](Real u) -> Weighted {
      const Real x = scale_.At(u);
      return {x, SlopeAt(x, u)};
    };
    return MomentsByQuadrature((quartiles[0] + quartiles[1]) / 2,
                               (quartiles[1] - quartiles[0]) * 0.75L, mode, at);
  }
  /// The mode of a density with a single peak and no closed form of it.
  Real SearchedMode() const {
    const Real u = PeakBetween(CoordinateOf(1e-6L, false), CoordinateOf(1e-6L, true),
                               [this](Real place) { return LogDensityAt(scale_.At(place)); });
    return scale_.At(u);
  }

 private:
  Real QuantileOf(Real p) const final {
    return scale_.At(p <= 0.5L ? CoordinateOf(p, false) : CoordinateOf(1 - p, true));
  }
  Real UpperQuantileOf(Real q) const final {
    return scale_.At(q <= 0.5L ? CoordinateOf(q, true) : CoordinateOf(1 - q, false));
  }

  /// The density of the coordinate; 0 where x has run into an end of the support.
  Real SlopeAt(Real x, Real u) const {
    return x == scale_.Lowest() || x == scale_.Highest() ? 0 : DensityAt(x) * scale_.Slope(u);
  }
  Real CoordinateOf(Real p, bool upper) const {
    const auto probe = [&](Real u) {
      const Real x = scale_.At(u);
      return Probe{upper ? UpperTailAt(x) : CumulativeAt(x), SlopeAt(x, u)};
    };
    return SearchedCoordinate(p, upper, scale_.LowestCoordinate(), scale_.HighestCoordinate(),
                              probe);
  }

  Scale scale_;
};

}  // namespace DistLib
