#include <algorithm>
#include <boost/math/distributions/chi_squared.hpp>
#include <cmath>

#include "companions/pdflib/answer.h"
#include "companions/pdflib/positive_dist.h"

namespace DistLib {
namespace {

class Chisq : public PositiveDist {
 public:
  explicit Chisq(double df) : chi_squared_((Require(ValidDf(df)), df)) {}

  DistLib::Moments Moments() const override {
    const Real df = chi_squared_.degrees_of_freedom();
    return {.mean = df,
            .variance = 2 * df,
            .skewness = std::sqrt(8 / df),
            .kurtosis = 3 + 12 / df,
            .mode = std::max<Real>(df - 2, 0),
            .discrete_mean = {}};
  }

 private:
  Real DensityAt(Real x) const override { return pdf(chi_squared_, x); }
  Real CumulativeAt(Real x) const override { return cdf(chi_squared_, x); }
  Real UpperTailAt(Real x) const override { return cdf(complement(chi_squared_, x)); }
  /// Wilson and Hilferty: the cube root is approximately normal.
  Real ValueNear(Real z) const override {
    const Real df = chi_squared_.degrees_of_freedom(), variance = 2 / (9 * df);
    const Real root = std::max(1 - variance + z * std::sqrt(variance), 0.01L);
    return df * root * root * root;
  }

  boost::math::chi_squared_distribution<Real> chi_squared_;
};

}  // namespace
}  // namespace DistLib

int16_t pdfChisq(int16_t request, int16_t reserved, double df, double x, double* results,
                 int16_t* status, void*) {
  return DistLib::Answer<DistLib::Chisq>({request, reserved, x, results, status}, df);
}
