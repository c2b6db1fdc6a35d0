// Kumaraswamy and power function: on an interval from 0.

#include <boost/math/special_functions/beta.hpp>
#include <boost/math/special_functions/digamma.hpp>

#include "distributions/transformed.h"

namespace DistLib {
namespace {

class Kumaraswamy : public Transformed<UnitExponential, Composed<Expm1Map, PowerMap>> {
 public:
  Kumaraswamy(double a, double b)
      : Transformed({}, {{-1 / Real{b}, -1}, {1 / Real{a}}}, {}), a_(a), b_(b) {}

 private:
  DistLib::Moments StandardMoments() const override {
    return FromRawMoments([this](int r) { return b_ * boost::math::beta(1 + r / a_, b_); }, 5,
                          Mode());
  }
  std::optional<Real> StandardEntropy() const override {
    return 1 - 1 / b_ + (1 - 1 / a_) * (boost::math::digamma(b_ + 1) + kEuler) - std::log(a_ * b_);
  }
  std::optional<Real> Mode() const {
    if (a_ < 1 && b_ < 1) return {};  // both ends are without bound
    if (a_ == 1 && b_ == 1) return {};
    if (a_ > 1 && b_ > 1) return std::pow((a_ - 1) / (a_ * b_ - 1), 1 / a_);
    return b_ < 1 || a_ > 1 ? 1 : 0;
  }

  Real a_;
  Real b_;
};

class PowerFunction : public Transformed<UnitExponential, ExpMap> {
 public:
  PowerFunction(double shape, double maximum)
      : Transformed({}, {.factor = -1 / Real{shape}}, {0, maximum}), shape_(shape) {}

 private:
  DistLib::Moments StandardMoments() const override {
    std::optional<Real> mode;
    if (shape_ != 1) mode = shape_ > 1 ? 1 : 0;
    return FromRawMoments([this](int r) { return shape_ / (shape_ + r); }, 5, mode);
  }
  std::optional<Real> StandardEntropy() const override { return 1 - 1 / shape_ - std::log(shape_); }

  Real shape_;
};

}  // namespace

const Description kKumaraswamy{.name = "Kumaraswamy",
                               .other_names = {"minimax"},
                               .parameters = {{"shape1", kPositive, {}}, {"shape2", kPositive, {}}},
                               .support = "numbers from 0 to 1",
                               .formula = "F(x) = 1 - (1 - x^shape1)^shape2",
                               .source = "Jones 2009, Statistical Methodology 6, 70-81",
                               .make = Make<Kumaraswamy, 2>};

const Description kPowerFunction{
    .name = "power function",
    .other_names = {"power"},
    .parameters = {{"shape", kPositive, {}}, {"maximum", kPositive, 1.0}},
    .support = "numbers from 0 to maximum",
    .formula = "F(x) = (x / maximum)^shape",
    .source = "Johnson, Kotz and Balakrishnan 1994, chapter 20",
    .make = Make<PowerFunction, 2>};

}  // namespace DistLib
