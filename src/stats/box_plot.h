#pragma once
// The summary of a data set for a box plot. J. W. Tukey, "Exploratory Data Analysis" (1977),
// chapter 2.

#include <cstddef>
#include <span>

namespace zavrel {

struct Quartiles {
  double lower;
  double median;
  double upper;
};

/// How far a value lies from the box, in interquartile ranges.
enum class OutlierType {
  kNone = 0,
  kMild = 1,     // 1.5 or more
  kExtreme = 2,  // 3 or more
};

/// Limits beyond which a value is an outlier. A value on a fence is an outlier, too.
struct Fences {
  double lower_extreme;  // Q1 - 3 IQR
  double lower_mild;     // Q1 - 1.5 IQR
  double upper_mild;     // Q3 + 1.5 IQR
  double upper_extreme;  // Q3 + 3 IQR

  static Fences Around(const Quartiles& quartiles);
  OutlierType TypeOf(double value) const;
};

/// The parts of a box plot of values in ascending order, which are viewed, not copied.
struct BoxPlot {
  /// The values must not be empty.
  BoxPlot(std::span<const double> sorted, double mean, const Quartiles& quartiles);

  double mean;
  Quartiles quartiles;
  Fences fences;

  // The four groups of outliers, each in ascending order. If the quartiles and therefore all fences
  // are equal, the values on the fences belong to the lower side.
  std::span<const double> lower_extreme;
  std::span<const double> lower_mild;
  std::span<const double> upper_mild;
  std::span<const double> upper_extreme;

  /// The smallest and the largest value that is not an outlier; the quartiles if all are outliers.
  double lower_whisker;
  double upper_whisker;

  /// The size of the largest group.
  std::size_t MostOutliers() const;
};

}  // namespace zavrel
