#pragma once

#include <cmath>
#include <span>

namespace zavhost {

/// A sum with its rounding errors (Neumaier, 1974), so that neither the order nor the number of the
/// terms shows in the result.
class CompensatedSum {
 public:
  void Add(double term) {
    const double next = sum_ + term;
    error_ += std::fabs(sum_) >= std::fabs(term) ? (sum_ - next) + term : (term - next) + sum_;
    sum_ = next;
  }
  /// The sum; not a number once it has overflowed.
  double value() const { return sum_ + error_; }

 private:
  double sum_ = 0.0;
  double error_ = 0.0;
};

/// The sum of term(x) for all numbers x.
template <typename Term>
double SumOf(std::span<const double> numbers, const Term& term) {
  CompensatedSum sum;
  for (const double x : numbers) sum.Add(term(x));
  return sum.value();
}

}  // namespace zavhost
