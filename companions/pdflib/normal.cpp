#include <boost/math/distributions/normal.hpp>
#include <cmath>
#include <limits>

#include "companions/pdflib/answer.h"

namespace DistLib {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();

class Normal : public PdfDist {
 public:
  Normal(double mean, double standard_deviation)
      : PdfDist(-kInfinity, kInfinity), mean_(mean), deviation_(standard_deviation) {
    Require(std::isfinite(mean) && std::isfinite(standard_deviation) && standard_deviation > 0);
  }

  DistLib::Moments Moments() const override {
    return {.mean = mean_,
            .variance = deviation_ * deviation_,
            .skewness = 0,
            .kurtosis = 3,
            .mode = mean_,
            .discrete_mean = {}};
  }

 private:
  Real DensityAt(Real x) const override { return pdf(standard_, Score(x)) / deviation_; }
  Real CumulativeAt(Real x) const override { return cdf(standard_, Score(x)); }
  Real UpperTailAt(Real x) const override { return cdf(complement(standard_, Score(x))); }
  Real QuantileOf(Real p) const override { return mean_ + deviation_ * quantile(standard_, p); }
  Real UpperQuantileOf(Real q) const override {
    return mean_ + deviation_ * quantile(complement(standard_, q));
  }

  Real Score(Real x) const { return (x - mean_) / deviation_; }

  boost::math::normal_distribution<Real> standard_;
  Real mean_;
  Real deviation_;
};

}  // namespace
}  // namespace DistLib

int16_t pdfNormal(int16_t request, int16_t reserved, double mean, double standard_deviation,
                  double x, double* results, int16_t* status, void*) {
  return DistLib::Answer<DistLib::Normal>({request, reserved, x, results, status}, mean,
                                          standard_deviation);
}
