#include "distributions/search.h"

namespace DistLib {
namespace {

/// The time in a service that is chosen by chance out of two.
class Hyperexponential : public Searched<LogScale> {
 public:
  Hyperexponential(double probability, double rate1, double rate2)
      : Searched(LogScale{1 / std::sqrt(Real{rate1} * rate2)}),
        first_{probability, rate1},
        second_{1 - Real{probability}, rate2} {}

  DistLib::Moments Moments() const override {
    const auto raw = [this](int r) {
      return std::tgamma(Real{1} + r) *
             Sum([r](const Part& part) { return std::pow(part.rate, -Real{1} * r); });
    };
    return FromRawMoments(raw, 5, 0);
  }

 private:
  struct Part {
    Real weight;
    Real rate;
  };

  template <class Function>
  Real Sum(Function of_part) const {
    return first_.weight * of_part(first_) + second_.weight * of_part(second_);
  }
  Real DensityAt(Real x) const override {
    return Sum([x](const Part& part) { return part.rate * std::exp(-part.rate * x); });
  }
  Real CumulativeAt(Real x) const override {
    return Sum([x](const Part& part) { return -std::expm1(-part.rate * x); });
  }
  Real UpperTailAt(Real x) const override {
    return Sum([x](const Part& part) { return std::exp(-part.rate * x); });
  }

  Part first_;
  Part second_;
};

}  // namespace

const Description kHyperexponential{
    .name = "hyperexponential",
    .other_names = {"exponential mixture"},
    .parameters = {{"probability", kProbability, {}},
                   {"rate1", kPositive, {}},
                   {"rate2", kPositive, {}}},
    .support = "numbers from 0",
    .formula = "F(x) = probability (1 - exp(-rate1 x)) + (1 - probability) (1 - exp(-rate2 x))",
    .source = "Johnson, Kotz and Balakrishnan 1994, section 19.9",
    .make = Make<Hyperexponential, 3>};

}  // namespace DistLib
