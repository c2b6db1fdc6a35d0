// The univariate reference data sets of the NIST (Statistical Reference Datasets), those that can
// be generated and one that is short. docs/accuracy.md has the figures that are held here.
#include <doctest/doctest.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "stats/autocorrelation.h"
#include "stats/moment_block.h"

namespace zavrel::tests {
namespace {

using Values = std::vector<double>;

struct Figures {
  double mean, standard_deviation, autocorrelation;
};

/// Decimal digits that agree, capped at 15.
double LogRelativeError(double value, double certified) {
  if (value == certified) return 15;
  return std::min(15.0, -std::log10(std::abs(value - certified) / std::abs(certified)));
}

/// `reached`: what the kernels reach, rounded down to a tenth.
void CheckReached(const std::string& name, const Values& values, Figures certified,
                  Figures reached) {
  const MomentBlock moments = ComputeMoments(values, Form::kSample);
  const Figures digits{LogRelativeError(moments.mean, certified.mean),
                       LogRelativeError(moments.standard_deviation, certified.standard_deviation),
                       LogRelativeError(Autocorrelation(values, 1), certified.autocorrelation)};
  MESSAGE(name << ": " << digits.mean << " " << digits.standard_deviation << " "
               << digits.autocorrelation);
  CHECK(digits.mean >= reached.mean);
  CHECK(digits.standard_deviation >= reached.standard_deviation);
  CHECK(digits.autocorrelation >= reached.autocorrelation);
}

/// `first`, then `low` and `high` in turn, 500 times.
Values Alternating(double first, double low, double high) {
  Values values{first};
  for (int i = 0; i < 500; ++i) values.insert(values.end(), {low, high});
  return values;
}

/// Michelson's measurements of the speed of light, 1879, in thousands of km/s.
Values SpeedOfLight() {
  constexpr int kBeyond299000[] = {
      850,  740, 900, 1070, 930, 850, 950, 980, 980, 880, 1000, 980, 930, 650, 760, 810, 1000,
      1000, 960, 960, 960,  940, 960, 940, 880, 800, 850, 880,  900, 840, 830, 790, 810, 880,
      880,  830, 800, 790,  760, 800, 880, 880, 880, 860, 720,  720, 620, 860, 970, 950, 880,
      910,  850, 870, 840,  840, 850, 840, 840, 840, 890, 810,  810, 820, 800, 770, 760, 740,
      750,  760, 910, 920,  890, 860, 880, 720, 840, 850, 850,  780, 890, 840, 780, 810, 760,
      810,  790, 810, 820,  850, 870, 870, 810, 740, 810, 940,  950, 800, 810, 870};
  Values values;
  for (const int beyond : kBeyond299000) values.push_back((299000 + beyond) / 1000.0);
  return values;
}

}  // namespace

TEST_CASE("NIST univariate data sets") {
  CheckReached("NumAcc1", {10000001, 10000003, 10000002}, {10000002, 1, -0.5}, {15, 15, 15});
  CheckReached("NumAcc2", Alternating(1.2, 1.1, 1.3), {1.2, 0.1, -0.999}, {14, 14.6, 15});
  CheckReached("NumAcc3", Alternating(1000000.2, 1000000.1, 1000000.3), {1000000.2, 0.1, -0.999},
               {15, 9.4, 11.2});
  CheckReached("NumAcc4", Alternating(10000000.2, 10000000.1, 10000000.3),
               {10000000.2, 0.1, -0.999}, {14, 8.2, 9});
  CheckReached("Michelso", SpeedOfLight(),
               {299.852400000000, 0.0790105478190518, 0.535199668621283}, {15, 13.8, 13.4});
}

}  // namespace zavrel::tests
