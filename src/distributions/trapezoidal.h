#pragma once
// Integrals over the whole line of functions that are analytic and vanish at both ends.
//
// The trapezoidal rule converges exponentially there (Trefethen and Weideman, 2014): a step h
// leaves 2 exp(-2 pi^2 / h^2) of a normal density of deviation 1, which is 1e-15 for h = 0.75. So
// the step follows from the width of the narrowest factor, and a sum ends where its terms vanish.

namespace DistLib {

/// How exact a sum is: by what its step is multiplied, and what part of it vanishes.
struct Fineness {
  double step;
  double negligible;
};
/// The full accuracy of doubles.
inline constexpr Fineness kFine{1, 1e-16};

/// `sum` and the terms at one step, two steps and so on, up to where they vanish beside it.
template <class Number, class Term>
Number SumOutwards(Number sum, Number step, double negligible, Term term) {
  constexpr int kMostTerms = 1000;
  Number previous = 0;
  for (int i = 1; i < kMostTerms; ++i) {
    const Number value = term(i * step);
    sum += value;
    const bool counts = value > negligible * sum || value > previous;  // a NaN does not
    if (!counts) break;
    previous = value;
  }
  return sum;
}

/// The integral, from a point near the highest term outwards.
template <class Number, class Term>
Number TrapezoidalIntegral(Number full_step, const Fineness& fineness, Term term) {
  const Number step = full_step * fineness.step;
  const Number right = SumOutwards(term(0), step, fineness.negligible, term);
  return step * SumOutwards(right, -step, fineness.negligible, term);
}

/// The integral of a function that is the same at -x as at x.
template <class Number, class Term>
Number TrapezoidalIntegralOfEven(Number full_step, const Fineness& fineness, Term term) {
  const Number step = full_step * fineness.step;
  return 2 * step * SumOutwards(term(0) / 2, step, fineness.negligible, term);
}

}  // namespace DistLib
