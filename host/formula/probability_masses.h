#pragma once
// The Poisson and binomial probabilities, for real numbers too: as x^a e^-x / Gamma(a + 1) and
// x^a (1 - x)^b Gamma(a + b + 1) / (Gamma(a + 1) Gamma(b + 1)) they are factors of the incomplete
// gamma and beta functions. They are accurate for large numbers, whose powers would overflow and
// whose logarithms would cancel (Loader, Fast and accurate computation of binomial probabilities,
// 2000).

namespace zavhost {

/// k >= 0, mean >= 0.
double PoissonMass(double k, double mean);
/// 0 <= k <= n, 0 <= p <= 1.
double BinomialMass(double k, double n, double p);

}  // namespace zavhost
