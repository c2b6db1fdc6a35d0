#pragma once
// The boundary of the library: from a distribution to the result of its exported function.

#include <cstdint>
#include <initializer_list>

#include "companions/pdflib/distributions/catalogue.h"
#include "contracts/pdflib.h"

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

}  // namespace DistLib
