#pragma once
// The boundary of the library: from a distribution to the result of its exported function.

#include <cstdint>
#include <stdexcept>

#include "companions/pdflib/pdf_dist.h"
#include "contracts/pdflib.h"
#include "numbers/floating_point_scope.h"

namespace DistLib {

/// The arguments that all exported functions share; pdflib.h describes them.
struct Question {
  std::int16_t request;
  std::int16_t reserved;
  double x;
  double* results;
  std::int16_t* status;
};

/// Answers from the distribution, whose exceptions are not caught.
std::int16_t AnswerFrom(const PdfDist& distribution, const Question& question);

/// Answers from a distribution with these parameters. A Windows process starts with long double at
/// only 53 bits, and the caller may have set any mode; the scope therefore covers the whole
/// computation.
template <class Distribution, class... Parameters>
std::int16_t Answer(const Question& question, Parameters... parameters) noexcept {
  const zavrel::FloatingPointScope scope;
  try {
    return AnswerFrom(Distribution(parameters...), question);
  } catch (const std::domain_error&) {
    return PDFLIB_OUTSIDE_DOMAIN;
  } catch (...) {
    return PDFLIB_NO_VALUE;
  }
}

}  // namespace DistLib
