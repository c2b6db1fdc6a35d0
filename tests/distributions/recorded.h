#pragma once
// What data/make_accuracy.py has recorded of the distributions.

#include <array>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "distributions/catalogue.h"

namespace zavrel::tests {

enum class Measure { kDensity, kCumulative, kUpperTail, kQuantile, kUpperQuantile };
inline constexpr int kMeasures = 5;

struct RecordedValue {
  Measure measure;
  double argument;
  double value;
  double condition;  // of the value in the argument
};

/// A distribution with parameters, and its values.
struct Recorded {
  const DistLib::Description* description;  // null if the list does not have the name
  std::string name;
  std::vector<double> parameters;
  std::vector<RecordedValue> values;
  std::vector<double> moments;  // mean, variance, skewness, kurtosis, entropy and median, or none

  std::string Text() const;
  std::unique_ptr<DistLib::PdfDist> Make() const {
    return DistLib::MakeDistribution(*description, parameters);
  }
};

const std::vector<Recorded>& AllRecorded();

double Evaluate(const DistLib::PdfDist& distribution, Measure measure, double argument);

}  // namespace zavrel::tests
