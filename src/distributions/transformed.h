#pragma once
// The adapter of the families: Y = location + scale z(X), where X has the distribution of a core
// (cores.h) and z is a monotone map (maps.h).

#include <algorithm>
#include <type_traits>

#include "distributions/catalogue.h"
#include "distributions/maps.h"
#include "distributions/moments.h"

namespace DistLib {

struct Place {
  Real location = 0;
  Real scale = 1;

  Real At(Real z) const { return location + scale * z; }
};

/// A core may have its density beside the density's logarithm, where that is cheaper.
///
/// Derived classes say what their moments and entropy are at location 0 with scale 1.
template <class Core, class Map>
class Transformed : public PdfDist {
 public:
  DistLib::Moments Moments() const final {
    return Moved(StandardMoments(), place_.location, place_.scale);
  }
  std::optional<Real> Entropy() const final {
    const std::optional<Real> standard = StandardEntropy();
    if (!standard) return {};
    return *standard + log_scale_;
  }

 protected:
  Transformed(Core core, Map map, Place place)
      : PdfDist(End(core, map, place, false), End(core, map, place, true)),
        core_(core),
        map_(map),
        place_(place),
        log_scale_(std::log(place.scale)) {}

  const Core& core() const { return core_; }
  const Map& map() const { return map_; }
  /// The mode of a density with a single peak and no closed form of it.
  Real SearchedStandardMode() const {
    const Real ends[2] = {map_.Forward(core_.Quantile(1e-6L)),
                          map_.Forward(core_.UpperQuantile(1e-6L))};
    return PeakBetween(std::min(ends[0], ends[1]), std::max(ends[0], ends[1]),
                       [this](Real z) { return StandardLogDensity(z); });
  }

 private:
  virtual DistLib::Moments StandardMoments() const = 0;
  virtual std::optional<Real> StandardEntropy() const = 0;

  static constexpr bool kHasLogs = requires(const Core& core, const Map& map, Real log_x) {
    core.LowerNear0(log_x);
    map.LogBack(log_x);
  };

  Real StandardLogDensity(Real z) const {
    const Real x = Back(z);
    if constexpr (kHasLogs) {
      const Real log_x = x < kNear0 ? map_.LogBack(z) : kRealInfinity;
      if (std::isfinite(log_x)) return core_.LogDensityNear0(log_x) + map_.LogSlope(z, x);
    }
    return core_.LogDensity(x) + map_.LogSlope(z, x);
  }
  Real LogDensityAt(Real y) const final { return StandardLogDensity(Standardized(y)) - log_scale_; }
  Real DensityAt(Real y) const final {
    if constexpr (std::is_same_v<Map, Identity> && requires { core_.Density(y); })
      return core_.Density(Standardized(y)) / place_.scale;
    else
      return std::exp(LogDensityAt(y));
  }
  Real CumulativeAt(Real y) const final { return Tail(y, !map_.Rises()); }
  Real UpperTailAt(Real y) const final { return Tail(y, map_.Rises()); }
  Real QuantileOf(Real p) const final { return ValueOf(p, !map_.Rises()); }
  Real UpperQuantileOf(Real q) const final { return ValueOf(q, map_.Rises()); }

  Real Standardized(Real y) const { return (y - place_.location) / place_.scale; }
  /// The core's variable. An end of the support that is no double, exp(-20000) say, or rounding may
  /// lead out of the core's support.
  Real Back(Real z) const { return std::clamp<Real>(map_.Back(z), core_.kLow, core_.kHigh); }
  Real Tail(Real y, bool upper) const {
    const Real z = Standardized(y);
    const Real x = Back(z);
    if constexpr (kHasLogs) {
      if (x < kNear0) {
        const Real lower = core_.LowerNear0(map_.LogBack(z));
        return upper ? 1 - lower : lower;
      }
    }
    return upper ? core_.Upper(x) : core_.Lower(x);
  }
  Real ValueOf(Real probability, bool upper) const {
    const Real x = upper ? core_.UpperQuantile(probability) : core_.Quantile(probability);
    if constexpr (kHasLogs) {
      if (x < kNear0) {
        const Real log_p = upper ? std::log1p(-probability) : std::log(probability);
        return place_.At(map_.ForwardOfLog(core_.LogQuantileNear0(log_p)));
      }
    }
    return place_.At(map_.Forward(x));
  }
  static double End(const Core& core, const Map& map, const Place& place, bool highest) {
    const Real x = highest == map.Rises() ? core.kHigh : core.kLow;
    return static_cast<double>(place.At(map.Forward(x)));
  }

  Core core_;
  Map map_;
  Place place_;
  Real log_scale_;
};

}  // namespace DistLib
