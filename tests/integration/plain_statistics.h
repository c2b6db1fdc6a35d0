#pragma once
// The statistics of some cells the plainest way: one loop for each, in extended precision, with
// nothing remembered. What the add-in shows is held against it.

#include <algorithm>
#include <cmath>
#include <map>
#include <numeric>
#include <optional>
#include <string>
#include <vector>

#include "host/workbook/value.h"

namespace zavrel::tests {

/// A number, or what a cell shows in its place.
struct Expected {
  Expected(double value) : number(value) {}                            // NOLINT
  Expected(long double value) : number(static_cast<double>(value)) {}  // NOLINT
  Expected(const char* text) : shown(text) {}                          // NOLINT
  double number = 0;
  std::optional<std::string> shown;
};

class PlainStatistics {
 public:
  explicit PlainStatistics(std::vector<zavhost::Value> cells) : cells_(std::move(cells)) {
    for (const zavhost::Value& cell : cells_) {
      if (const double* number = cell.number()) numbers_.push_back(*number);
    }
    sorted_ = numbers_;
    std::sort(sorted_.begin(), sorted_.end());
  }

  Expected Mean() const { return n() < 1 ? Expected("#N/A") : MeanOf(numbers_); }
  Expected Sum() const { return std::accumulate(numbers_.begin(), numbers_.end(), 0.0L); }
  Expected Minimum() const { return n() < 1 ? Expected("#N/A") : sorted_.front(); }
  Expected Maximum() const { return n() < 1 ? Expected("#N/A") : sorted_.back(); }
  Expected Range() const { return n() < 1 ? 0.0 : sorted_.back() - sorted_.front(); }
  Expected Count() const { return n(); }
  Expected SumOfSquares() const {
    return std::accumulate(numbers_.begin(), numbers_.end(), 0.0L,
                           [](long double sum, long double x) { return sum + x * x; });
  }
  /// The empty text when a cell is no number or there is none.
  Expected MeanOfComplete() const {
    return cells_.empty() || numbers_.size() < cells_.size() ? Expected("") : Mean();
  }

  Expected Variance(bool sample) const {
    if (n() < 1) return "#N/A";
    if (sample && n() < 2) return "#DIV/0!";
    return Power(2) / (sample ? n() - 1 : n());
  }
  Expected StdDev(bool sample) const {
    const Expected variance = Variance(sample);
    return variance.shown ? variance : Expected(std::sqrt(variance.number));
  }
  Expected Skewness(bool sample) const {
    if (n() < 1) return "#N/A";
    if (sorted_.front() == sorted_.back() || (sample && n() < 3)) return "#DIV/0!";
    const long double v = Variance(sample).number;
    const long double factor = sample ? n() / ((n() - 1) * (n() - 2)) : 1 / n();
    return factor * Power(3) / (v * std::sqrt(v));
  }
  Expected Kurtosis(bool sample) const {
    if (n() < 1) return "#N/A";
    if (sorted_.front() == sorted_.back() || (sample && n() < 4)) return "#DIV/0!";
    const long double v = Variance(sample).number;
    if (!sample) return Power(4) / (n() * v * v);
    const long double m = n();
    return m * (m + 1) / ((m - 1) * (m - 2) * (m - 3)) * Power(4) / (v * v) -
           3 * (m - 1) * (m - 1) / ((m - 2) * (m - 3)) + 3;
  }

  /// p = k/40, so that a position is a whole number of 40ths and no rounding decides anything.
  Expected Percentile(int k, int method) const {
    if (n() < 1) return "#VALUE!";
    const long size = static_cast<long>(sorted_.size());
    const bool has_ties = std::adjacent_find(sorted_.begin(), sorted_.end()) != sorted_.end();
    if (method == -1) method = has_ties ? 3 : 1;
    const long np = size * k;
    switch (method) {
      case 0:
        return Between((size - 1) * k + 40);
      case 1:
        return Between(np);
      case 2: {
        const long j = np / 40;
        if (np % 40 == 20) return j % 2 == 0 ? At(j) : At(j + 1);
        return At((np + 20) / 40);
      }
      case 3:
        return At((np + 39) / 40);
      case 4:
        return Between((size + 1) * k);
      default:
        return np % 40 == 0 ? (At(np / 40) + At(np / 40 + 1)) / 2 : At(np / 40 + 1);
    }
  }

  /// The most frequent number, the smallest of equally frequent ones.
  Expected DiscreteMode() const {
    if (n() < 1) return "#N/A";
    std::map<double, int> counts;
    for (const double number : numbers_) ++counts[number];
    return std::max_element(counts.begin(), counts.end(),
                            [](const auto& a, const auto& b) { return a.second < b.second; })
        ->first;
  }

  Expected CountOfClass(int code) const {
    double count = 0;
    for (const zavhost::Value& cell : cells_) {
      const bool number = cell.number() != nullptr;
      const bool classes[] = {true, number, !cell.IsBlank(), !cell.IsBlank() && !number,
                              cell.IsBlank()};
      if (classes[code]) ++count;
    }
    return count;
  }

 private:
  double n() const { return static_cast<double>(numbers_.size()); }
  static long double MeanOf(const std::vector<double>& numbers) {
    return std::accumulate(numbers.begin(), numbers.end(), 0.0L) /
           static_cast<long double>(numbers.size());
  }
  long double Power(int exponent) const {
    const long double mean = MeanOf(numbers_);
    long double sum = 0;
    for (const double x : numbers_) sum += std::pow(static_cast<long double>(x) - mean, exponent);
    return sum;
  }
  /// The order statistic x(i), i from 1; beyond the ends the first and the last.
  double At(long i) const {
    return sorted_[static_cast<std::size_t>(
        std::clamp<long>(i, 1, static_cast<long>(sorted_.size())) - 1)];
  }
  double Between(long fortieths) const {
    const long j = fortieths / 40;
    const double g = static_cast<double>(fortieths % 40) / 40;
    return (1 - g) * At(j) + g * At(j + 1);
  }

  std::vector<zavhost::Value> cells_;
  std::vector<double> numbers_;
  std::vector<double> sorted_;
};

}  // namespace zavrel::tests
