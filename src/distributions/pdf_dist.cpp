#include "distributions/pdf_dist.h"

#include <cmath>
#include <stdexcept>

namespace DistLib {

void PdfDist::Require(bool in_domain) {
  if (!in_domain) throw std::domain_error("outside the domain");
}

Real PdfDist::Supported(double x) const {
  Require(std::isfinite(x) && x >= lowest_ && x <= highest_);
  return x;
}

double PdfDist::Density(double x) const { return static_cast<double>(DensityAt(Supported(x))); }

Real PdfDist::LogDensityAt(Real x) const { return std::log(DensityAt(x)); }

double PdfDist::LogDensity(double x) const {
  return static_cast<double>(LogDensityAt(Supported(x)));
}

double PdfDist::Cumulative(double x) const {
  return static_cast<double>(CumulativeAt(Supported(x)));
}

double PdfDist::UpperTail(double x) const { return static_cast<double>(UpperTailAt(Supported(x))); }

double PdfDist::Quantile(double p) const {
  Require(p >= 0 && p <= 1);
  if (p == 0) return lowest_;
  if (p == 1) return last_;
  return static_cast<double>(QuantileOf(p));
}

double PdfDist::UpperQuantile(double q) const {
  Require(q >= 0 && q <= 1);
  if (q == 0) return last_;
  if (q == 1) return lowest_;
  return static_cast<double>(UpperQuantileOf(q));
}

double PdfDist::Random(zavrel::RndGen& generator) const {
  const Real p = generator.NextDouble() + 0x1p-54L;  // strictly between 0 and 1
  return static_cast<double>(p <= 0.5L ? QuantileOf(p) : UpperQuantileOf(1 - p));
}

}  // namespace DistLib
