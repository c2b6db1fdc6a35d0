#pragma once
// The samples and what data/make_fits.R has recorded of them.

#include <string>
#include <vector>

#include "distributions/catalogue.h"
#include "random/mersenne_twister.h"

namespace zavrel::tests {

struct RecordedFit {
  std::string sample;
  std::string distribution;
  double log_likelihood;
  std::vector<double> parameters;
  std::vector<double> standard_errors;
};

struct RecordedTest {
  char kind;  // of the line
  std::string sample;
  std::string distribution;
  double statistic;
  double p_value;
  std::vector<double> parameters;
};

/// The Anderson-Darling statistic's upper tail.
struct RecordedTail {
  double count;
  double statistic;
  double p_value;
};

const std::vector<double>& SampleNamed(const std::string& name);
const std::vector<RecordedFit>& RecordedFits();
const std::vector<RecordedTest>& RecordedTests();
const std::vector<RecordedTail>& RecordedTails();

inline std::vector<double> Draws(const DistLib::PdfDist& distribution, std::size_t count,
                                 RndGen& generator) {
  std::vector<double> draws(count);
  for (double& draw : draws) draw = distribution.Random(generator);
  return draws;
}

}  // namespace zavrel::tests
