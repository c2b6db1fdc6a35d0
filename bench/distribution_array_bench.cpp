// Whole arrays through the distribution library's contract, compared with bare Boost.Math with long
// double, which it gives a double by default too.
#include <benchmark/benchmark.h>

#include <array>
#include <boost/math/distributions.hpp>
#include <vector>

#include "contracts/pdflib.h"
#include "ratios.h"

namespace zavrel::bench {
namespace {

using benchmark::State;
using Values = std::array<double, 256>;
using Bare = long double;

/// The values with these probabilities, from 0.002 to 0.998.
Values Probabilities() {
  Values p;
  for (std::size_t i = 0; i < p.size(); ++i) p[i] = (static_cast<double>(i) + 0.5) / 256;
  return p;
}

Values ThroughLibrary(std::int16_t request, const char* name, std::vector<double> parameters,
                      const Values& x) {
  Values results;
  pdfEvaluate(pdfFind(name), request, parameters.data(),
              static_cast<std::int32_t>(parameters.size()), x.data(), results.data(), nullptr,
              static_cast<std::int64_t>(x.size()));
  return results;
}

template <class Function>
void AddPair(const std::string& what, std::int16_t request, const char* name,
             const std::vector<double>& parameters, const Values& x, Function bare) {
  const std::string ours = "Array " + what, floor = "Bare " + what;
  benchmark::RegisterBenchmark(ours.c_str(), [=](State& state) {
    for (auto _ : state) benchmark::DoNotOptimize(ThroughLibrary(request, name, parameters, x));
  });
  benchmark::RegisterBenchmark(floor.c_str(), [=](State& state) {
    Values results;
    for (auto _ : state) {
      for (std::size_t i = 0; i < x.size(); ++i) results[i] = static_cast<double>(bare(x[i]));
      benchmark::DoNotOptimize(results);
    }
  });
  const Ratio ratio("bare Boost.Math: array of " + what, {{ours}}, {{floor}}, 1.5);
}

template <class Distribution>
void Add(const char* name, const std::vector<double>& parameters, const Distribution& bare) {
  const Values p = Probabilities();
  const Values x = ThroughLibrary(PDFLIB_QUANTILE, name, parameters, p);
  const std::string of = std::string(" of ") + name;
  AddPair("densities" + of, PDFLIB_DENSITY, name, parameters, x,
          [bare](Bare value) { return pdf(bare, value); });
  AddPair("probabilities" + of, PDFLIB_CUMULATIVE, name, parameters, x,
          [bare](Bare value) { return cdf(bare, value); });
  AddPair("quantiles" + of, PDFLIB_QUANTILE, name, parameters, p,
          [bare](Bare value) { return quantile(bare, value); });
}

const bool added = [] {
  using namespace boost::math;
  Add("normal", {1, 2}, normal_distribution<Bare>(1, 2));
  Add("Student", {7}, students_t_distribution<Bare>(7));
  Add("chi-square", {5}, chi_squared_distribution<Bare>(5));
  Add("F", {5, 8}, fisher_f_distribution<Bare>(5, 8));
  Add("gamma", {2.5, 3}, gamma_distribution<Bare>(2.5L, 3));
  Add("beta", {2, 3.5}, beta_distribution<Bare>(2, 3.5L));
  Add("Weibull", {1.5, 2}, weibull_distribution<Bare>(1.5L, 2));
  Add("lognormal", {0.5, 0.8}, lognormal_distribution<Bare>(0.5L, 0.8L));
  Add("logistic", {1, 2}, logistic_distribution<Bare>(1, 2));
  Add("Poisson", {4.5}, poisson_distribution<Bare>(4.5L));
  Add("binomial", {20, 0.3}, binomial_distribution<Bare>(20, 0.3L));
  return true;
}();

}  // namespace
}  // namespace zavrel::bench
