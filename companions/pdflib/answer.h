#pragma once
// The boundary of the library: from a distribution to the result of its exported function.

#include <cstdint>
#include <initializer_list>
#include <stdexcept>

#include "contracts/pdflib.h"
#include "distributions/catalogue.h"
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

/// Answers from a distribution with these parameters.
std::int16_t Answer(const Description& description, std::initializer_list<double> parameters,
                    const Question& question) noexcept;

/// As PDFLIB_MOMENTS answers.
void WriteMoments(const Moments& moments, double* results, std::int16_t* status);

/// The code for what `work` throws, PDFLIB_OK if it throws nothing. The whole computation stands
/// in the scope: a Windows process starts with long double at only 53 bits, and the caller may have
/// set any mode.
template <class Work>
std::int16_t Guarded(Work work) noexcept {
  const zavrel::FloatingPointScope scope;
  try {
    return work();
  } catch (const std::domain_error&) {
    return PDFLIB_OUTSIDE_DOMAIN;
  } catch (const std::invalid_argument&) {
    return PDFLIB_WRONG_COUNT;
  } catch (...) {
    return PDFLIB_NO_VALUE;
  }
}

}  // namespace DistLib
