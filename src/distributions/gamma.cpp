// Powers of gamma variables: gamma, chi, Nakagami and others, and their reciprocals.

#include "distributions/gamma_core.h"

namespace DistLib {
namespace {

using std::numbers::sqrt2_v;

class GammaPower : public Transformed<GammaCore, PowerMap> {
 protected:
  GammaPower(Real shape, Real power, Place place) : Transformed({shape}, {power}, place) {}

 private:
  DistLib::Moments StandardMoments() const override {
    const Real shape = core().shape, power = map().power;
    const Real mode = shape > power ? std::pow(shape - power, power) : 0;
    if (power == 1)
      return {.mean = shape,
              .variance = shape,
              .skewness = 2 / std::sqrt(shape),
              .kurtosis = 3 + 6 / shape,
              .mode = mode,
              .discrete_mean = {}};
    const Real limit = power < 0 ? -shape / power : 5;
    return FromRawMoments([&](int r) { return core().RawMoment(r * power); }, limit, mode);
  }
  std::optional<Real> StandardEntropy() const override {
    const Real power = map().power;
    return core().Entropy() + std::log(std::fabs(power)) + (power - 1) * core().LogMean();
  }
};

class Gamma : public GammaPower {
 public:
  Gamma(double shape, double scale, double location) : GammaPower(shape, 1, {location, scale}) {}
  Gamma(double shape, double scale) : Gamma(shape, scale, 0) {}
};

class Erlang : public GammaPower {
 public:
  Erlang(double shape, double rate) : GammaPower(shape, 1, {0, 1 / Real{rate}}) {}
};

class Chi : public GammaPower {
 public:
  explicit Chi(double df) : GammaPower(Real{df} / 2, 0.5L, {0, sqrt2_v<Real>}) {}
};

class Maxwell : public GammaPower {
 public:
  explicit Maxwell(double scale) : GammaPower(1.5L, 0.5L, {0, scale * sqrt2_v<Real>}) {}
};

class Nakagami : public GammaPower {
 public:
  Nakagami(double shape, double spread)
      : GammaPower(shape, 0.5L, {0, std::sqrt(spread / Real{shape})}) {}
};

class GeneralizedGamma : public GammaPower {
 public:
  GeneralizedGamma(double shape, double power, double scale)
      : GammaPower(shape, 1 / Real{power}, {0, scale}) {}
};

class InverseGamma : public GammaPower {
 public:
  InverseGamma(double shape, double scale, double location)
      : GammaPower(shape, -1, {location, scale}) {}
  InverseGamma(double shape, double scale) : InverseGamma(shape, scale, 0) {}
};

class InverseChiSquare : public GammaPower {
 public:
  explicit InverseChiSquare(double df) : GammaPower(Real{df} / 2, -1, {0, 0.5L}) {}
};

}  // namespace

const Description kGamma{.name = "gamma",
                         .other_names = {},
                         .parameters = {{"shape", kDegrees, {}}, {"scale", kPositive, 1.0}},
                         .support = "numbers from 0",
                         .formula =
                             "f(x) = (x / scale)^(shape - 1) exp(-x / scale) / (scale "
                             "gamma(shape))",
                         .source = "Johnson, Kotz and Balakrishnan 1994, chapter 17",
                         .make = Make<Gamma, 2>};

const Description kPearsonIII{
    .name = "Pearson III",
    .other_names = {"shifted gamma", "gamma 3P", "Pearson type III"},
    .parameters = {{"shape", kDegrees, {}},
                   {"scale", kPositive, 1.0},
                   {"location", kAnyNumber, 0.0}},
    .support = "numbers from location",
    .formula = "(x - location) / scale has the gamma distribution with this shape",
    .source = "Johnson, Kotz and Balakrishnan 1994, chapter 17",
    .make = Make<Gamma, 3>};

const Description kErlang{
    .name = "Erlang",
    .other_names = {},
    .parameters = {{"shape",
                    {.low = 1, .high = 1e10, .with_low = true, .with_high = true, .whole = true},
                    {}},
                   {"rate", kPositive, 1.0}},
    .support = "numbers from 0",
    .formula = "f(x) = rate (rate x)^(shape - 1) exp(-rate x) / (shape - 1)!",
    .source = "Johnson, Kotz and Balakrishnan 1994, chapter 17",
    .make = Make<Erlang, 2>};

const Description kChi{.name = "chi",
                       .other_names = {},
                       .parameters = {{"df", kDegrees, {}}},
                       .support = "numbers from 0",
                       .formula = "x^2 has the chi-square distribution with df",
                       .source = "Johnson, Kotz and Balakrishnan 1994, chapter 18",
                       .make = Make<Chi, 1>};

const Description kMaxwell{.name = "Maxwell",
                           .other_names = {"Maxwell-Boltzmann"},
                           .parameters = {{"scale", kPositive, 1.0}},
                           .support = "numbers from 0",
                           .formula = "x / scale has the chi distribution with df 3",
                           .source = "Johnson, Kotz and Balakrishnan 1994, chapter 17",
                           .make = Make<Maxwell, 1>};

const Description kNakagami{
    .name = "Nakagami",
    .other_names = {"Nakagami-m"},
    .parameters = {{"shape", {.low = 0.5, .high = 1e10, .with_low = true, .with_high = true}, {}},
                   {"spread", kPositive, 1.0}},
    .support = "numbers from 0",
    .formula = "x^2 has the gamma distribution with this shape and the scale spread / shape",
    .source = "Johnson, Kotz and Balakrishnan 1994, chapter 18",
    .make = Make<Nakagami, 2>};

const Description kGeneralizedGamma{
    .name = "generalised gamma",
    .other_names = {"generalized gamma", "Stacy"},
    .parameters = {{"shape", kDegrees, {}}, {"power", kPositive, 1.0}, {"scale", kPositive, 1.0}},
    .support = "numbers from 0",
    .formula = "(x / scale)^power has the gamma distribution with this shape",
    .source = "Stacy 1962, Annals of Mathematical Statistics 33, 1187-1192",
    .make = Make<GeneralizedGamma, 3>};

const Description kInverseGamma{.name = "inverse gamma",
                                .other_names = {"inverted gamma"},
                                .parameters = {{"shape", kDegrees, {}}, {"scale", kPositive, 1.0}},
                                .support = "numbers from 0",
                                .formula = "scale / x has the gamma distribution with this shape",
                                .source = "Johnson, Kotz and Balakrishnan 1994, chapter 17",
                                .make = Make<InverseGamma, 2>};

const Description kPearsonV{
    .name = "Pearson V",
    .other_names = {"Pearson type V"},
    .parameters = {{"shape", kDegrees, {}},
                   {"scale", kPositive, 1.0},
                   {"location", kAnyNumber, 0.0}},
    .support = "numbers from location",
    .formula = "scale / (x - location) has the gamma distribution with this shape",
    .source = "Johnson, Kotz and Balakrishnan 1994, section 12.4.1",
    .make = Make<InverseGamma, 3>};

const Description kInverseChiSquare{.name = "inverse chi-square",
                                    .other_names = {"inverted chi-square"},
                                    .parameters = {{"df", kDegrees, {}}},
                                    .support = "numbers from 0",
                                    .formula = "1 / x has the chi-square distribution with df",
                                    .source = "Johnson, Kotz and Balakrishnan 1994, chapter 18",
                                    .make = Make<InverseChiSquare, 1>};

}  // namespace DistLib
