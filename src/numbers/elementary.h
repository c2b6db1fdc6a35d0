#pragma once
// Exponential and logarithm, the same to the last bit on every system.
//
// The C library's functions are several times slower on Windows than elsewhere and differ in the
// last digits. These functions are within 1.5 units in the last place and can be inlined into
// loops, where the computations of successive iterations overlap.

#include <bit>
#include <cstdint>

namespace zavrel::elementary {

// ln 2 in two parts. The first ends in 21 zero bits, so its product with an exponent is exact.
inline constexpr double kLn2High = 0x1.62e42feep-1;
inline constexpr double kLn2Low = 0x1.a39ef35793c76p-33;

/// e^(x + low), where `low` is small compared with x (the rounding error of x). x must be a number.
inline double Exp(double x, double low = 0) {
  if (x < -746) return 0;
  if (x > 710) x = 710;  // overflows like all the others
  // 1.5 * 2^52 moves the integer nearest to x / ln 2 into the last bits of the sum.
  constexpr double kShift = 0x1.8p52;
  const double shifted = x * 0x1.71547652b82fep0 + kShift;
  const double k = shifted - kShift;
  const double r = ((x - k * kLn2High) - k * kLn2Low) + low;

  // The series up to r^13 / 13!, |r| < 0.35, in two halves that are computed in parallel.
  const double r2 = r * r;
  const double even =
      1.0 / 2 +
      r2 * (1.0 / 24 +
            r2 * (1.0 / 720 + r2 * (1.0 / 40320 + r2 * (1.0 / 3628800 + r2 * (1.0 / 479001600)))));
  const double odd =
      1.0 / 6 +
      r2 * (1.0 / 120 + r2 * (1.0 / 5040 + r2 * (1.0 / 362880 +
                                                 r2 * (1.0 / 39916800 + r2 * (1.0 / 6227020800)))));
  const double power = 1 + (r + r2 * (even + r * odd));
  // 2^k as two factors, since it is not a normal number itself near the ends of the range.
  const auto exponent = static_cast<std::int64_t>(k);
  const auto power_of_two = [](std::int64_t n) {
    return std::bit_cast<double>(static_cast<std::uint64_t>(n + 1023) << 52);
  };
  return power * power_of_two(exponent >> 1) * power_of_two(exponent - (exponent >> 1));
}

namespace detail {

/// 2 (s^3 / 3 + s^5 / 5 + ...): the series of 2 artanh(s), |s| < 0.172, without its first term.
inline double AfterFirstTerm(double s) {
  const double z = s * s;
  const double w = z * z;
  const double even =
      2.0 / 3 + w * (2.0 / 7 + w * (2.0 / 11 + w * (2.0 / 15 + w * (2.0 / 19 + w * (2.0 / 23)))));
  const double odd = 2.0 / 5 + w * (2.0 / 9 + w * (2.0 / 13 + w * (2.0 / 17 + w * (2.0 / 21))));
  return s * z * (even + z * odd);
}

}  // namespace detail

/// ln x, x > 0.
inline double Log(double x) {
  if (x < 0x1p-1022) return Log(x * 0x1p54) - 54 * (kLn2High + kLn2Low);
  // The exponent that leaves a factor in [sqrt 1/2, sqrt 2).
  constexpr std::uint64_t kSqrtHalf = 0x3FE6A09E667F3BCDull;
  const auto bits = std::bit_cast<std::uint64_t>(x);
  const std::int64_t k = static_cast<std::int64_t>(bits - kSqrtHalf) >> 52;
  const double f =
      std::bit_cast<double>(bits - (static_cast<std::uint64_t>(k) << 52)) - 1;  // exact
  // 2 s = f - s f; f is added last, so that all its digits count.
  const double s = f / (2 + f);
  const auto exponent = static_cast<double>(k);
  return exponent * kLn2High + (f + (detail::AfterFirstTerm(s) - s * f + exponent * kLn2Low));
}

/// ln(1 + f), -1 < f < 0.4.
inline double Log1p(double f) {
  if (f < -0.29) return Log(1 + f);
  const double s = f / (2 + f);
  return f + (detail::AfterFirstTerm(s) - s * f);
}

}  // namespace zavrel::elementary
