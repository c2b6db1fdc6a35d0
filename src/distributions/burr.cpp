// Burr XII and Burr III, whose variables are one another's reciprocals.

#include <boost/math/special_functions/beta.hpp>
#include <boost/math/special_functions/digamma.hpp>

#include "distributions/transformed.h"

namespace DistLib {
namespace {

/// z = (exp(x / tail) - 1)^(1 / power), where z^power may be beyond all numbers.
struct BurrMap {
  Real tail;
  Real power;
  Real log_factor = std::log(tail) + std::log(std::fabs(power));

  bool Rises() const { return power > 0; }
  Real Forward(Real x) const {
    const Real base = std::expm1(x / tail);
    return std::isfinite(base) ? std::pow(base, 1 / power) : std::exp(x / tail / power);
  }
  Real Back(Real z) const {
    const Real base = std::pow(z, power);
    return tail * (std::isfinite(base) ? std::log1p(base) : power * std::log(z));
  }
  Real LogSlope(Real z, Real /*x*/) const {
    const Real base = std::pow(z, power);
    return log_factor +
           (std::isfinite(base) ? TimesLog(power - 1, z) - std::log1p(base) : -std::log(z));
  }
};

class Burr : public Transformed<UnitExponential, BurrMap> {
 protected:
  /// `sign` is 1 for type XII, -1 for type III.
  Burr(Real c, Real k, Real scale, int sign)
      : Transformed({}, {k, sign * c}, {0, scale}), c_(c), k_(k), sign_(sign) {}

  Real c() const { return c_; }
  Real k() const { return k_; }

 private:
  DistLib::Moments StandardMoments() const override {
    const auto raw = [this](int r) {
      return k_ * boost::math::beta(k_ - sign_ * r / c_, 1 + sign_ * r / c_);
    };
    return FromRawMoments(raw, sign_ > 0 ? c_ * k_ : c_, Mode());
  }
  std::optional<Real> StandardEntropy() const override {
    const Real log_mean = sign_ * (boost::math::digamma(1.0L) - boost::math::digamma(k_)) / c_;
    return -std::log(c_ * k_) + (k_ + 1) / k_ + log_mean * (1 - sign_ * c_);
  }
  virtual Real Mode() const = 0;

  Real c_;
  Real k_;
  int sign_;
};

class BurrXII : public Burr {
 public:
  BurrXII(double c, double k, double scale) : Burr(c, k, scale, 1) {}

 private:
  Real Mode() const override {
    return c() > 1 ? std::pow((c() - 1) / (k() * c() + 1), 1 / c()) : 0;
  }
};

class BurrIII : public Burr {
 public:
  BurrIII(double c, double k, double scale) : Burr(c, k, scale, -1) {}

 private:
  Real Mode() const override {
    return c() * k() > 1 ? std::pow((c() * k() - 1) / (c() + 1), 1 / c()) : 0;
  }
};

}  // namespace

const Description kBurrXII{.name = "Burr XII",
                           .other_names = {"Burr", "Singh-Maddala", "Burr type XII"},
                           .parameters = {{"shape", kPositive, {}},
                                          {"tail shape", kPositive, 1.0},
                                          {"scale", kPositive, 1.0}},
                           .support = "numbers from 0",
                           .formula = "F(x) = 1 - (1 + (x / scale)^shape)^-tail shape",
                           .source = "Kleiber and Kotz 2003, section 6.2",
                           .make = Make<BurrXII, 3>};

const Description kBurrIII{.name = "Burr III",
                           .other_names = {"Dagum", "Burr type III", "inverse Burr"},
                           .parameters = {{"shape", kPositive, {}},
                                          {"tail shape", kPositive, 1.0},
                                          {"scale", kPositive, 1.0}},
                           .support = "numbers from 0",
                           .formula = "F(x) = (1 + (x / scale)^-shape)^-tail shape",
                           .source = "Kleiber and Kotz 2003, section 6.3",
                           .make = Make<BurrIII, 3>};

}  // namespace DistLib
