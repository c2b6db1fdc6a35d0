#pragma once
// Distributions that several functions and tests use, by their upper tails.

namespace zavhost {

double NormalTail(double z);
/// The z with this lower tail, 0 < p < 1.
double NormalQuantile(double p);
/// At any t, for degrees of freedom that need not be whole.
double StudentTail(double t, double df);
/// The t with this upper tail, 0 < tail <= 1/2.
double StudentTailInverse(double tail, double df);
double ChiSquaredTail(double x, double df);
double FTail(double x, double df1, double df2);

}  // namespace zavhost
