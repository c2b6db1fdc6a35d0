#include "distributions/catalogue.h"

#include <algorithm>
#include <string>

namespace DistLib {
namespace {

constexpr const Description* kAll[] = {
    &kArcsine,
    &kBernoulli,
    &kBeta,
    &kBetaBinomial,
    &kBetaNegativeBinomial,
    &kBinomial,
    &kBirnbaumSaunders,
    &kBorel,
    &kBurrIII,
    &kBurrXII,
    &kCauchy,
    &kChi,
    &kChiSquare,
    &kDiscreteUniform,
    &kErlang,
    &kError,
    &kExponential,
    &kGumbelOfMinima,
    &kF,
    &kBeta4,
    &kFrechet,
    &kGamma,
    &kGeneralizedExtremeValue,
    &kGeneralizedGamma,
    &kGeneralizedLogistic,
    &kGeneralizedPareto,
    &kGeometric,
    &kGompertz,
    &kGumbelOfMaxima,
    &kHalfCauchy,
    &kHalfNormal,
    &kHyperbolicSecant,
    &kHypergeometric,
    &kInverseChiSquare,
    &kInverseGamma,
    &kInverseWeibull,
    &kJohnsonSL,
    &kJohnsonSU,
    &kKumaraswamy,
    &kLaplace,
    &kLevy,
    &kLogGamma,
    &kLogLaplace,
    &kLogLogistic,
    &kLogPearsonIII,
    &kLogarithmic,
    &kLogistic,
    &kLognormal,
    &kLomax,
    &kMaxwell,
    &kNakagami,
    &kNegativeBinomial,
    &kNegativeHypergeometric,
    &kNormal,
    &kPareto,
    &kPearsonIII,
    &kPearsonV,
    &kPearsonVI,
    &kPert,
    &kPoisson,
    &kPowerFunction,
    &kRayleigh,
    &kReciprocal,
    &kSkellam,
    &kStudent,
    &kLognormal3,
    &kWeibull3,
    &kTriangular,
    &kUniform,
    &kWeibull,
    &kSemicircle,
    &kYuleSimon,
    &kZeta,
    &kZipf,
};

/// The name without what does not matter in it.
std::string Key(std::string_view name) {
  std::string key;
  for (const char c : name) {
    if (c == ' ' || c == '-' || c == '_') continue;
    key += c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
  }
  return key;
}

}  // namespace

std::span<const Description* const> Distributions() { return kAll; }

const Description* FindDistribution(std::string_view name) {
  const std::string key = Key(name);
  const auto has_key = [&](const std::string& known) { return Key(known) == key; };
  for (const Description* description : kAll) {
    if (has_key(description->name) || std::ranges::any_of(description->other_names, has_key))
      return description;
  }
  return nullptr;
}

}  // namespace DistLib
