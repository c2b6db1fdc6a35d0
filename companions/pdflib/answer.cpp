#include "companions/pdflib/answer.h"

#include <cmath>
#include <limits>
#include <stdexcept>

#include "numbers/floating_point_scope.h"

namespace DistLib {
namespace {

std::int16_t AnswerMoments(const Moments& moments, const Question& question) {
  if (question.status == nullptr) return PDFLIB_NULL_POINTER;
  const std::optional<Real>* const values[PDFLIB_MOMENT_COUNT] = {
      &moments.mean,     &moments.variance, &moments.skewness,
      &moments.kurtosis, &moments.mode,     &moments.discrete_mean};
  for (int i = 0; i < PDFLIB_MOMENT_COUNT; ++i) {
    const Real exact = values[i]->value_or(std::numeric_limits<Real>::quiet_NaN());
    const auto value = static_cast<double>(exact);
    // Subnormal numbers have lost digits; only 0 is accepted below the normal numbers. A macro
    // takes the square root of the variance.
    const bool held = std::isnormal(value) || (std::isfinite(value) && value == exact);
    question.results[i] = held ? value : std::numeric_limits<double>::quiet_NaN();
    question.status[i] = held ? std::int16_t{0} : std::int16_t{PDFLIB_NO_SUCH_MOMENT};
  }
  return PDFLIB_OK;
}

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
  if (question.request == PDFLIB_MOMENTS) return AnswerMoments(distribution.Moments(), question);
  const double value = Value(distribution, question.request, question.x);
  if (!std::isfinite(value)) return PDFLIB_NO_VALUE;
  *question.results = value;
  return PDFLIB_OK;
}

}  // namespace

// A Windows process starts with long double at only 53 bits, and the caller may have set any mode;
// the scope therefore covers the whole computation.
std::int16_t Answer(const Description& description, std::initializer_list<double> parameters,
                    const Question& question) noexcept {
  const zavrel::FloatingPointScope scope;
  try {
    const std::unique_ptr<PdfDist> distribution = MakeDistribution(
        description, std::span<const double>(parameters.begin(), parameters.size()));
    return AnswerFrom(*distribution, question);
  } catch (const std::domain_error&) {
    return PDFLIB_OUTSIDE_DOMAIN;
  } catch (...) {
    return PDFLIB_NO_VALUE;
  }
}

}  // namespace DistLib
