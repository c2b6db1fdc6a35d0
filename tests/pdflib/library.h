#pragma once
// The distribution library as another program would use it.

#include <array>
#include <cstdint>
#include <limits>
#include <string>

#include "contracts/pdflib.h"

namespace zavrel::tests {

inline constexpr double kEpsilon = std::numeric_limits<double>::epsilon();
inline constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
inline constexpr double kInfinity = std::numeric_limits<double>::infinity();

/// "normal", "student", "chisq", "f" or "binomial", with its one or two parameters.
struct Distribution {
  std::string name;
  double a;
  double b = 0;

  bool discrete() const { return name == "binomial"; }
  bool from_zero() const { return name != "normal" && name != "student"; }
};

/// What stands in the places of an answer that has not been written.
inline constexpr double kUntouched = -4711;
inline constexpr std::int16_t kUntouchedStatus = -4711;

struct Reply {
  std::int16_t code = -1;
  std::array<double, PDFLIB_MOMENT_COUNT> results;
  std::array<std::int16_t, PDFLIB_MOMENT_COUNT> status;
};

/// Calls the function of the distribution, on Windows that of the file that ships.
Reply Ask(const Distribution& distribution, int request, double x);
std::int16_t AskRaw(const Distribution& of, int request_code, int reserved_word, double x,
                    double* results, std::int16_t* status);
/// The functions that serve the whole list.
struct ListFunctions {
  decltype(&pdfCount) count;
  decltype(&pdfFind) find;
  decltype(&pdfDescribe) describe;
  decltype(&pdfProblem) problem;
  decltype(&pdfEvaluate) evaluate;
  decltype(&pdfMoments) moments;
  decltype(&pdfRandom) random;
};
const ListFunctions& List();
/// results[0], whatever the code.
double Value(const Distribution& distribution, int request, double x);

}  // namespace zavrel::tests
