#include "companions/pdflib/answer.h"

#include <cmath>
#include <limits>

namespace DistLib {
namespace {

double Value(const PdfDist& distribution, std::int16_t request, double x) {
  switch (request) {
    case PDFLIB_DENSITY:
      return distribution.Density(x);
    case PDFLIB_CUMULATIVE:
      return distribution.Cumulative(x);
    case PDFLIB_QUANTILE:
      return distribution.Quantile(x);
    case PDFLIB_UPPER_TAIL:
      return distribution.UpperTail(x);
    default:
      return distribution.UpperQuantile(x);
  }
}

bool Known(std::int16_t request) {
  return request >= PDFLIB_MOMENTS && request <= PDFLIB_UPPER_QUANTILE && request != 5;
}

/// Answers from the distribution, whose exceptions are not caught.
std::int16_t AnswerFrom(const PdfDist& distribution, const Question& question) {
  if (!Known(question.request) || question.reserved != 0) return PDFLIB_UNKNOWN_REQUEST;
  if (question.results == nullptr) return PDFLIB_NULL_POINTER;
  if (question.request == PDFLIB_MOMENTS) {
    if (question.status == nullptr) return PDFLIB_NULL_POINTER;
    WriteMoments(distribution.Moments(), question.results, question.status);
    return PDFLIB_OK;
  }
  const double value = Value(distribution, question.request, question.x);
  if (!std::isfinite(value)) return PDFLIB_NO_VALUE;
  *question.results = value;
  return PDFLIB_OK;
}

}  // namespace

void WriteMoments(const Moments& moments, double* results, std::int16_t* status) {
  const std::optional<Real>* const values[PDFLIB_MOMENT_COUNT] = {
      &moments.mean,     &moments.variance, &moments.skewness,
      &moments.kurtosis, &moments.mode,     &moments.discrete_mean};
  for (int i = 0; i < PDFLIB_MOMENT_COUNT; ++i) {
    const Real exact = values[i]->value_or(std::numeric_limits<Real>::quiet_NaN());
    const auto value = static_cast<double>(exact);
    // Subnormal numbers have lost digits; only 0 is accepted below the normal numbers. A macro
    // takes the square root of the variance.
    const bool held = std::isnormal(value) || (std::isfinite(value) && value == exact);
    results[i] = held ? value : std::numeric_limits<double>::quiet_NaN();
    status[i] = held ? std::int16_t{0} : std::int16_t{PDFLIB_NO_SUCH_MOMENT};
  }
}

std::int16_t Answer(const Description& description, std::initializer_list<double> parameters,
                    const Question& question) noexcept {
  return Guarded([&] {
    const std::unique_ptr<PdfDist> distribution = MakeDistribution(
        description, std::span<const double>(parameters.begin(), parameters.size()));
    return AnswerFrom(*distribution, question);
  });
}

}  // namespace DistLib
