#pragma once
// The list of all distributions.
//
// A new distribution is one file with its class and its description, and a line in the list in
// catalogue.cpp. Close relatives may share a file.

#include <memory>
#include <span>
#include <string_view>

#include "distributions/description.h"

namespace DistLib {

extern const Description kArcsine;
extern const Description kBernoulli;
extern const Description kBeta4;
extern const Description kBeta;
extern const Description kBetaBinomial;
extern const Description kBetaNegativeBinomial;
extern const Description kBinomial;
extern const Description kBirnbaumSaunders;
extern const Description kBorel;
extern const Description kBurrIII;
extern const Description kBurrXII;
extern const Description kCauchy;
extern const Description kChi;
extern const Description kChiSquare;
extern const Description kDiscreteUniform;
extern const Description kErlang;
extern const Description kError;
extern const Description kExponential;
extern const Description kF;
extern const Description kFrechet;
extern const Description kGamma;
extern const Description kGeneralizedExtremeValue;
extern const Description kGeneralizedGamma;
extern const Description kGeneralizedLogistic;
extern const Description kGeneralizedPareto;
extern const Description kGeometric;
extern const Description kGompertz;
extern const Description kGumbelOfMaxima;
extern const Description kGumbelOfMinima;
extern const Description kHalfCauchy;
extern const Description kHalfNormal;
extern const Description kHyperbolicSecant;
extern const Description kHypergeometric;
extern const Description kInverseChiSquare;
extern const Description kInverseGamma;
extern const Description kInverseWeibull;
extern const Description kJohnsonSL;
extern const Description kJohnsonSU;
extern const Description kKumaraswamy;
extern const Description kLaplace;
extern const Description kLevy;
extern const Description kLogGamma;
extern const Description kLogLaplace;
extern const Description kLogLogistic;
extern const Description kLogPearsonIII;
extern const Description kLogarithmic;
extern const Description kLogistic;
extern const Description kLognormal3;
extern const Description kLognormal;
extern const Description kLomax;
extern const Description kMaxwell;
extern const Description kNakagami;
extern const Description kNegativeBinomial;
extern const Description kNegativeHypergeometric;
extern const Description kNormal;
extern const Description kPareto;
extern const Description kPearsonIII;
extern const Description kPearsonV;
extern const Description kPearsonVI;
extern const Description kPert;
extern const Description kPoisson;
extern const Description kPowerFunction;
extern const Description kRayleigh;
extern const Description kReciprocal;
extern const Description kSemicircle;
extern const Description kSkellam;
extern const Description kStudent;
extern const Description kTriangular;
extern const Description kUniform;
extern const Description kWeibull3;
extern const Description kWeibull;
extern const Description kYuleSimon;
extern const Description kZeta;
extern const Description kZipf;

/// All distributions, by name.
std::span<const Description* const> Distributions();

/// The distribution with this name or other name, or null. The case of ASCII letters does not
/// matter, nor do spaces, hyphens and underscores.
const Description* FindDistribution(std::string_view name);

/// Makes a distribution; parameters that are not given have their defaults. Throws ParameterError
/// for one outside its domain, std::invalid_argument for too many or too few. As all computation,
/// it needs a zavrel::FloatingPointScope around it.
std::unique_ptr<PdfDist> MakeDistribution(const Description& description,
                                          std::span<const double> parameters);

}  // namespace DistLib
