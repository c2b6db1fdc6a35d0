#pragma once
// A sample as fits and tests read it.

#include <cstddef>
#include <span>
#include <vector>

namespace DistLib {

/// The distinct values of a sample, ascending, with how often each occurs. Throws FitError for an
/// empty sample and for a value that is not finite.
class Sample {
 public:
  explicit Sample(std::span<const double> values);

  std::size_t count() const { return count_; }
  std::size_t distinct() const { return values_.size(); }
  std::span<const double> values() const { return values_; }
  std::span<const double> times() const { return times_; }
  double smallest() const { return values_.front(); }
  double largest() const { return values_.back(); }
  bool OnlyWhole() const;

  /// At most so many order statistics, evenly spread, the smallest and the largest among them.
  Sample Thinned(std::size_t most) const;

 private:
  Sample() = default;
  void Append(double value, double times);

  std::vector<double> values_;
  std::vector<double> times_;
  std::size_t count_ = 0;
};

/// What start values are made of.
class SampleFacts {
 public:
  struct Shape {
    double mean = 0;
    double deviation = 0;
    double skewness = 0;
  };

  explicit SampleFacts(const Sample& sample);

  double smallest() const { return sample_.smallest(); }
  double largest() const { return sample_.largest(); }
  double range() const { return largest() - smallest(); }
  double Quantile(double share) const;
  double median() const { return Quantile(0.5); }
  double mean() const { return plain_.mean; }
  double deviation() const { return plain_.deviation; }
  double skewness() const { return plain_.skewness; }
  /// The root of the mean square.
  double RootMeanSquare() const;
  /// Of log(x - low); all 0 unless low is less than the smallest value.
  Shape LogsFrom(double low) const;
  /// The mean absolute deviation from the median, of the values or of their logarithms.
  double MeanAbsoluteDeviation(bool of_logs) const;

 private:
  const Sample& sample_;
  Shape plain_;
};

}  // namespace DistLib
