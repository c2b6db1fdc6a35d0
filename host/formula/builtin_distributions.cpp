// Continuous probability distributions: densities, distribution functions and their inverses. Names
// without a point are those of older versions.

#include <cmath>
#include <numbers>

#include "host/formula/builtin_groups.h"
#include "host/formula/distribution_tails.h"
#include "host/formula/number_function.h"
#include "host/formula/special_functions.h"

namespace zavhost {
namespace {

// Excel's limit of degrees of freedom.
constexpr double kLargestFreedom = 1e10;

bool IsInside(double p) { return p > 0.0 && p < 1.0; }
bool IsFreedom(double df) { return df >= 1.0 && df <= kLargestFreedom; }

// ---- Normal

double NormalDensity(double z) {
  return std::exp(-z * z / 2.0) / std::sqrt(2.0 * std::numbers::pi);
}
double NormalProbability(double z) { return NormalTail(-z); }
double StandardNormal(double z, bool is_cumulative) {
  return is_cumulative ? NormalProbability(z) : NormalDensity(z);
}
double Normal(double x, double mean, double deviation, bool is_cumulative) {
  if (deviation <= 0.0) return kNum;
  const double z = (x - mean) / deviation;
  return is_cumulative ? NormalProbability(z) : NormalDensity(z) / deviation;
}
double NormalInverse(double p, double mean, double deviation) {
  return deviation > 0.0 ? mean + deviation * NormalQuantile(p) : kNum;
}
double Gauss(double z) { return special::Erf(z / std::numbers::sqrt2) / 2.0; }

double LogNormal(double x, double mean, double deviation, bool is_cumulative) {
  if (x <= 0.0) return kNum;
  const double density_scale = is_cumulative ? 1.0 : x;
  return Normal(std::log(x), mean, deviation, is_cumulative) / density_scale;
}
double LogNormalProbability(double x, double mean, double deviation) {
  return LogNormal(x, mean, deviation, true);
}
double LogNormalInverse(double p, double mean, double deviation) {
  return std::exp(NormalInverse(p, mean, deviation));
}

// ---- Student

double StudentDensity(double t, double df) {
  const double power = std::exp(-(df + 1.0) / 2.0 * std::log1p(t * t / df));
  return power / (std::sqrt(df) * special::Beta(df / 2.0, 0.5));
}
double Student(double t, Whole df, bool is_cumulative) {
  if (!IsFreedom(df)) return kNum;
  return is_cumulative ? StudentTail(-t, df) : StudentDensity(t, df);
}
double StudentRight(double t, Whole df) { return IsFreedom(df) ? StudentTail(t, df) : kNum; }
double StudentTwoTails(double t, Whole df) {
  return IsFreedom(df) && t >= 0.0 ? 2.0 * StudentTail(t, df) : kNum;
}
double StudentTails(double t, Whole df, Whole tails) {
  if (!IsFreedom(df) || t < 0.0 || (tails != 1.0 && tails != 2.0)) return kNum;
  return tails * StudentTail(t, df);
}
double StudentInverse(double p, Whole df) {
  if (!IsFreedom(df) || !IsInside(p)) return kNum;
  const double t = StudentTailInverse(std::fmin(p, 1.0 - p), df);
  return p < 0.5 ? -t : t;
}
double StudentInverseTwoTails(double p, Whole df) {
  return IsFreedom(df) && p > 0.0 && p <= 1.0 ? StudentTailInverse(p / 2.0, df) : kNum;
}

// ---- Gamma, chi-squared and their special cases

/// The density of the gamma distribution with unit scale.
double UnitGammaDensity(double x, double shape) {
  if (x > 0.0) return special::GammaPDerivative(shape, x);
  return shape > 1.0 ? 0.0 : shape == 1.0 ? 1.0 : kNum;
}
double Gamma(double x, double shape, double scale, bool is_cumulative) {
  if (x < 0.0 || shape <= 0.0 || scale <= 0.0) return kNum;
  return is_cumulative ? special::GammaP(shape, x / scale)
                       : UnitGammaDensity(x / scale, shape) / scale;
}
double GammaInverse(double p, double shape, double scale) {
  if (!(p >= 0.0 && p < 1.0) || shape <= 0.0 || scale <= 0.0) return kNum;
  return scale * special::GammaPInverse(shape, p);
}
double GammaFunction(double x) {
  return x == 0.0 || (x < 0.0 && std::trunc(x) == x) ? kNum : special::Gamma(x);
}

double ChiSquared(double x, Whole df, bool is_cumulative) {
  return IsFreedom(df) ? Gamma(x, df / 2.0, 2.0, is_cumulative) : kNum;
}
double ChiSquaredRight(double x, Whole df) { return IsFreedom(df) ? ChiSquaredTail(x, df) : kNum; }
double ChiSquaredInverse(double p, Whole df) {
  return IsFreedom(df) ? GammaInverse(p, df / 2.0, 2.0) : kNum;
}
double ChiSquaredInverseRight(double q, Whole df) {
  return IsFreedom(df) && q > 0.0 && q <= 1.0 ? 2.0 * special::GammaQInverse(df / 2.0, q) : kNum;
}

double Exponential(double x, double rate, bool is_cumulative) {
  if (x < 0.0 || rate <= 0.0) return kNum;
  return is_cumulative ? -std::expm1(-rate * x) : rate * std::exp(-rate * x);
}
double Weibull(double x, double shape, double scale, bool is_cumulative) {
  if (x < 0.0 || shape <= 0.0 || scale <= 0.0) return kNum;
  const double power = std::pow(x / scale, shape);
  if (is_cumulative) return -std::expm1(-power);
  return shape / scale * std::pow(x / scale, shape - 1.0) * std::exp(-power);
}

// ---- Beta and F

double BetaDensity(double x, double a, double b) {
  const bool is_infinite = (x == 0.0 && a < 1.0) || (x == 1.0 && b < 1.0);
  return is_infinite ? kNum : special::BetaIDerivative(a, b, x);
}
double Beta(double x, double a, double b, bool is_cumulative, double from, double to) {
  if (a <= 0.0 || b <= 0.0 || x < from || x > to || from == to) return kNum;
  const double part = (x - from) / (to - from);
  return is_cumulative ? special::BetaI(a, b, part) : BetaDensity(part, a, b) / (to - from);
}
double BetaProbability(double x, double a, double b, double from, double to) {
  return Beta(x, a, b, true, from, to);
}
double BetaInverse(double p, double a, double b, double from, double to) {
  if (a <= 0.0 || b <= 0.0 || !(p > 0.0 && p <= 1.0) || from >= to) return kNum;
  return from + (to - from) * special::BetaIInverse(a, b, p).x;
}

double FRight(double x, Whole df1, Whole df2) {
  return IsFreedom(df1) && IsFreedom(df2) && x >= 0.0 ? FTail(x, df1, df2) : kNum;
}
double FDensity(double x, double df1, double df2) {
  if (x == 0.0) return df1 > 2.0 ? 0.0 : df1 == 2.0 ? 1.0 : kNum;
  const double sum = df2 + df1 * x;
  const double derivative = special::BetaIDerivative(df1 / 2.0, df2 / 2.0, df1 * x / sum);
  return derivative * (df1 / sum) * (df2 / sum);
}
double F(double x, Whole df1, Whole df2, bool is_cumulative) {
  if (!IsFreedom(df1) || !IsFreedom(df2) || x < 0.0) return kNum;
  // The lower tail of x is the upper one of 1 / x with exchanged degrees of freedom.
  return is_cumulative ? FTail(1.0 / x, df2, df1) : FDensity(x, df1, df2);
}
double FAt(const special::BetaQuantile& quantile, double df1, double df2) {
  return quantile.x / quantile.complement * (df2 / df1);
}
double FInverse(double p, Whole df1, Whole df2) {
  if (!IsFreedom(df1) || !IsFreedom(df2) || !(p >= 0.0 && p < 1.0)) return kNum;
  return FAt(special::BetaIInverse(df1 / 2.0, df2 / 2.0, p), df1, df2);
}
double FInverseRight(double q, Whole df1, Whole df2) {
  if (!IsFreedom(df1) || !IsFreedom(df2) || !(q > 0.0 && q <= 1.0)) return kNum;
  return FAt(special::BetaIComplementInverse(df1 / 2.0, df2 / 2.0, q), df1, df2);
}

constexpr BuiltInFunction kFunctions[] = {
    {u"NORM.DIST", 4, 4, "s", Of<Normal>},
    {u"NORMDIST", 4, 4, "s", Of<Normal>},
    {u"NORM.INV", 3, 3, "s", Of<NormalInverse>},
    {u"NORMINV", 3, 3, "s", Of<NormalInverse>},
    {u"NORM.S.DIST", 2, 2, "s", Of<StandardNormal>},
    {u"NORMSDIST", 1, 1, "s", Of<NormalProbability>},
    {u"NORM.S.INV", 1, 1, "s", Of<NormalQuantile>},
    {u"NORMSINV", 1, 1, "s", Of<NormalQuantile>},
    {u"PHI", 1, 1, "s", Of<NormalDensity>},
    {u"GAUSS", 1, 1, "s", Of<Gauss>},
    {u"LOGNORM.DIST", 4, 4, "s", Of<LogNormal>},
    {u"LOGNORMDIST", 3, 3, "s", Of<LogNormalProbability>},
    {u"LOGNORM.INV", 3, 3, "s", Of<LogNormalInverse>},
    {u"LOGINV", 3, 3, "s", Of<LogNormalInverse>},
    {u"T.DIST", 3, 3, "s", Of<Student>},
    {u"T.DIST.RT", 2, 2, "s", Of<StudentRight>},
    {u"T.DIST.2T", 2, 2, "s", Of<StudentTwoTails>},
    {u"TDIST", 3, 3, "s", Of<StudentTails>},
    {u"T.INV", 2, 2, "s", Of<StudentInverse>},
    {u"T.INV.2T", 2, 2, "s", Of<StudentInverseTwoTails>},
    {u"TINV", 2, 2, "s", Of<StudentInverseTwoTails>},
    {u"GAMMA", 1, 1, "s", Of<GammaFunction>},
    {u"GAMMALN", 1, 1, "s", Of<special::LogGamma>},
    {u"GAMMALN.PRECISE", 1, 1, "s", Of<special::LogGamma>},
    {u"GAMMA.DIST", 4, 4, "s", Of<Gamma>},
    {u"GAMMADIST", 4, 4, "s", Of<Gamma>},
    {u"GAMMA.INV", 3, 3, "s", Of<GammaInverse>},
    {u"GAMMAINV", 3, 3, "s", Of<GammaInverse>},
    {u"CHISQ.DIST", 3, 3, "s", Of<ChiSquared>},
    {u"CHISQ.DIST.RT", 2, 2, "s", Of<ChiSquaredRight>},
    {u"CHIDIST", 2, 2, "s", Of<ChiSquaredRight>},
    {u"CHISQ.INV", 2, 2, "s", Of<ChiSquaredInverse>},
    {u"CHISQ.INV.RT", 2, 2, "s", Of<ChiSquaredInverseRight>},
    {u"CHIINV", 2, 2, "s", Of<ChiSquaredInverseRight>},
    {u"EXPON.DIST", 3, 3, "s", Of<Exponential>},
    {u"EXPONDIST", 3, 3, "s", Of<Exponential>},
    {u"WEIBULL.DIST", 4, 4, "s", Of<Weibull>},
    {u"WEIBULL", 4, 4, "s", Of<Weibull>},
    {u"BETA.DIST", 4, 6, "s", Of<Beta, 0, 1>},
    {u"BETADIST", 3, 5, "s", Of<BetaProbability, 0, 1>},
    {u"BETA.INV", 3, 5, "s", Of<BetaInverse, 0, 1>},
    {u"BETAINV", 3, 5, "s", Of<BetaInverse, 0, 1>},
    {u"F.DIST", 4, 4, "s", Of<F>},
    {u"F.DIST.RT", 3, 3, "s", Of<FRight>},
    {u"FDIST", 3, 3, "s", Of<FRight>},
    {u"F.INV", 3, 3, "s", Of<FInverse>},
    {u"F.INV.RT", 3, 3, "s", Of<FInverseRight>},
    {u"FINV", 3, 3, "s", Of<FInverseRight>},
};

}  // namespace

std::span<const BuiltInFunction> DistributionFunctions() { return kFunctions; }

}  // namespace zavhost
