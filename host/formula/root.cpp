#include "host/formula/root.h"

#include <cmath>
#include <limits>
#include <optional>

namespace zavhost {
namespace {

using RateFunction = std::function<double(double)>;

bool IsNegligible(double step, double rate) {
  return std::fabs(step) <= 4.0 * std::numeric_limits<double>::epsilon() * (1.0 + std::fabs(rate));
}

std::optional<double> Secant(const RateFunction& value, double guess) {
  constexpr int kSteps = 60;
  double before = guess;
  double rate = guess + 1e-4 * (1.0 + std::fabs(guess));
  double value_before = value(before);
  for (int i = 0; i < kSteps; ++i) {
    const double current = value(rate);
    if (current == 0.0) return rate;
    double step = -current * (rate - before) / (current - value_before);
    if (!std::isfinite(step)) return std::nullopt;
    if (rate + step <= -1.0) {
      step = (-1.0 - rate) / 2.0;
      if (IsNegligible(step, rate)) return std::nullopt;  // it tends to where there is no value
    }
    if (IsNegligible(step, rate)) return rate + step;
    before = rate;
    value_before = current;
    rate += step;
  }
  return std::nullopt;
}

double Bisected(const RateFunction& value, double low, double high) {
  const bool is_low_negative = value(low) < 0.0;
  while (!IsNegligible(high - low, low)) {
    const double middle = low + (high - low) / 2.0;
    ((value(middle) < 0.0) == is_low_negative ? low : high) = middle;
  }
  return low + (high - low) / 2.0;
}

}  // namespace

double RateRoot(const RateFunction& value, double guess) {
  if (!(guess > -1.0)) return std::numeric_limits<double>::quiet_NaN();
  if (const auto root = Secant(value, guess)) return *root;
  // Growth factors at ever larger distances from the guess, by turns below and above it.
  constexpr double kStep = 1.25;
  constexpr int kSteps = 80;
  double low = guess;
  double high = guess;
  double low_value = value(low);
  double high_value = low_value;
  const auto differ = [](double a, double b) {
    return std::isfinite(a) && std::isfinite(b) && (a < 0.0) != (b < 0.0);
  };
  for (int i = 0; i < kSteps; ++i) {
    const double lower = (1.0 + low) / kStep - 1.0;
    const double lower_value = value(lower);
    if (differ(lower_value, low_value)) return Bisected(value, lower, low);
    const double higher = (1.0 + high) * kStep - 1.0;
    const double higher_value = value(higher);
    if (differ(higher_value, high_value)) return Bisected(value, high, higher);
    low = lower;
    low_value = lower_value;
    high = higher;
    high_value = higher_value;
  }
  return std::numeric_limits<double>::quiet_NaN();
}

}  // namespace zavhost
